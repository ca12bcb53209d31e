// What compiled elements take of a message and what they capture.

#include <gtest/gtest.h>

#include "Common/Pattern/pattern_elements.h"
#include "engine_support.h"

using namespace NPattern;

namespace {

struct MatchRow {
    const char* mPattern;
    std::string mMessage;
    std::string mResult;  // of MatchResult
};

void ExpectMatches(std::initializer_list<MatchRow> rows)
{
    for (const MatchRow& row : rows) {
        Pattern pattern;
        ASSERT_NO_THROW(pattern.SetPatternString(row.mPattern)) << row.mPattern;
        EXPECT_EQ(MatchResult(pattern, row.mMessage), row.mResult)
            << row.mPattern << " against " << row.mMessage;
        EXPECT_EQ(ElementsResult(row.mPattern, row.mMessage), row.mResult)
            << row.mPattern << " against " << row.mMessage;
    }
}

TEST(Match, GoesForwardOnly)
{
    ExpectMatches({
        {"", "abc", "no match"},
        {"'a'", "", "no match"},
        {"\"abc\" eol", "abc", "no match"},  // used up before the white space has its turn
        {"\"abc\" r:s=eol", "abc rest", "r=\"rest\" | "},
        {"\"abc\" r:s=eol", "abc\r\ndef", "r=\"def\" | "},
        {"\"ab\" \"cd\"", "abcd", " | "},
        {"\"ab\" \"cd\"", "ab\n\t\v\f\r cd!", " | !"},
        {"\"ab\" \"cd\"",
         "ab\x85"
         "cd",
         "no match"},
        {"'a' eol", "a ", "no match"},  // used up by the white space
        {"'a' 'b?'", "a bx", " | "},
        {"'a' x", "a F", " | "},
        {"'abc'", " abc", "no match"},
        {"a:s=letters b:s=letters", "abc def", "a=\"abc\" b=\"def\" | "},
        {"a:s=letters b:s=letters", "abcdef", "no match"},  // the first takes all it can
        {"x:s='a' x:s='b'", "ab", "x=\"a\" x=\"b\" | "},
    });
}

TEST(Match, Strings)
{
    ExpectMatches({
        {"n:s=\"aZc\"", "AzCdef", "n=\"AzC\" | def"},
        {"\"aBc\"", "AbCdef", " | def"},
        {"'abc'", "ABC", "no match"},
        {"'b'", "c", "no match"},
        {"\"@[`{\"", "@[`{", " | "},
        {"\"@\"", "`", "no match"},  // 32 apart, and no letters
        {"\"\xC4\"", "\xE4", "no match"},
        {"n:s=\"a?c\"", "aXc", "n=\"aXc\" | "},
        {"n:s='a\\?c'", "a?c", "n=\"a?c\" | "},
        {"\"a?c\"", "ac", "no match"},
        {"'a?'", "a\0"s, "no match"},
        {"? 'x?'", "a x!", "no match"},
        {"? n:s='x'", "a x", "no match"},
        {"'abcd\xE9'", "`bcd\xE9", "no match"},
        {"'abcdefghijklmnop'", "abcdefghijklmnoX", "no match"},
        {"# 'abcdefghijklmnop'", "1 abcdefgh ijklmnop", "no match"},
        {"'abcdefghabcdefgh'", "abcdefgh", "no match"},
        {"6 bytes 'abcdefgh'", "cdefghab", "no match"},
        {"'abcdefg' 'abcdefg '", "abcdefg ", "no match"},
        {"n:f=\"?????\"", "-1e2x", "n=-100 | "},
    });
    Pattern pattern;
    pattern.SetPatternString("n:s='a\0bc'"s);
    EXPECT_EQ(MatchResult(pattern, "a\0XYZ"s), "n=\"a\0XY\" | Z"s);  // not compared after the NUL
    EXPECT_EQ(MatchResult(pattern, "aXXX"), "no match");
    EXPECT_EQ(MatchResult(pattern, "a\0X"s), "no match");
    pattern.SetPatternString("'a\0bc'"s);
    EXPECT_EQ(MatchResult(pattern, "a\0XYZ"s), " | Z");
}

TEST(Match, ComparesEachByteOfATextOfEachLength)
{
    const std::string letters = "abcdefghijklmnopqrst";
    for (std::uint32_t size = 1; size <= letters.size(); ++size) {
        const std::string text = letters.substr(0, size);
        Pattern pattern;
        pattern.SetPatternString("'" + text + "'");
        EXPECT_EQ(MatchResult(pattern, text), " | ");
        const HeapMessage message(text);
        EXPECT_EQ(pattern.Match(message.Data(), size - 1), nullptr) << size;
        for (std::uint32_t place = 0; place < size; ++place) {
            std::string other = text;
            other[place] = '!';
            EXPECT_EQ(MatchResult(pattern, other), "no match") << other;
        }
    }
}

TEST(Match, LineEnds)
{
    const std::string longLine(600, 'x');
    ExpectMatches({
        {"l:s=eol", "abc\r\ndef", "l=\"abc\r\n\" | def"},
        {"l:s=eol", "\r\n\r\nabc", "l=\"\r\n\r\n\" | abc"},
        {"l:s=eol", "abc", "l=\"abc\" | "},
        {"l:s=eol", std::string(256, 'x') + "\ny", "l=\"" + std::string(256, 'x') + "\n\" | y"},
        {"l:s=eol", "a\0b\nc"s, "l=\"a\" | c"},
        {"l:s=eol", "\0b\nc"s, "l=\"\" | c"},
        {"l:s=eol", longLine + "\r" + longLine, "l=\"" + longLine + "\r\" | " + longLine},
        {"l:i=eol eol", " 12 V\n  \nx", "l=12 | "},
    });
}

TEST(Match, Numbers)
{
    ExpectMatches({
        {"n:s=#", "-42 rest", "n=\"-42\" |  rest"},
        {"n:s=#", "abc", "no match"},
        {"n:s=#", " 5", "no match"},
        {"n:i=#", "+", "n=0 | "},
        {"n:s=2#", "-12345", "n=\"-12\" | 345"},
        {"n:s=x", "00fFzz", "n=\"00fF\" | zz"},
        {"x", "-FF", "no match"},
        {"n:i=x", "0x1F", "n=0 | x1F"},
        {"n:i=2x", "1F2", "n=31 | 2"},
        {"n:s=.#", "+.5", "n=\"+.5\" | "},
        {"n:f=.#", ".", "n=0 | "},
        {"n:f=.#", " 5", "no match"},
        {"n:i=x", " 5", "no match"},
        {"#", " 5", "no match"},
        {"n:f=.#", "1e5", "n=1 | e5"},
        {"n:s=3.2#", "12.345", "n=\"12.34\" | 5"},
        {"n:f=.2#", "1234.567", "n=1234.5599999999999 | 7"},
        {"a:i=#  b:f=.#", "3.14", "a=3 b=0.14000000000000001 | "},
        {"a:i=2# b:i=2#", "1234", "a=12 b=34 | "},
        {"n:i=.#", "-12.9", "n=-12 | "},
        // At the edges of 32 bits, and of what a double takes exactly.
        {"n:i=#", "2147483647", "n=2147483647 | "},
        {"n:i=#", "2147483648", "n=2147483647 | "},
        {"n:i=#", "18446744073709551617", "n=2147483647 | "},
        {"n:f=x", "10000000000000001", "n=2147483647 | "},
        {"n:f=x", "1F2g", "n=498 | g"},
        {"n:i=x", "10000000000000001", "n=2147483647 | "},
        {"n:i=#", "-2147483648", "n=-2147483648 | "},
        {"n:i=#", "000000000000000000000000012", "n=12 | "},
        {"n:i=x", "FFFFFFFF", "n=2147483647 | "},
        {"n:f=#", "9007199254740993", "n=9007199254740992 | "},
        {"n:f=#", "-0", "n=-0 | "},
        {"n:f=.#", "-.", "n=0 | "},
        {"n:f=.#", ".0000000000000000005", "n=5.0000000000000004e-19 | "},
        {"n:f=.#", "0.18446744073709551617", "n=0.18446744073709551 | "},
    });
}

TEST(Match, Sets)
{
    ExpectMatches({
        {"n:s=3 letters", "abcdef", "n=\"abc\" | def"},
        {"3 letters", "ab1", "no match"},
        {"n:s=letter", "abc1", "n=\"abc\" | 1"},
        {"n:s=bytes", "abc", "n=\"a\" | bc"},
        {"n:s=chars", "a~\x7F", "n=\"a~\" | \x7F"},
        {"n:s=[^,] ',' m:s=[^,]", "a b ,c", "n=\"a b \" m=\"c\" | "},
        {"n:i=[0-9]", "123x", "n=123 | x"},
        {"n:b=[0-9]", "123x", "n=123 | x"},
        {"n:i=[0-9 ]", "12", "n=12849 | "},  // a set that holds a blank reads raw bytes
        {"n:s={00-02}", "\0\1\2\3"s, "n=\"\0\1\2\" | \3"s},
        {"{{AA}} n:s={{55}}", "\xAA\x55\x55", "n=\"\x55\" | \x55"},
        {"'a' n:i={{55}}", "a U", "no match"},
        {"'a' n:b={{55}}", "a U", "no match"},
        {"n:i=2 bytes", "\x34\x12", "n=4660 | "},
        {"n:b=2 bytes", "\x12\x34", "n=4660 | "},
        {"n:f=2 bytes", "\x34\x12", "n=4660 | "},
        {"n:f=6 bytes", "\0\0\0\0\1\0"s, "n=4294967296 | "},
        {"[[a]]", "A", "no match"},
        {"[[^x]]", "yy", " | y"},
        {"[[^x]]", "x", "no match"},
        {"{{^00-FF}}", "\0"s, "no match"},
        {"n:i=4 bytes", "\xFF\xFF\xFF\xFF", "n=-1 | "},
        {"n:i=5 bytes", "\1\0\0\0\2"s, "n=1 | "},
        {"n:i=6 bytes", "\1\0\0\0\2\3"s, "n=1 | "},
        {"n:b=6 bytes", "\2\3\0\0\0\1"s, "n=1 | "},
        {"'a' 2 bytes 'b'", "a  b", " | "},
        {"2147483647 bytes", "abc", "no match"},
        // A text set converts by the rules of atof and strtol.
        {"n:f=[-+.0-9a-z]", "-0x1.8p3", "n=-12 | "},
        {"n:i=[-+0-9a-z]", "+12abc", "n=12 | "},
        {"n:f=[a-z]", "abc", "n=0 | "},
    });
}

TEST(Match, BitFields)
{
    const std::string ten = "\x10\x32\x54\x76\x98\xBA\xDC\xFE\x0F\xA5";
    ExpectMatches({
        {"(a=0-7, b=8-15, c=4-11, d=4-19, e=1-2):L", "\x12\x34\x56",
         "a=18 b=52 c=65 d=25409 e=1 | "},
        {"(a=0-7, b=8-15, c=4-11, d=4-19, e=1-2)", "\x12\x34\x56", "a=86 b=52 c=69 d=9029 e=3 | "},
        {"(a=0-31):L", "\x78\x56\x34\xF2", "a=-231451016 | "},
        {"(a=4-35):L", "\xF0\xEF\xCD\xAB\x09", "a=-1698898177 | "},
        {"(a=12-15)", "\x70\x00!"s, "a=7 | !"},
        {"(3-3, 0-0)", "\x08", "=1 =0 | "},
        {"(2147483647-2147483647)", "abc", "no match"},
        {"n:i=? (a=64-71)", ten, "n=16 a=50 | "},
        {"(a=64-71)", "12345678", "no match"},
        {"(a=24-55)", "\1\2\3\4\5\6\7", "a=16909060 | "},  // fewer bytes than a word
        {"(a=64-71, b=0-7):L", ten, "a=15 b=16 | \xA5"},
        {"(a=4-35, b=60-71, c=72-79)", ten, "a=-1378885382 b=805 c=16 | "},
        {"(a=4-35, b=60-71, c=72-79):L", ten, "a=-2023406815 b=255 c=165 | "},
    });
}

TEST(Match, FailureLeavesValuesAndClearingCollectsNothing)
{
    Pattern pattern;
    pattern.SetPatternString("(a=0-7) n:s='x'");
    EXPECT_EQ(MatchResult(pattern, "\x05x"), "a=5 n=\"x\" | ");
    EXPECT_EQ(MatchResult(pattern, "\x06y"), "no match");
    std::vector<Parameter> parameters(5);
    pattern.CollectParameters(parameters);
    EXPECT_EQ(Show(parameters), "a=6 n=\"x\"");  // the step that failed kept its value
    pattern.Clear();
    pattern.CollectParameters(parameters);
    EXPECT_TRUE(parameters.empty());
}

TEST(Match, KeptParametersFollowWhateverPatternFillsThem)
{
    struct Row {
        const char* mParseString;
        const char* mMessage;
        const char* mKept;
    };
    // In turn into the same ones: the same again, another name, another type, another number of
    // captures, shorter strings, none.
    const Row rows[] = {
        {"n:i=#", "1", "n=1"},
        {"n:i=#", "2", "n=2"},
        {"m:i=#", "3", "m=3"},
        {"m:f=#", "4", "m=4"},
        {"m:s=eol t:s=bytes", "", "m=\"\" t=\"\""},
        {"a:s=3a b:s=[0-9] c:s=[a-z]", "abc12345678901234567890wx",
         "a=\"abc\" b=\"12345678901234567890\" c=\"wx\""},
        {"a:s=3a b:s=[0-9] c:s=[a-z]", "xyz9wx", "a=\"xyz\" b=\"9\" c=\"wx\""},
        {"'x'", "x", ""},
    };
    CapturedParameters kept;
    Pattern one;
    Pattern other;
    for (int round = 0; round < 2; ++round) {
        for (const Row& row : rows) {
            Pattern& pattern = round == 0 ? one : other;
            pattern.SetPatternString(row.mParseString);
            const HeapMessage message(row.mMessage);
            EXPECT_EQ(pattern.Match(message.Data(), message.Length(), kept) != nullptr,
                      message.Length() != 0);
            EXPECT_EQ(Show(kept.Entries()), row.mKept) << row.mParseString;
            EXPECT_EQ(pattern.Match(nullptr, 0, kept), nullptr);
            EXPECT_EQ(Show(kept.Entries()), row.mKept) << row.mParseString;
        }
    }
    other.SetPatternString("n:i=#");
    other.Match(nullptr, 0, kept);
    EXPECT_EQ(Show(kept.Entries()), "n=0");
    other.Clear();
    EXPECT_EQ(other.Match(nullptr, 0, kept), nullptr);
    EXPECT_TRUE(kept.Entries().empty());
}

// Records how deep the stack is when its turn comes.
class StackProbe final : public Element {
  public:
    void Dump(std::FILE* /*stream*/) const override {}
    const Byte* Match(const Byte* data, std::uint32_t /*length*/) override
    {
        const volatile char local = 0;
        mDepth = reinterpret_cast<std::uintptr_t>(&local);
        return data;
    }
    bool IsBinary() const override { return true; }
    ElementPointer Pointer() const override { return static_cast<const EOLElement*>(nullptr); }

