// What is wrong with a parsing string, where, and what to do about it.

#include <gtest/gtest.h>

#include <string>

#include "Common/Explain/fault.h"
#include "Common/Pattern/pattern_elements.h"

using namespace NExplain;

namespace {

struct FaultRow {
    const char* mPattern;
    NPattern::PatternErrorCode mCode;
    std::size_t mStart;
    std::size_t mLength;
    const char* mHint;  // part of the only one; null: there is none
};

TEST(Fault, FindsTheFaultAndItsRemedy)
{
    using namespace NPattern;
    const FaultRow rows[] = {
        {"'x' '", kErrorUnmatchedQuote, 4, 1, "has no closing quote"},
        {"'x' \"\"", kErrorEmptyQuotes, 4, 2, "leave it out"},
        {"n:s=[abc", kErrorUnclosedSet, 4, 1, "has no closing ]"},
        {"{41 ", kErrorUnclosedSet, 0, 1, "has no closing }"},
        {"'x' [a] {41", kErrorUnclosedSet, 8, 1, "has no closing }"},
        {"[a\\[b", kErrorUnclosedSet, 0, 1, "has no closing ]"},
        {"[a\\", kErrorUnfinishedEscape, 0, 1, "has no closing ]"},
        {"{0A0D}", kErrorInvalidByteValue, 1, 4, ": 0A 0D"},
        {"{ A}", kErrorInvalidByteValue, 2, 1, ": 0A"},
        {"{123}", kErrorInvalidByteValue, 1, 3, "separate bytes"},
        {"{0x41}", kErrorInvalidByteValue, 1, 1, "no prefix 0x"},
        {"{41 z}", kErrorUnexpectedCharacter, 4, 1, "between [ and ]"},
        {"'a'  !", kErrorUnexpectedCharacter, 5, 1, "outside quotes and sets"},
        {"\xE2\x80\x9C z", kErrorUnexpectedCharacter, 0, 3, "not a plain quote"},
        {"a*", kErrorUnexpectedCharacter, 1, 1, "no sign repeats a piece"},
        {"'a'|'b'", kErrorUnexpectedCharacter, 3, 1, "no alternatives"},
        {"\\q", kErrorUnexpectedCharacter, 0, 1, "a backslash"},
        {"\\d", kErrorUnexpectedCharacter, 0, 1, "# takes a whole number"},
        {"'a'\\r\\n", kErrorUnexpectedCharacter, 3, 1, "line ends too"},
        {"\\x1b", kErrorUnexpectedCharacter, 0, 1, "in braces: {{1b}}"},
        {"n:f=%f", kErrorUnexpectedCharacter, 4, 1, ".# takes"},
        {"'a'$", kErrorUnexpectedCharacter, 3, 1, "nothing has to mark the end"},
        {"$GPGGA,", kErrorUnexpectedCharacter, 0, 1, "quotes: '$GPGGA,';"},
        {"!t:f=.#", kErrorUnexpectedCharacter, 0, 1, "quotes: '!';"},
        {"$a?b\\", kErrorUnexpectedCharacter, 0, 1, R"(quotes: '$a\?b\\';)"},
        {"$\xC3 5", kErrorUnexpectedCharacter, 0, 1, "in quotes; a name"},
        {"[0-9]{3}", kErrorInvalidByteValue, 6, 1, "does not repeat"},
        {"a{2,4}", kErrorInvalidByteValue, 2, 1, "does not repeat"},
        {"'a' {3}", kErrorInvalidByteValue, 5, 1, ": 03"},
        {"'x' [[a", kErrorUnclosedSet, 4, 1, "no closing ]]"},
        {"[a[b\\]", kErrorUnclosedSet, 0, 1, "no closing ]; a ] after a backslash"},
        {"'ab' wrong x", kErrorSyntax, 5, 5, "in quotes: 'wrong'"},
        {"lettrs", kErrorSyntax, 0, 6, "did you mean letters?"},
        {"pattern.txt", kErrorSyntax, 0, 7, "put -f before it"},
        {"n:i=3[a-z]", kErrorSyntax, 0, 1, "cannot come before a bracket. [ ]"},
        {"n:i#", kErrorSyntax, 0, 1, "an = after its type: n:i="},
        {"x:i#", kErrorSyntax, 1, 1, "an = after its type: x:i="},
        {"t=.#", kErrorSyntax, 0, 1, "t:float="},
        {"n:flaot=.#", kErrorSyntax, 0, 1, "did you mean float? The types are string, float, "},
        {"n:zzzz=.#", kErrorSyntax, 0, 1, "'zzzz' is not a type. The types are"},
        {"n:flxyz=#", kErrorSyntax, 0, 1, "'flxyz' is not a type. The types are"},
        {"n:i==#", kErrorSyntax, 0, 1, "one = is enough: n:i="},
        {"n:i=,#", kErrorSyntax, 0, 1, "begins with ','"},
        {"n:i=-#", kErrorSyntax, 0, 1, "by themselves: n:i=#"},
        {"float:t=.#", kErrorSyntax, 0, 5, "t:float="},
        {"t:double=.#", kErrorSyntax, 0, 1, "did you mean float?"},
        {"t float=.#", kErrorSyntax, 0, 1, "t:float="},
        {"x:.#", kErrorSyntax, 1, 1, "x:float="},
        {"T= #", kErrorSyntax, 0, 1, "quotes: 'T='"},
        {"a=0-3", kErrorSyntax, 1, 1, "(a=0-3)"},
        {"my-t:f=#", kErrorSyntax, 0, 2, "digits and _: my_t"},
        {"2nd:i=#", kErrorSyntax, 0, 1, "_2nd"},
        {"4 n:i=digits", kErrorSyntax, 0, 1, "n:i=4 digits"},
        {"4 n:i='a'", kErrorSyntax, 0, 1, "as in n:i=4 digits"},
        {"n:s=4", kErrorSyntax, 0, 1, "4# one of at most 4 digits"},
        {"n:s=1.5", kErrorSyntax, 0, 1, "1.5# limits"},
        {"3.x", kErrorSyntax, 0, 1, "no point: 3x"},
        {"0xC3", kErrorSyntax, 0, 1, "{{C3}}. If"},
        {"0xC3B4", kErrorSyntax, 0, 1, "'0xC3B4'"},
        {"stx", kErrorSyntax, 0, 3, "a byte is written {{02}}"},
        {"[a-]", kErrorSyntax, 0, 1, "as in [-a]"},
        {R"([\\-])", kErrorSyntax, 0, 1, R"(as in [-\\])"},
        {R"([\{-])", kErrorSyntax, 0, 1, R"(as in [-\{])"},
        {"{41-}", kErrorSyntax, 0, 1, "41- has no end"},
        {"[é-]", kErrorSyntax, 0, 1, R"(as in [-\xA9])"},
        {"[^]", kErrorSyntax, 0, 1, "at least one character"},
        {"{{}}", kErrorSyntax, 0, 1, "at least one byte"},
        {"[[a]", kErrorSyntax, 0, 1, "two brackets and ends with one"},
        {"{02}}", kErrorSyntax, 4, 1, "also begins with two"},
        {"{^^02}", kErrorSyntax, 0, 1, "a ^ stands first"},
        {"'x' 5", kErrorSyntax, 4, 1, "quotes: '5'"},
        {"n:i=", kErrorSyntax, 0, 1, "after n:i= comes the piece"},
        {"n:i=(0-7)", kErrorSyntax, 0, 1, "(n=0-7)"},
        {"0 chars", kErrorSyntax, 0, 1, "at least 1"},
        {"digits 4", kErrorSyntax, 7, 1, "before its word: 4 digits"},
        {"digits(4)", kErrorSyntax, 6, 1, "before its word: 4 digits"},
        {"T:t:f=#", kErrorSyntax, 0, 1, "quotes: 'T:'"},
        {"s:s=rest", kErrorSyntax, 0, 1, "eol takes"},
        {"digits4", kErrorSyntax, 0, 7, "before its word: 4 digits"},
        {"x4", kErrorSyntax, 0, 2, "before its word: 4x"},
        {"12", kErrorSyntax, 0, 2, "quotes: '12'; # takes"},
        {"2 bytes:L", kErrorSyntax, 7, 1, "linteger or binteger"},
        {"(a=0-32)", kErrorSyntax, 0, 1, "0-32 is wider"},
        {"(a=1)", kErrorSyntax, 0, 1, "(low=0-3, high=4-7)"},
        {"(a=-40)", kErrorSyntax, 0, 1, "(low=0-3, high=4-7)"},
        {"(1-2,) (0-63)", kErrorSyntax, 0, 1, "(low=0-3, high=4-7)"},
        {"(1-2,) {00-FF}", kErrorSyntax, 0, 1, "(low=0-3, high=4-7)"},
        {"3 eol", kErrorSyntax, 0, 1, "before eol"},
        {"'a', 'b'", kErrorSyntax, 3, 1, "quotes: ','"},
        {"'a' )", kErrorSyntax, 4, 1, "nothing open that ')'"},
        {"'a' ]", kErrorSyntax, 4, 1, "in a set write a backslash"},
        {"2(a=0-3)", kErrorSyntax, 0, 1, "before a bit field"},
        {"3,", kErrorSyntax, 0, 1, "quotes: '3'"},
        {"(", kErrorSyntax, 0, 1, "(low=0-3, high=4-7)"},
    };
    for (const FaultRow& row : rows) {
        const auto fault = FindFault(row.mPattern);
        ASSERT_TRUE(fault.has_value()) << row.mPattern;
        EXPECT_EQ(fault->mCode, row.mCode) << row.mPattern;
        EXPECT_EQ(fault->mStart, row.mStart) << row.mPattern;
        EXPECT_EQ(fault->mLength, row.mLength) << row.mPattern;
        ASSERT_EQ(fault->mHints.size(), row.mHint != nullptr ? 1U : 0U) << row.mPattern;
        if (row.mHint != nullptr) {
            EXPECT_NE(fault->mHints[0].find(row.mHint), std::string::npos) << fault->mHints[0];
        }
        EXPECT_EQ(fault->mNeeds.empty(), row.mCode != kErrorSyntax) << row.mPattern;
    }
    EXPECT_FALSE(FindFault("n:i=#").has_value());
}

// The needs come from the tables that the engine itself compiles with.
TEST(Fault, NamesEveryWordThatCouldHaveStoodThere)
{
    const auto needsOf = [](const char* pattern) {
        std::string needs;
        const Fault fault = FindFault(pattern).value();
        for (const std::string& need : fault.mNeeds) needs += need + '\n';
        return needs;
    };
    const std::string needs = needsOf("wrong");
    for (const auto& row : NPattern::kNumberWords) {
        EXPECT_NE(needs.find(' ' + std::string(row.mWord)), std::string::npos) << row.mWord;
    }
    for (const auto& row : NPattern::kByteClasses) {
        EXPECT_NE(needs.find(' ' + std::string(row.mWord)), std::string::npos) << row.mWord;
    }
    struct Row {
        const char* mPattern;
        const char* mNeed;
    };
    for (const Row& row :
         {Row{"n:i=3[a]", "number     after n:i= after the count 3 one of x hex # digit"},
          {"n:q=#", "text       another type in the header, and then 'a text"},
          {"n:i=(1-)", "bit field  no header, and ("},
          {". x", "number     after the point one of # digit digits, with or"},
          {"[[]]", "set        characters or ranges like a-z, at least one, up to ]]"},
          {"{}", "set        bytes like 0D or ranges like 41-5A, at least one, up to }"}}) {
        EXPECT_NE(needsOf(row.mPattern).find(row.mNeed), std::string::npos) << row.mPattern;
    }
}

}  // namespace
