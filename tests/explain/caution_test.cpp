// Which parsing strings and which values there are cautions about, and which there are none about.

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <sstream>
#include <string>

#include "Common/Explain/cautions.h"
#include "Common/Explain/fault.h"
#include "Common/Explain/value_cautions.h"

using namespace NExplain;
using namespace std::string_literals;

namespace {

std::string Read(const std::filesystem::path& path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

std::vector<Caution> ValueCautionsOf(const Pieces& pieces, const std::string& message)
{
    auto cautions =
        FindValueCautions(pieces, FindValueRisks(pieces), message, TraceMatch(pieces, message));
    for (const auto& [kind, p, words] : cautions) {
        EXPECT_TRUE(MayBeTrue({kind, p}, pieces[p], message)) << words;
    }
    return cautions;
}

struct Row {
    std::string mPattern;
    CautionKind mKind;          // of the only caution, which is about the last piece
    const char* mWords;         // part of it
    std::string mMessage = "";  // which has a wrong value; empty: the caution is about the pattern
};

TEST(Caution, SaysWhatIsWrong)
{
    const Row rows[] = {
        {"'a' ph:float=[^,]", kCautionRawDigits, "1 becomes 49"},
        {"n:b=[[0-9 ]]", kCautionRawDigits, "raw bytes"},
        {"v:f=4 bytes", kCautionRawFloat, "floating-point"},
        {"'a' v:f={30-39}", kCautionRawFloat, "without a sign"},
        {"'a' ph:float=3#", kCautionWholeFloat, ".# reads the point too"},
        {"n:i=10#", kCautionLargeNumber, "10 digits can be more than 2147483647"},
        {"n:i=12.2#", kCautionLargeNumber, "12 digits"},
        {"n:f=8x", kCautionLargeNumber, "more than 7FFFFFFF"},
        {"n:i=5 bytes", kCautionManyBytes, "only the first four of these 5"},
        {"n:b=8 bytes", kCautionManyBytes, "only the last four of these 8"},
        {"n:s=0X", kCautionHexPrefix, "written in quotes: '0x'"},
        {"'\\x02'", kCautionBackslash,
         "'x' means nothing; a byte is written as a piece of its own: {{02}}"},
        {"n:s=\"\\\\\\d\"", kCautionBackslash, "'d' means nothing; a digit is [[0-9]]"},
        {"[\\w]", kCautionBackslash, "[A-Za-z0-9_]"},
        {"'a\\q'", kCautionBackslash, "itself is written \\\\"},
        {"'\\xg'", kCautionBackslash, "itself"},
        {"'S' d:s=[,0-9] v:f=.#", kCautionSwallowed, "piece 2 takes digits too, so"},
        {"d:s=[ ,0-9] v:f=.#", kCautionSwallowed, "of this number; take"},
        {"s:s=chars ';'", kCautionOnlyAfterSpace, "; in its place, [^;] stops"},
        {"s:s=chars ','", kCautionOnlyAfterSpace, "[^,] stops"},
        {"s:s=c ']'", kCautionOnlyAfterSpace, "[^\\]] stops"},
        {"[^,] 'x'", kCautionTaken, "piece 1 takes everything"},
        {"[^,] ' x'", kCautionTaken, "[^ ] stops"},
        {"{^2C} '\\n'", kCautionTaken, "a set without line feed stops"},
        {"{41-7A} \"b\"", kCautionTaken, "[^bB] stops"},
        {"{01-FF} '?'", kCautionTaken, "a piece of its own"},
        {"# {{30-39}}", kCautionTaken, "never matches"},
        {"x {41}", kCautionTaken, "never matches"},
        {"eol {0D}", kCautionTaken, "never matches"},
        {"{01-FF} eol", kCautionTaken, "never matches"},
        {"'a' ' '", kCautionSkippedSpace, "leave the piece out"},
        {"# \"\\r\\n\"", kCautionSkippedSpace, "leave the piece out"},
        {"# ' ,'", kCautionSkippedSpace, "leave the white space out"},
        {"'a' {00}", kCautionByteZero, "a byte 00"},
        {"'a\0'"s, kCautionByteZero, "a byte 00"},
        {"{^01-FF}", kCautionByteZero, "a byte 00"},
        {"{^00-FF}", kCautionEmptySet, "excludes every byte"},
        {"n:i=#", kCautionClamped, "so n is 2147483647; a string keeps all digits, and",
         "5901234123457"},
        {"n:b=[-0-9]", kCautionClamped, "so n is -2147483648;", "-02147483649"},
        {"'5' n:i=#", kCautionClamped, "2147483648 is too large", "5 2147483648"},
        {"n:f=x", kCautionClamped, "80000000 is too large", "80000000"},
        {"n:i=eol", kCautionClamped, "3000000000 is too large", " 3000000000 x"},
        {"n:b={01-FF}", kCautionDroppedBytes, "last four of 5 bytes are in n", "12345"},
        {"n:i={00-FF}", kCautionDroppedBytes, "first four of 6 bytes", "1234\0\x01"s},
        {"v:f=.#", kCautionStopped, "\"+0.8212\" of \"+0.8212E+3\"; name:", "+0.8212E+3"},
        {"'U=' u:f=.#", kCautionStopped, "read by # ',' #", "U=1,5V"},
        {"'T' t:i=#", kCautionStopped, "t is only \"23\" of \"23.5\"; a dec", "T 23.5"},
        {"n:i=2#", kCautionStopped, "a larger count", "12345"},
        {"'T' t:f=.#", kCautionNoDigit, "no digit in \"-.\", so t is 0", "T -.-"},
        {"[^0-9] n:i=#", kCautionCutSign, "took the '-' directly before \"5\"", "T=-5"},
        {"[^0-9] n:f=.#", kCautionCutSign, "took the '.' directly before \"5\"", "=.5"},
    };
    for (const Row& row : rows) {
        const Pieces pieces = TakeApart(row.mPattern);
        std::vector<Caution> cautions = FindCautions(pieces);
        if (!row.mMessage.empty()) {
            EXPECT_TRUE(cautions.empty()) << row.mPattern;
            cautions = ValueCautionsOf(pieces, row.mMessage);
        }
        ASSERT_EQ(cautions.size(), 1U) << row.mPattern;
        EXPECT_EQ(cautions[0].mPiece, pieces.size() - 1) << row.mPattern;
        EXPECT_EQ(cautions[0].mKind, row.mKind) << row.mPattern;
        EXPECT_NE(cautions[0].mText.find(row.mWords), std::string::npos) << cautions[0].mText;
    }
    EXPECT_EQ(FindCautions(TakeApart("'a' ph:float=#.#")).at(0).mKind, kCautionSplitNumber);
    EXPECT_EQ(FindCautions(TakeApart("'a' ' \\x02'")).size(), 2U);
    const auto cut = ValueCautionsOf(TakeApart("'Q' d:s=[,0-9] v:f=.#"), "Q,229,002.74");
    EXPECT_NE(cut.at(0).mText.find("starts at \".74\", because"), std::string::npos);
}

TEST(Caution, StaysQuietAboutWhatWorks)
{
    // Separated by '|'.
    std::istringstream patterns(
        R"('a' f:f=.# g:f=[-.0-9] # i:i=x s:s=[^,]|a:i=# b:f=.#|n:i=4 bytes|n:i={30-39}|n:f=byte|)"
        R"(n:f={{80-FF}}|n:i=9# m:i=7x k:s=12#|n:f=12#|n:f=4x|n:s=8 bytes|' OK'|'a ' 'b'|)"
        R"(# [ ] 'b'|'a' '? '|'C:\\dir\'s\?\,\n'|[\]\-\^\t.]|{0D} # 'x\?'|letters 'H='|chars '$'|)"
        R"(chars [[;]]|3 chars ';'|# ','|3# {30}|.2# {30}|[0-9:] .#|[-+.0-9] #|[^,] ','|)"
        R"([^,] [;,]|[^\r\n] eol|{{00-FF}}|bytes # 'a'|d:s=[,0-9] 'x' #)");
    for (std::string pattern; std::getline(patterns, pattern, '|');) {
        const auto cautions = FindCautions(TakeApart(pattern));
        EXPECT_TRUE(cautions.empty()) << pattern << "  " << cautions[0].mText;
    }
    const std::pair<const char*, std::string> values[] = {
        {"n:i=#", "0002147483647"},
        {"n:i=#", "-2147483648"},
        {"n:i=x", "7fffffff"},
        {"n:f=#", "99999999999"},
        {"n:s=#", "99999999999"},
        {"n:i=.#", "5.99999999999"},
        {"n:i={00-FF}", "1234\0\0"s},
        {"n:b={00-FF}", "\0001234"s},
        {"n:i={00-FF}", "\xFF\xFF"},
        {"d:s=[,0-9] v:f=.#", ",12, 3.5"},
        {"n:i=9#", "999999999"},
        {"a:i=# ',' b:i=#", "1,2"},
        {"n:i=#", "12,5,7"},
        {"n:i=#", "192.168.1.1"},
        {"v:f=.#", "1.2.3"},
        {"a:i=# '.' b:i=# '.' c:i=#", "23.11.2026"},
        {"h:i=2# m:i=2#", "123519"},
        {"v:f=3.2#", "003.214"},
        {"',' v:f=.#", ",003.2,A"},
        {"n:i=# eol", "1.5"},
        {"v:f=.#", "5 E3, 7e"},
        {"n:i=#", "12."},
        {"[^0-9] n:i=#", "COM-5"},
        {"[^0-9] n:i=#", "a.5"},
        {"n:s=#", "1.5"},
        {"n:i=x", "1.5"},
        {"n:i=#", "1,5 A, x"},
        {"n:f=#", "-0"}};
    for (const auto& [pattern, message] : values) {
        EXPECT_TRUE(ValueCautionsOf(TakeApart(pattern), message).empty()) << pattern;
    }
}

// The parsing strings on the help page and the examples that show what not to do, and no others.
TEST(Caution, SpeaksOfThePitfallsInTheDocumentation)
{
    std::vector<std::string> patterns;
    for (const auto& entry : std::filesystem::directory_iterator(WORD_SIFTER_EXAMPLES)) {
        if (entry.path().extension() == ".pattern") patterns.push_back(Read(entry.path()));
    }
    const std::string page = Read(WORD_SIFTER_HELP_PAGE);
    const std::string start = "<code class=\"pattern\">";
    for (std::size_t at = 0; (at = page.find(start, at)) != std::string::npos;) {
        at += start.size();
        patterns.push_back(page.substr(at, page.find("</code>", at) - at));
    }
    EXPECT_GT(patterns.size(), 150U);
    std::set<std::string> spoken;
    for (const std::string& pattern : patterns) {
        if (!FindFault(pattern) && !FindCautions(TakeApart(pattern)).empty())
            spoken.insert(pattern);
    }
    EXPECT_EQ(spoken, (std::set<std::string>{"name:string=chars ';'", "n:integer=[0-9 ]",
                                             "v:float=#", "v:float=2 bytes", "v:float=4 bytes",
                                             "v:linteger=6 bytes", "n:integer=8x",
                                             "{{02}} 'Q' direction:string=[,0-9] speed:float=.#"}));
}

}  // namespace
