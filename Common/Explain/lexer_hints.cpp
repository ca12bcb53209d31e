#include "lexer_hints.h"

#include <algorithm>

#include "byte_text.h"

namespace NExplain {

namespace {

std::string HintByteValue(const std::string& fault)
{
    const auto digits = static_cast<std::size_t>(
        std::find_if_not(
            fault.begin(), fault.end(),
            [](char c) { return NPattern::IsHexDigit(static_cast<NPattern::Byte>(c)); }) -
        fault.begin());
    const std::string hint = "between { and } a byte has exactly two hexadecimal digits";
    const bool hasPrefix = digits == 1 && fault.size() > 1 && (fault[1] == 'x' || fault[1] == 'X');
    if (hasPrefix) return hint + " and no prefix 0x";
    if (digits == 1) return hint + ": 0" + fault[0];
    const std::string separate = ", and spaces or commas separate bytes";
    if (digits != 4) return hint + separate;
    return hint + separate + ": " + fault.substr(0, 2) + ' ' + fault.substr(2, 2);
}

std::string HintCharacter(const std::string& fault, NPattern::LexerMode mode)
{
    const char first = fault.empty() ? '\0' : fault.front();
    if (fault.rfind("\xE2\x80", 0) == 0 || fault.rfind("\xC2\xB4", 0) == 0 || first == '`') {
        return "this is not a plain quote; a word processor may have put it there. Use ' or \"";
    }
    if (mode == NPattern::kByteSetMode) {
        return "between { and } write bytes of two hexadecimal digits, such as 0D or 41-5A; "
               "characters go between [ and ]";
    }
    switch (first) {
        case '\\': return "a backslash has a meaning only inside quotes and inside [ ]";
        case '|':
            return "a parsing string has no alternatives; for a single character use a set: [[ab]]";
        case '*':
        case '+':
            return "no sign repeats a piece; [ ] takes as many characters as there are, and # "
                   "reads "
                   "the sign of a number by itself. If it is a text of the message: " +
                   InQuotes({&first, 1});
        default: break;
    }
    return "it has no meaning outside quotes and sets. If it is a text of the message, write it in "
           "quotes; a name has only letters, digits and _";
}

}  // namespace

std::vector<std::string> LexerHints(NPattern::PatternErrorCode code, const std::string& fault,
                                    NPattern::LexerMode mode)
{
    switch (code) {
        case NPattern::kErrorInvalidByteValue: return {HintByteValue(fault)};
        case NPattern::kErrorUnmatchedQuote:
            return {
                "the text that starts here has no closing quote; write a backslash before a quote "
                "inside it, or put the other kind of quote around it"};
        case NPattern::kErrorUnclosedSet:
        case NPattern::kErrorUnfinishedEscape:
            return {std::string("the set that starts here has no closing ") +
                    (fault.front() == '{' ? '}' : ']')};
        case NPattern::kErrorEmptyQuotes: return {"a piece has to take something: leave it out"};
        default: return {HintCharacter(fault, mode)};
    }
}

}  // namespace NExplain
