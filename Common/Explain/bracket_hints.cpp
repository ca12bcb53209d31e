#include "hint_functions.h"

#include <cstdlib>

#include "Common/Pattern/pattern_bytes.h"
#include "byte_text.h"
#include "escapes.h"

namespace NExplain {

using NPattern::EqualsIgnoringCase;
using NPattern::LToken;

std::string HintCountBeforeBracket(const FaultPlace& place)
{
    if (!place.HasCount()) return "";
    if (place.WordIsSymbol('('))
        return "a count cannot come before a bit field; its highest bit says how many bytes it "
               "takes";
    if (!place.WordIsSymbol('[') && !place.WordIsSymbol('{')) return "";
    const bool isText = place.WordIsSymbol('[');
    return "a count cannot come before a bracket. " + std::string(isText ? "[ ]" : "{ }") +
           " takes as many as there are, " + (isText ? "[[ ]]" : "{{ }}") +
           " exactly one; write that once for each";
}

std::string HintSet(const FaultPlace& place)
{
    const bool isText = place.WordIsSymbol('[');
    if (!isText && !place.WordIsSymbol('{')) return "";
    const char open = isText ? '[' : '{';
    const char close = isText ? ']' : '}';
    const bool isDouble = FaultPlace::IsSymbol(place.AfterWord(1), open);
    const std::size_t first = isDouble ? 2 : 1;
    std::size_t end = first;
    while (place.AfterWord(end).mType != NPattern::kEnd &&
           !FaultPlace::IsSymbol(place.AfterWord(end), close)) {
        ++end;
    }
    const LToken& last = place.AfterWord(end - 1);
    const bool isNegated = FaultPlace::IsSymbol(place.AfterWord(first), '^');
    if (end == first + (isNegated ? 1 : 0)) {
        return isText ? "a set has at least one character; a ] in it is written \\]"
                      : "a set has at least one byte, such as {0D}";
    }
    if (end > first + 1 && FaultPlace::IsSymbol(last, '-')) {
        const std::string& text = place.AfterWord(end - 2).mText;
        const std::string member = Escaped(isText ? InSet(text) : text);
        return "the range " + member + "- has no end" +
               (isText ? "; a - in a set is written first, as in [-" + member + "], or as \\-"
                       : "; a range is written like 41-5A");
    }
    if (isDouble && !FaultPlace::IsSymbol(place.AfterWord(end + 1), close)) {
        return std::string(
                   "this set begins with two brackets and ends with one: with two at both "
                   "ends it takes exactly one ") +
               (isText ? "character" : "byte") + ", with one at both ends it takes a run";
    }
    return isText ? "" : "between { and } a ^ stands first, and a - stands between two bytes";
}

std::string HintHeaderBeforeBits(const FaultPlace& place)
{
    if (!place.HasHeader() || !place.WordIsSymbol('(')) return "";
    return "a bit field has no header: each range in it has a name of its own, as in (" +
           place.Token(0).mText + "=0-7)";
}

std::string HintOrderAfterBytes(const FaultPlace& place)
{
    if (!place.IsSymbol(0, ':') || !place.IsWord(1)) return "";
    const std::string& word = place.Token(1).mText;
    if (!EqualsIgnoringCase(word, "L") && !EqualsIgnoringCase(word, "B")) return "";
    return "only a bit field has a byte order after it; the byte order of captured bytes follows "
           "from the type: linteger or binteger";
}

std::string HintWideBits(const FaultPlace& place)
{
    if (!place.WordIsSymbol('(')) return "";
    for (std::size_t t = 1; place.AfterWord(t).mType != NPattern::kEnd; ++t) {
        if (FaultPlace::IsSymbol(place.AfterWord(t), ')')) break;
        if (!FaultPlace::IsSymbol(place.AfterWord(t), '-')) continue;
        const LToken& first = place.AfterWord(t - 1);
        const LToken& second = place.AfterWord(t + 1);
        if (first.mType != NPattern::kNumber || second.mType != NPattern::kNumber) continue;
        const std::int32_t one = first.mValue;
        const std::int32_t other = second.mValue;
        if (std::abs(one - other) >= 32) {
            return "a range of bits is at most 32 bits wide: " + std::to_string(one) + '-' +
                   std::to_string(other) + " is wider";
        }
    }
    return "";
}

std::string HintBitRanges(const FaultPlace& place)
{
    if (!place.WordIsSymbol('(')) return "";
    return "parentheses are for bit fields, such as (low=0-3, high=4-7): each range with both its "
           "bits, even "
           "a single one, as in bit=7-7, and commas between the ranges; then :L if the first byte "
           "is the least significant";
}

std::string HintBitsWithoutParentheses(const FaultPlace& place)
{
    const std::ptrdiff_t name = place.IsSymbol(0, '=') ? -1 : 0;
    if (!place.IsWord(name) || !place.IsSymbol(name + 1, '=') || !place.IsSymbol(name + 3, '-') ||
        place.Token(name + 2).mType != NPattern::kNumber ||
        place.Token(name + 4).mType != NPattern::kNumber) {
        return "";
    }
    return "a range of bits stands in parentheses: (" + place.Token(name).mText + '=' +
           place.Token(name + 2).mText + '-' + place.Token(name + 4).mText + ')';
}

}  // namespace NExplain
