#include "lexer_hints.h"

#include <algorithm>
#include <string_view>

#include "byte_text.h"

namespace NExplain {

namespace {

constexpr char kLineEndWords[] =
    "white space between text pieces is skipped, line ends too, so nothing has to take it; inside "
    "quotes and [ ] \\r and \\n have a meaning";

constexpr char kRepetitionWords[] =
    "a number in braces does not repeat the piece before it: [ ] takes as many characters as there "
    "are, [[ ]] exactly one, so write it as often as you need it; a word takes a count before it, "
    "as in 3 letters";

// True if the braces around start are attached to a piece and contain one or two short decimal
// numbers: {3}, {2,4}.
bool IsRepetition(const std::string& parseString, std::size_t start)
{
    if (start < 2 || parseString[start - 1] != '{') return false;
    const char before = parseString[start - 2];
    const std::size_t end = parseString.find_first_not_of("0123456789,", start);
    return end != std::string::npos && parseString[end] == '}' && before != '{' && before != '=' &&
           !NPattern::IsSpace(static_cast<NPattern::Byte>(before));
}

std::string HintByteValue(const std::string& fault)
{
    const auto digits = static_cast<std::size_t>(
        std::find_if_not(
            fault.begin(), fault.end(),
            [](char c) { return NPattern::IsHexDigit(static_cast<NPattern::Byte>(c)); }) -
        fault.begin());
    const std::string hint = "between { and } a byte has exactly two hexadecimal digits";
    if (fault[1] == 'x' || fault[1] == 'X') return hint + " and no prefix 0x";
    if (digits == 1) return hint + ": 0" + fault[0];
    const std::string separate = ", and spaces or commas separate bytes";
    if (digits != 4) return hint + separate;
    return hint + separate + ": " + fault.substr(0, 2) + ' ' + fault.substr(2, 2);
}

// Signs and formats of other notations, and what to write here.
struct ForeignSign {
    std::string_view mSign;
    std::string_view mInstead;
};

constexpr ForeignSign kForeignSigns[] = {
    {"%d", "# takes a whole number"},
    {"%f", ".# takes a number with a point"},
    {"%s", "chars takes characters up to the next white space"},
    {"%x", "x takes a hexadecimal number"},
    {"\\r", kLineEndWords},
    {"\\n", kLineEndWords},
    {"\\d", "# takes a whole number, and [[0-9]] one digit"},
    {"\\t", "white space between text pieces is skipped; [\\t] takes a tab where it is not"},
    {"\\s", "white space between text pieces is skipped; [ \\t] takes it where it is not"},
    {"\\w", "letters, digits and _ are [A-Za-z0-9_]"},
    {"\\", "a backslash has a meaning only inside quotes and inside [ ]"},
    {"//", "a parsing string has no comments"},
    {"|", "a parsing string has no alternatives; for a single character use a set: [[ab]]"},
};

// The text that was most likely meant: up to what begins another piece.
std::string_view TextAt(std::string_view fault)
{
    const std::string_view text = fault.substr(0, fault.find_first_of(" \t\r\n'\"[{(#.:="));
    const bool isName = fault.substr(text.size()).starts_with(':');
    return isName ? text.substr(0, 1) : text;
}

// Returns ": 'text'" as a parsing string has it, or nothing for what is hard to read.
std::string ProposedText(std::string_view text)
{
    if (!NPattern::IsPrint(static_cast<NPattern::Byte>(text.front())) || IsBinary(text)) return "";
    std::string escaped;
    for (const char c : text) {
        if (c == '\\' || c == '?') escaped += '\\';
        escaped += c;
    }
    return ": " + InQuotes(escaped);
}

std::string HintCharacter(const std::string& fault, NPattern::LexerMode mode)
{
    const char first = fault.front();
    if (fault.starts_with("\xE2\x80") || fault.starts_with("\xC2\xB4") || first == '`') {
        return "this is not a plain quote; a word processor may have put it there. Use ' or \"";
    }
    if (mode == NPattern::kByteSetMode) {
        return "between { and } write bytes of two hexadecimal digits, such as 0D or 41-5A; "
               "characters go between [ and ]";
    }
    const auto isHexDigit = [&fault](std::size_t position) {
        return NPattern::IsHexDigit(static_cast<NPattern::Byte>(fault[position]));
    };
    if (fault.starts_with("\\x") && isHexDigit(2) && isHexDigit(3)) {
        return "a byte is written in braces: {{" + fault.substr(2, 2) + "}}";
    }
    for (const ForeignSign& row : kForeignSigns) {
        if (fault.starts_with(row.mSign)) return std::string(row.mInstead);
    }
    if (fault == "$")
        return "nothing has to mark the end: a message can always go on after the last piece";
    if (first == '*' || first == '+') {
        return std::string("no sign repeats a piece; [ ] takes as many characters as there are") +
               (first == '+' ? ", and # reads the sign of a number by itself"
                             : ", and chars all up to the next white space") +
               ". If it is a text of the message: " + InQuotes({&first, 1});
    }
    return "it has no meaning outside quotes and sets. If it is a text of the message, write it in "
           "quotes" +
           ProposedText(TextAt(fault)) + "; a name has only letters A to Z, digits and _";
}

// fault: from the opening bracket on.
std::string HintUnclosed(std::string_view fault)
{
    const char open = fault.front();
    const char close = open == '{' ? '}' : ']';
    const bool isDouble = fault.starts_with(std::string(2, open));
    std::string hint =
        "the set that starts here has no closing " + std::string(isDouble ? 2 : 1, close);
    if (fault.find("\\]") != std::string_view::npos)
        hint += "; a ] after a backslash closes nothing";
    return hint;
}

}  // namespace

std::vector<std::string> LexerHints(NPattern::PatternErrorCode code, const std::string& parseString,
                                    std::size_t start, NPattern::LexerMode mode)
{
    const std::string fault = parseString.substr(start);
    switch (code) {
        case NPattern::kErrorInvalidByteValue:
            return {IsRepetition(parseString, start) ? kRepetitionWords : HintByteValue(fault)};
        case NPattern::kErrorUnmatchedQuote:
            return {
                "the text that starts here has no closing quote; write a backslash before a quote "
                "inside it, or put the other kind of quote around it"};
        case NPattern::kErrorUnclosedSet:
        case NPattern::kErrorUnfinishedEscape: return {HintUnclosed(fault)};
        case NPattern::kErrorEmptyQuotes: return {"a piece has to take something: leave it out"};
        default: return {HintCharacter(fault, mode)};
    }
}

}  // namespace NExplain
