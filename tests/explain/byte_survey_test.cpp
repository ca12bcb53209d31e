// What a survey of bytes finds.

#include <gtest/gtest.h>

#include <sstream>

#include "Common/Explain/byte_survey.h"

using namespace std::string_literals;

namespace {

TEST(ByteSurvey, FindsHowMessagesEnd)
{
    struct Row {
        std::string mBytes;  // '|': a pause
        const char* mEnd;
        unsigned mMessages;
        unsigned mShortest;
        unsigned mLongest;
    };
    const Row rows[] = {
        {"T=23.5\r\nT=9\r\nT=10.25\r\n", "\r\n", 3, 3, 7},
        {".5\r\n|T=9\r\n|T=10\r\n|", "\r\n", 3, 3, 4},
        {"1\n22\n333\n", "\n", 3, 2, 3},
        {"1\r\n\n22\r\n333\r\n", "\n", 4, 0, 4},  // not each line ends with both
        {"+  1.25 kg\r|+  1.3 kg\r|", "\r", 2, 9, 9},
        {"a\nb\nv2\r12\r13\r14\r15\r16\r", "\r", 6, 2, 2},  // after a greeting
        {"\x02Q,229,002.74\x03\x16\x02Q,230,002.75\x03\x17", "\x03", 2, 14, 14},
        {"1;2;3;", ";", 3, 1, 1},
        {"1;2;3\n4;5;6\n", "\n", 2, 5, 5},
        {"OK>|25.1>|25.2>|25.3>|", ">", 4, 4, 4},
        {"\x81\x05\x03|\x81\x06\x04|\x81\x07\x05|\x81\x07\x0A|", "", 4, 3, 3},
        {"\x81\x05\x7F|\x81\x06\x7F|\x81\x07\x7F|", "", 3, 3, 3},  // perhaps by accident
        {"\x81\x7F|\x81\x06\x99\x7F|\x81\x07\x7F|", "\x7F", 3, 2, 3},
        {"\x01\x03\x02\x01*8|\x01\x03\x02\x02+\xF9|\x01\x03\x02\x03,\xB9|", "", 3, 6, 6},
        {"\x0A\x81\x91\xA3\x0A\xFF\x0A\x97\x80", "", 0, 0, 0},
        {"T=20.0|T=21.0|T=22.0|", "", 3, 6, 6},  // a digit ends nothing
        {std::string(2047, 'x') + "\n" + std::string(2047, 'x') + "\n", "\n", 2, 2047, 2047},
        {std::string(2048, 'x') + "\n" + std::string(2048, 'x') + "\n", "", 0, 0, 0},
        {"\r\n" + std::string(254, '\x81') + "\r\n\r\n", "\r\n", 3, 0, 254},
        {"\r\n" + std::string(255, '\x81') + "\r\n\r\n", "", 0, 0, 0},
        {"", "", 0, 0, 0},
    };
    for (const Row& row : rows) {
        NExplain::ByteSurvey survey;
        std::istringstream parts(row.mBytes);
        for (std::string part; std::getline(parts, part, '|');) {
            survey.Add(part);
            if (!parts.eof()) survey.AddPause();
        }
        const NExplain::Survey result = survey.Result();
        EXPECT_EQ(result.mEnd, row.mEnd) << row.mBytes;
        EXPECT_EQ(result.mMessages, row.mMessages) << row.mBytes;
        EXPECT_EQ(result.mShortest, row.mShortest) << row.mBytes;
        EXPECT_EQ(result.mLongest, row.mLongest) << row.mBytes;
    }
}

TEST(ByteSurvey, SaysWhatItFinds)
{
    NExplain::ByteSurvey survey;
    EXPECT_EQ(Findings(survey.Result()).at(0).find("nothing came"), 0U);
    survey.Add("Temp=5\xB0\0\x03Temp=6\xB0\x03"s);
    const std::vector<std::string> findings = Findings(survey.Result());
    ASSERT_EQ(findings.size(), 5U);
    EXPECT_EQ(findings[0], "each message seems to end with ETX; use -e 3");
    EXPECT_EQ(findings[1], "2 messages of 7 bytes, without its end");
    EXPECT_EQ(findings[2], "17 bytes, 2 of them above 127, 1 of them 00");
}

}  // namespace
