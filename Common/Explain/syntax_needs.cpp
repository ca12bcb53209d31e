#include <string_view>

#include "Common/Pattern/pattern_byteset_element.h"
#include "Common/Pattern/pattern_eol_element.h"
#include "Common/Pattern/pattern_number_element.h"
#include "fault_place.h"
#include "syntax_hints.h"
#include "word_lists.h"

namespace NExplain {

using NPattern::FindNumberKind;
using NPattern::FindType;
using NPattern::LToken;
using NPattern::TokenCursor;

namespace {

// "one of # digit digits": the words of these kinds of number.
std::string NumberWords(bool digitsOnly)
{
    const Words words = WordsOf(NPattern::kNumberWords, [digitsOnly](const auto& row) {
        return row.mKind == NPattern::kNumberDecimal ||
               (!digitsOnly && row.mKind == NPattern::kNumberHex);
    });
    return "one of " + Joined(words, " ");
}

std::string NumberNeed(const FaultPlace& place)
{
    const bool isPoint = place.WordIsSymbol('.') &&
                         FindNumberKind(place.AfterWord(1).mText) != NPattern::kNumberDecimal;
    if (isPoint) return "after the point " + NumberWords(true) + ", with or without a count before";
    return NumberWords(false) + ", or . and " + NumberWords(true);
}

std::string SetNeed(const FaultPlace& place)
{
    std::string classes = "one of " + Joined(WordsOf(NPattern::kByteClasses), " ");
    if (place.HasCount()) return classes;
    const bool isText = place.WordIsSymbol('[');
    if (!isText && !place.WordIsSymbol('{')) return classes + ", or [ or {";
    const std::string closing = isText ? "]" : "}";
    const bool isDouble = FaultPlace::IsSymbol(place.AfterWord(1), isText ? '[' : '{');
    return std::string(isText ? "characters or ranges like a-z"
                              : "bytes like 0D or ranges like 41-5A") +
           ", at least one, up to " + (isDouble ? closing + closing : closing);
}

}  // namespace

std::vector<std::string> SyntaxNeeds(const std::vector<LToken>& tokens, TokenCursor cursor)
{
    const FaultPlace place(tokens, cursor);
    std::string after;
    if (place.HasHeader()) {
        after = FindType(place.Token(2).mText) != NPattern::kTypeNone
                    ? "after " + place.Header() + ' '
                    : "another type in the header, and then ";
    }
    const std::string afterCount =
        place.HasCount() ? after + "after the count " + place.Count().mText + ' ' : after;
    return {
        "text       " + after + "'a text in quotes' or \"one that ignores case\"",
        "number     " + afterCount + NumberNeed(place),
        "set        " + afterCount + SetNeed(place),
        "bit field  " + std::string(place.HasHeader() ? "no header, and " : "") +
            "( ranges like name=0-7 and ), then :L or :B or neither",
        "line end   " + after + "the word " + NPattern::kEolWord,
    };
}

}  // namespace NExplain
