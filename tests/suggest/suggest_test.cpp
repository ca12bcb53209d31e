// Tests what is suggested for samples of messages.

#include <gtest/gtest.h>

#include <charconv>
#include <cstdint>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "Common/Suggest/end_of_message.h"
#include "Common/Suggest/suggester.h"

namespace {

// Returns the report on a text: the end-of-message character, then the suggestions and how many
// messages each matches, and the number of messages without a match.
std::string SuggestionsFor(std::string_view text, const std::vector<std::string>& names = {})
{
    const auto eom = NSuggest::FindEndOfMessage(text);
    const auto result = NSuggest::SuggestFor(NSuggest::MessagesIn(text, eom), names);
    std::string report = eom ? std::to_string(*eom) : "none";
    for (const auto& suggestion : result.mSuggestions) {
        report.append("\n").append(std::to_string(suggestion.mMatched)).append(" ");
        report += suggestion.mPattern;
    }
    return report.append("\nno match: ").append(std::to_string(result.mUnmatched));
}

std::string Repeated(std::string_view text, int count)
{
    std::string repeated;
    for (; count != 0; --count) repeated += text;
    return repeated;
}

TEST(Suggest, ReadsAsWrittenByHand)
{
    using namespace std::string_literals;
    const struct {
        std::string mText;
        const char* mReport;
    } kCases[] = {
        {"T=23.5 H=41\nT=-3 H=87\n", "10\n2 'T=' T:float=.# 'H=' H:integer=#\nno match: 0"},
        {"rel.hum=4 x\r\nrel.hum=5 y\r\n",
         "10\n2 'rel.hum=' rel_hum:integer=# unit:string=letters\nno match: 0"},
        {"R0842\rR1310\r", "13\n2 'R' R:integer=#\nno match: 0"},
        {"V1;V2;V3;", "59\n3 'V' V:integer=#\nno match: 0"},
        {"\x02"s
         "1.5\x03\x02"s
         "2.5\x03",
         "3\n2 {{02}} value:float=.#\nno match: 0"},
        {"T1: 21.5\xB0"
         "C\nT1: 3\xB0"
         "C\n",
         "10\n2 'T1:' T1:float=.# '?C'\nno match: 0"},
        {"a=0x1F it's? 5\na=0x20 it's? 6\n",
         "10\n2 'a=0x' a:integer=2x 'it\\'s\\?' value:integer=#\nno match: 0"},
        {"time;t (C);who\n10:05;1.5;the cat\n10:06;2;dog\n",
         "10\n2 time:string=[0-9:] ';' t_C:float=.# ';' who:string=[^\\r\\n]\nno match: 0"},
        {"OL V\n1.2 V\n1.3 V\n", "10\n2 value:float=.# 'V'\n1 'OL V'\nno match: 0"},
        {"\"t (C)\",\"h\"\n\"1.5\",\"2\"\n\"1.6\",\"3\"\n",
         "10\n2 '\"' t_C:float=.# '\",\"' h:integer=# '\"'\nno match: 0"},
        {"$GPHDT,274.07,T*03\n$GPHDT,1.5,T*1F\n$GPZDA,010203,2*00\n$GPZDA,010204,3*00\n",
         "10\n2 '$GPHDT,' heading:float=.# ',T*' checksum:integer=2x\n"
         "2 '$GPZDA,' time:string=# ',' day:integer=# '*00'\nno match: 0"},
        {Repeated("$GPHDT,1.5,T*4A\n", 2),
         "10\n2 '$GPHDT,' heading:float=.# ',T*' checksum:integer=2x\nno match: 0"},
        {"U=1,5V\nU=2,05V\n", "10\n2 'U=' U:integer=# ',' decimals:string=# 'V'\nno match: 0"},
        {"0012345\n1012345\n", "10\n2 number:string=#\nno match: 0"},
        {"001530.00\n011530.00\n", "10\n2 time:string=[0-9.]\nno match: 0"},
        {"22.11.26 5\n23.11.26 6\n", "10\n2 date:string=[0-9.] value:integer=#\nno match: 0"},
        {"a 4294967296\na 1\n", "10\n2 'a' a:float=.#\nno match: 0"},
        {"a 123456789012345678\na 023456789012345678\n", "10\n2 'a' a:string=#\nno match: 0"},
        {"-1.5E-03 V\n+2.5E+10 V\n", "10\n2 value:float=[-+.0-9E] 'V'\nno match: 0"},
        {"q=\"a b\",1\nq=\"c\",2\n",
         "10\n2 'q=\"' q:string=[^\"] '\",' value:integer=#\nno match: 0"},
        {"2026-11-22T14:05:09Z 1\n2026-11-22T14:05:10Z 2\n",
         "10\n2 date:string=[-0-9] 'T' time:string=[0-9:] 'Z' value:integer=#\nno match: 0"},
        {"Nov 22 10:00:00 a: x y 1\nNov 22 10:00:01 b: z\n",
         "10\n2 month:string=letters day:integer=# time:string=[0-9:] text:string=letters ': ' "
         "rest:string=[^\\r\\n]\nno match: 0"},
        {"x=1,y\nx=2,\nx=3,y\nx=4,\nx=5,y\n", "10\n5 'x=' x:integer=# ','\nno match: 0"},
        {"a b\t1\nc\t2\n", "10\n2 text:string=[^\\t] '\\t' value:integer=#\nno match: 0"},
        {Repeated("\xAA\x55\x05~\xAA\x55\x05~\xAA\x55\x09~", 3), "none\nno match: 0"},
        {Repeated("\x01\x03\x02\x01*8\x01\x03\x02\x02+\xF9", 5), "none\nno match: 0"},
        {Repeated("abc\0"s, 5), "0\n5 'abc'\nno match: 0"},
        {Repeated("79\xC2\xB0\r\n5\xC2\xB0\r\n", 25), "10\n50 value:integer=# '?\?'\nno match: 0"},
        {Repeated("\x81\x82\x01\r\n\x81\x82\x03\r\n", 2),
         "10\n4 {{81}} {{82}} byte:integer=byte {{0D}}\nno match: 0"},
        {"\x02Q,204,003.95,M,00,\x03\x31\x37\r\n\x02Q,118,004.10,M,00,\x03\x32\x42\r\n",
         "10\n2 {{02}} 'Q,' value1:integer=# ',' value2:float=.# ',M,00,' {{03}} hex:integer=2x\n"
         "no match: 0"},
        {"", "none\nno match: 0"},
        {"\n\n\n", "10\nno match: 0"},
        {"OK", "none\n1 'OK'\nno match: 0"},
        {Repeated("T=1\n", 50), "10\n50 'T=' T:integer=#\nno match: 0"},
        {"a\0"
         "b\na\n"s,
         "10\n2 'a'\nno match: 0"},
    };
    for (const auto& row : kCases) EXPECT_EQ(SuggestionsFor(row.mText), row.mReport) << row.mText;
    EXPECT_EQ(SuggestionsFor("1 2\n3 4\n", {"t", "h", "p"}),
              "10\n2 t:integer=# h:integer=#\nno match: 0");
    EXPECT_EQ(SuggestionsFor("D=1 E=2\nD=3 E=4\n", {"E"}),
              "10\n2 'D=' E:integer=# 'E=' E2:integer=#\nno match: 0");
}

// Values beyond those that are learned from: longer, and too large for an integer.
TEST(Suggest, CountsNoCutValues)
{
    const struct {
        const char* mBefore;
        std::uint64_t mFirst;
        std::uint64_t mLater;
        int mBase;
        const char* mPattern;
        double mGreatest;
    } kCases[] = {
        {"", 10, 100, 10, "value:integer=#", 149},
        {"n=", 1234567890, 4294967296, 10, "'n=' n:float=.#", 4294967345.0},
        {"h=0x", 0xF0000, 0xF0000000, 16, "'h=0x' h:string=x", 0},
    };
    for (const auto& row : kCases) {
        NSuggest::Suggester suggester({});
        const auto add = [&](std::uint64_t number) {
            char digits[32];
            const auto end = std::to_chars(digits, digits + sizeof digits, number, row.mBase).ptr;
            suggester.Add(row.mBefore + std::string(digits, end));
        };
        do {
            for (std::uint64_t m = 0; m < 5000; ++m) add(row.mFirst + m % 90);
            for (std::uint64_t m = 0; m < 50; ++m) add(row.mLater + m);
        } while (suggester.NextPass());
        const NSuggest::Suggestion& first = suggester.Result().mSuggestions.at(0);
        EXPECT_EQ(first.mPattern, row.mPattern);
        EXPECT_EQ(first.mMatched, 5050U) << row.mPattern;
        EXPECT_EQ(first.mOutputs[0].mGreatest, row.mGreatest);
    }
}

TEST(Suggest, ReportsWhatDoesNotFit)
{
    NSuggest::Suggester suggester({});
    std::mt19937 random(1);
    do {
        random.seed(1);
        for (int m = 0; m < 100000; ++m) {  // the odd ones come after those that are learned from
            std::string message = "v=";
            if (m != 60000) message += std::to_string(random() % 1000);
            suggester.Add(message.append(m == 70000 ? ",b" : ",a"));
        }
        suggester.Add("");
    } while (suggester.NextPass());
    const NSuggest::Report& report = suggester.Result();
    ASSERT_FALSE(report.mSuggestions.empty());
    const NSuggest::Suggestion& first = report.mSuggestions[0];
    EXPECT_EQ(first.mPattern, "'v=' v:integer=# ',' text:string=letters");
    EXPECT_EQ(first.mMatched, 99999U);
    EXPECT_EQ(first.mOutputs[0].mGreatest, 999);
    EXPECT_EQ(first.mOutputs[1].mTexts, (std::vector<std::string>{"a", "b"}));
    EXPECT_EQ(first.mNotes,
              (std::vector<std::string>{
                  "field 1 (v) is sometimes empty: 1 of 100000 messages doesn't match"}));
    EXPECT_EQ(report.mMessages, 100000U);
    EXPECT_EQ(report.mEmpty, 1U);
}

}  // namespace