    std::uintptr_t mDepth = 0;
};

// A thousand times each row of pieces, between two probes.
TEST(Match, UsesNoMoreStackForALongPattern)
{
    struct Row {
        const char* mPieces;
        std::string mMessage;
    };
    for (const Row& row : {Row{"? 2 bytes n:i=2 bytes [^x] 'x' s:s=[^,] ','", "aABBccdx;,"},
                           {"{{AA}} (0-7) (0-3, 64-71):L n:f=3 bytes",
                            "\xAA\x05"
                            "123456789abc"},
                           {"'abcdefghijk' # n:i=2# m:f=.# s:s=3.2#", "abcdefghijk 1 2 3.4 5.67"},
                           {"x n:i=2x m:f=x s:s=2x '?'", "F 1F F FF-"},
                           {"letters n:s='a?' m:f=[0-9] 1 c", "b ax 5 +"},
                           {"n:s=[[b]] m:s=eol eol", "b a\nb\n"}}) {
        const ElementList elements = CompileElements(row.mPieces);
        StackProbe first;
        StackProbe last;
        Program program;
        std::string text = "first";
        first.Emit(program);
        program.AddText("first", true);
        for (int i = 0; i < 1000; ++i) {
            for (const auto& element : elements) element->Emit(program);
            text += row.mMessage;
        }
        last.Emit(program);
        program.Finish();
        std::vector<Parameter> values = program.Captures();
        const HeapMessage message(text + "last");
        ASSERT_NE(program.Run(message.Data(), message.Length(), values.data()), nullptr)
            << row.mPieces;
        const auto [low, high] = std::minmax(first.mDepth, last.mDepth);
        EXPECT_LT(high - low, 1000U) << row.mPieces;
    }
}

TEST(Match, TakesAPatternOfAMebibyte)
{
    std::string pattern;
    while (pattern.size() < 1 << 20) pattern += "# ";
    std::string text;
    for (std::size_t i = 0; i < pattern.size() / 2; ++i) text += "1 ";
    Pattern compiled;
    compiled.SetPatternString(pattern);
    EXPECT_EQ(MatchResult(compiled, text), " |  ");
}

// An element without a step of its own.
class PairElement final : public Element {
  public:
    PairElement()
    {
        mParameter.mName = "pair";
        mParameter.mType = kTypeString;
    }
    void Dump(std::FILE* /*stream*/) const override {}
    const Byte* Match(const Byte* data, std::uint32_t length) override
    {
        return length < 2 || data[0] != data[1] ? nullptr : CaptureText(data, data + 2, false);
    }
    bool IsBinary() const override { return false; }
    ElementPointer Pointer() const override { return static_cast<const EOLElement*>(nullptr); }
};

TEST(Match, CallsAnElementWithoutAStep)
{
    PairElement pair;
    const ElementList before = CompileElements("n:i=#");
    Program program;
    before[0]->Emit(program);
    program.AddSpace();
    pair.Emit(program);
    program.AddText("end", true);
    pair.Emit(program);
    program.Finish();
    std::vector<Parameter> values = program.Captures();
    for (const auto& [text, result] : {std::pair{"7 aaendbb!", "n=7 pair=\"aa\" pair=\"bb\" | !"},
                                       {"7 aaend bb", "no match"},
                                       {"8 abend", "no match"},
                                       {"9 bb", "no match"},
                                       {"9 bbenD", "no match"},
                                       {"9  ", "no match"}}) {
        const HeapMessage message{text};
        const Byte* const rest = program.Run(message.Data(), message.Length(), values.data());
        EXPECT_EQ(rest != nullptr ? Show(values) + " | " + message.From(rest) : "no match", result);
    }
}

// Texts of one length are written over each other.
TEST(Match, CapturesTextsOfEachLength)
{
    const std::string letters = "abcdefghijklmnopqrstuvwxyzabcdefghijklmnopqrstuvwxyz";
    Pattern pattern;
    pattern.SetPatternString("s:s=[a-z]");
    CapturedParameters kept;
    for (std::size_t size = 1; size <= 26; ++size) {
        for (std::size_t start = 0; start < 3; ++start) {
            const HeapMessage message(letters.substr(start, size));
            ASSERT_NE(pattern.Match(message.Data(), message.Length(), kept), nullptr);
            EXPECT_EQ(kept.Entries()[0].mStringValue, letters.substr(start, size));
        }
    }
}

}  // namespace
