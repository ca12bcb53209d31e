// What a parsing string compiles to, and how it fails.

#include <gtest/gtest.h>

#include "engine_support.h"

using namespace NPattern;

namespace {

struct DumpRow {
    const char* mPattern;
    const char* mDump;
};

TEST(Compile, DumpsWhatItCompiled)
{
    const DumpRow rows[] = {
        {"", ""},
        // Text elements, and the white space between them.
        {"\"a?\\?\\n\"", "T STRING     \"a\a?\n\" case-sensitive=false \n"},
        {"'\"\\'\\q'", "T STRING     \"\"'q\" case-sensitive=true \n"},
        {"\"a\"\"b\"",
         "T STRING     \"a\" case-sensitive=false \nB WHITESPACE\n"
         "T STRING     \"b\" case-sensitive=false \n"},
        {"(0-7)'a'EOL",
         "B BITFIELD   big-endian 1-bytes\n              (0 - 7) ':LINTEGER'\n"
         "T STRING     \"a\" case-sensitive=true \nB WHITESPACE\nT EOL        \n"},
        // Headers: any beginning of a type word, in any case.
        {"n:s='a'", "T STRING     \"a\" case-sensitive=true n:STRING\n"},
        {"Name_1:STRING=eol", "T EOL        Name_1:STRING\n"},
        {"x:i=#", "T NUMBER     0.0 decimal_point=false hex=false x:LINTEGER\n"},
        {"_x:li=#", "T NUMBER     0.0 decimal_point=false hex=false _x:LINTEGER\n"},
        {"x:f=.#", "T NUMBER     0.0 decimal_point=true hex=false x:FLOAT\n"},
        {"x:Bint=#", "T NUMBER     0.0 decimal_point=false hex=false x:BINTEGER\n"},
        // Numbers.
        {"4X", "T NUMBER     4.0 decimal_point=false hex=true \n"},
        {"3 . 2 digit", "T NUMBER     3.2 decimal_point=true hex=false \n"},
        {"#.#",
         "T NUMBER     0.0 decimal_point=false hex=false \nB WHITESPACE\n"
         "T NUMBER     0.0 decimal_point=true hex=false \n"},
        {"99999999999 #", "T NUMBER     2147483647.0 decimal_point=false hex=false \n"},
        // Classes, character sets, byte sets.
        {"4?", "B BYTESET    length=4 { 00-FF }\n"},
        {"3 LETTERS", "T BYTESET    length=3 { 41-5A 61-7A }\n"},
        {"[-a]", "T BYTESET    length=0 { 2D 61 }\n"},
        {"[a^]", "T BYTESET    length=0 { 5E 61 }\n"},
        {"[^^]", "B BYTESET    length=0 { 00-5D 5F-FF }\n"},
        {"[^-a]", "B BYTESET    length=0 { 00-2C 2E-60 62-FF }\n"},
        {"[e-a]", "T BYTESET    length=0 { 61-65 }\n"},
        {"[a-e-g]", "T BYTESET    length=0 { 2D 61-65 67 }\n"},
        {"[Z-^]", "T BYTESET    length=0 { 5A-5E }\n"},
        {"[+--]", "T BYTESET    length=0 { 2B-2D }\n"},
        {"[\\]\\^\\-]", "T BYTESET    length=0 { 2D 5D-5E }\n"},
        {"[\\t\\n-\\r]", "B BYTESET    length=0 { 09-0D }\n"},
        {"[\\[a]", "T BYTESET    length=0 { 5B 61 }\n"},
        {"[a\r\nb]", "T BYTESET    length=0 { 61-62 }\n"},
        {"[ [a]", "B BYTESET    length=0 { 20 5B 61 }\n"},
        {"[[a] ]", "T BYTESET    length=1 { 61 }\n"},
        {"[a}bc]", "T BYTESET    length=0 { 61-62 7D }\n"},
        {"[a{41}z]", "T BYTESET    length=0 { 34 61 7A-7B 7D }\n"},
        {"n:string={5B,0d 5A-50}", "B BYTESET    length=0 n:STRING{ 0D 50-5B }\n"},
        {"{41 { 42}", "B BYTESET    length=0 { 00 41-42 }\n"},
        {"{ {41} }", "B BYTESET    length=1 { 41 }\n"},
        // Bit fields.
        {"(a=7-0, x 8-8,9-19):l",
         "B BITFIELD   little-endian 3-bytes\n              (0 - 7) 'a:LINTEGER'\n"
         "              (8 - 8) ':LINTEGER'\n              (9 - 19) ':LINTEGER'\n"},
        {"(4-35):B", "B BITFIELD   big-endian 5-bytes\n              (4 - 35) ':LINTEGER'\n"},
        {"(2147483647-2147483647)",
         "B BITFIELD   big-endian 268435456-bytes\n"
         "              (2147483647 - 2147483647) ':LINTEGER'\n"},
    };
    for (const DumpRow& row : rows) EXPECT_EQ(DumpOf(row.mPattern), row.mDump) << row.mPattern;
    EXPECT_EQ(DumpOf("eol [ ] # {20} #").find("WHITESPACE"), std::string::npos);
    for (const char* word : {"?", "byte", "bytes"}) EXPECT_EQ(DumpOf(word), DumpOf("1 BYTE"));
    for (const char* word : {"c", "char", "chars", "character", "characters"}) {
        EXPECT_EQ(DumpOf(word), "T BYTESET    length=0 { 21-7E }\n");
    }
    for (const char* word : {"a", "letter"}) EXPECT_EQ(DumpOf(word), DumpOf("letters"));
    std::FILE* const file = std::tmpfile();
    CompileElements("[J-L]").at(0)->Dump(file);
    std::rewind(file);
    char line[80];
    for (int row = 0; row < 6; ++row) ASSERT_NE(std::fgets(line, sizeof line, file), nullptr);
    EXPECT_STREQ(line, "           { -- -- -- -- -- -- -- -- -- -- 4A 4B 4C -- -- -- }\n");
    std::fclose(file);
}

struct ErrorRow {
    std::string mPattern;
    const char* mMessage;
    int mPosition;
    std::string mOffendingText;
};

TEST(Compile, TellsTheErrorAndItsPlace)
{
    std::vector<ErrorRow> rows = {
        // The lexer: two ahead of the cursor, and the byte under it.
        {"!", "Unexpected character '!'", -1, "\0"s},
        {"foo bar !", "Unexpected character '!'", 7, "\0"s},
        {"abc ! def", "Unexpected character '!'", 3, " "},
        {"\"a\" \xE9", "Unexpected character '\xE9'", 3, "\0"s},
        {"'abc", "Unmatched ' quote", 2, "\0"s},
        {"\"abc\\", "Unmatched \" quote", 3, "\0"s},
        {"\"\"", "Quoted strings can't be empty", -1, "\""},
        {"[abc", "End of input in character set", 2, "\0"s},
        {"[a\\", "End of input in escape sequence", 1, "\0"s},
        {"{41", "End of input in character set", 1, "\0"s},
        {"{41]", "Unexpected character ']'", 2, "\0"s},
        {"{0A0D}", "Invalid byte value", 3, "}"},
        {"{1}", "Invalid byte value", 0, "}"},
        {"[a{z]", "Unexpected character 'z'", 2, "]"},
        // The first token of the element that no form can read.
        {"\"abc\" )", "Syntax error at ')'", 6, ")"},
        {"n:strings='a'", "Syntax error at 'n'", 0, "n"},
        {"n:floats=#", "Syntax error at 'n'", 0, "n"},
        {"n:bintegers=#", "Syntax error at 'n'", 0, "n"},
        {"n:integer=(1-2)", "Syntax error at 'n'", 0, "n"},
        {"a:string", "Syntax error at ':'", 1, ":"},
        {"eols", "Syntax error at 'eols'", 0, "eols"},
        {"3", "Syntax error at '3'", 0, "3"},
        {"3.x", "Syntax error at '3'", 0, "3"},
        {".", "Syntax error at '.'", 0, "."},
        {"0 chars", "Syntax error at '0'", 0, "0"},
        {"4 [a]", "Syntax error at '4'", 0, "4"},
        {"'x'[]", "Syntax error at '['", 3, "["},
    };
    for (const char* bad :
         {"[a-]",       "[a-]]",     "[^]",    "[[a]",     "[a}",      "[a}\"]\"z]", "{}}",
          "{-41}",      "{41-}",     "{41-}}", "{41-^42}", "{41--42}", "{41^42}",    "{41-42-43}",
          "{41-42^43}", "{^}",       "{^}}",   "{^^41}",   "{^-41}",   "(1-)",       "(a=1)",
          "(1-2,)",     "(1-2 3-4)", "(1-2",   "(1-2):X",  "(1-2):",   "(0-32)",     "[^]a]",
          "[a-]b]",     "{^}a}",     "{41-}a}"}) {
        rows.push_back({bad,
                        bad[0] == '['   ? "Syntax error at '['"
                        : bad[0] == '{' ? "Syntax error at '{'"
                                        : "Syntax error at '('",
                        0, std::string(1, bad[0])});
    }
    for (const ErrorRow& row : rows) {
        Pattern pattern;
        pattern.SetPatternString("'x'");
        try {
            pattern.SetPatternString(row.mPattern);
            ADD_FAILURE() << row.mPattern << " compiled";
        } catch (const PatternSyntaxException& error) {
            EXPECT_EQ(error.mMessage, row.mMessage) << row.mPattern;
            EXPECT_EQ(error.mPosition, row.mPosition) << row.mPattern;
            EXPECT_EQ(error.mOffendingText, row.mOffendingText) << row.mPattern;
            const bool atToken = error.mMessage.find("Syntax") == 0;
            EXPECT_EQ(error.mFile, atToken ? "pattern_element.cpp" : "pattern_ltoken.cpp");
        }
        EXPECT_EQ(MatchResult(pattern, "x"), "no match") << "after " << row.mPattern;
    }
}

TEST(Compile, ErrorsSpeakInFull)
{
    try {
        Pattern().SetPatternString("foo bar");
        FAIL();
    } catch (const PatternException& error) {
        EXPECT_EQ(error.Message(), "Syntax error at character 0 (foo): Syntax error at 'foo'.");
    }
    const PatternSyntaxException atCursor("f", 7, "!", 1, -2, "%s", "text");
    EXPECT_EQ(atCursor.Message(), "Syntax error at character -1 (): text.");
    EXPECT_EQ(atCursor.mLine, 7);

    const std::string longText(3000, 'x');
    const PatternException cut(nullptr, 1, "%s", longText.c_str());
    EXPECT_EQ(cut.mFile, "<unknown>");
    EXPECT_EQ(cut.mMessage, longText.substr(0, 2048));
    EXPECT_EQ(PatternSyntaxException("f", 1, 5, "t", "%s", longText.c_str()).Message().size(),
              2048U);
    const char* const noFormat = nullptr;
    EXPECT_EQ(PatternException("f", 1, noFormat).mMessage, "Unknown error");
    EXPECT_EQ(cut.mCode, kErrorUnspecified);
}

TEST(Compile, TokensCarryWhatTheyAre)
{
    std::vector<LToken> tokens(1);
    Tokenize(tokens, " 10digits [\\n] {0A}");
    std::ostringstream shown;
    for (const LToken& token : tokens) {
        shown << token.mType << ' ' << token.mText << ' ' << int{token.mChar} << ' ' << token.mValue
              << ' ' << token.mEscaped << ' ' << token.mPosition << '|';
    }
    EXPECT_EQ(shown.str(),
              "2 10 0 10 0 1|4 digits 0 0 0 3|5 [ 91 0 0 10|5 n 110 0 1 11|5 ] 93 0 0 13|"
              "5 { 123 0 0 15|3 0A 10 10 0 16|5 } 125 0 0 18|6  0 0 0 0|");
    TokenCursor cursor = 0;
    const LToken* found = tokens.data();
    EXPECT_FALSE(ExpectToken(tokens, cursor, found, kSymbol, "["));
    EXPECT_EQ(found, nullptr);
    EXPECT_EQ(cursor, 0U);
}

// Every string of a few tokens of the language, against a few messages: the program and the
// elements one by one agree, and a match ends inside its message. The sanitizers see the rest.
TEST(Compile, SurvivesEveryShortString)
{
    const std::string_view pieces[] = {
        "a",  "x",          "n:i=", "n:s=", "'", "\"", "[", "]", "{", "}", "^",  "-",   "0",
        "41", "9999999999", "(",    ")",    ",", ":",  "=", ".", "#", "?", "\\", "eol", " "};
    const HeapMessage messages[] = {HeapMessage(""), HeapMessage("a"), HeapMessage("-4.1"),
                                    HeapMessage("A\0\n)"s)};
    std::size_t compiled = 0;
    std::size_t tried = 0;
    std::vector<Parameter> captures;
    std::vector<Parameter> collected;
    const auto attempt = [&](const std::string& parseString) {
        Pattern pattern;
        ++tried;
        try {
            pattern.SetPatternString(parseString);
        } catch (const PatternException&) {
            return;
        }
        ++compiled;
        const ElementList elements = CompileElements(parseString);
        for (const HeapMessage& message : messages) {
            const Byte* const rest = pattern.Match(message.Data(), message.Length());
            ASSERT_EQ(rest, MatchByElements(elements, message, captures)) << parseString;
            if (rest == nullptr) continue;
            ASSERT_GE(rest, message.Data());
            ASSERT_LE(rest, message.Data() + message.Length());
            pattern.CollectParameters(collected);
            ASSERT_TRUE(std::equal(collected.begin(), collected.end(), captures.begin(),
                                   captures.end(), SameParameter))
                << parseString;
        }
    };
    for (const auto first : pieces) {
        for (const auto second : pieces) {
            for (const auto third : pieces) {
                const std::string start = std::string(first).append(second).append(third);
                attempt(start);
                for (const auto fourth : {"]", "}", ")", "41", "#", "'", "-"})
                    attempt(start + fourth);
            }
        }
    }
    EXPECT_GT(compiled, tried / 50);
    EXPECT_LT(compiled, tried);
}

}  // namespace
