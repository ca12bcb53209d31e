#include "hint_functions.h"

#include <string_view>

#include "Common/Pattern/pattern_parameter.h"
#include "byte_text.h"
#include "word_lists.h"

namespace NExplain {

using NPattern::EqualsIgnoringCase;
using NPattern::FindType;

namespace {

// Words for types elsewhere, by their beginning, and the types that they are here.
struct ForeignType {
    std::string_view mStart;
    std::string_view mType;
};

constexpr ForeignType kForeignTypes[] = {
    {"double", "float"}, {"real", "float"},       {"num", "float"},     {"dec", "float"},
    {"text", "string"},  {"char", "string"},      {"word", "string"},   {"int", "integer"},
    {"uint", "integer"}, {"long", "integer"},     {"short", "integer"}, {"bool", "integer"},
    {"byte", "integer"}, {"unsigned", "integer"},
};

std::string_view TypeMeantBy(std::string_view word)
{
    for (const ForeignType& row : kForeignTypes) {
        if (EqualsIgnoringCase(word.substr(0, row.mStart.size()), row.mStart)) return row.mType;
    }
    return Nearest(WordsOf(NPattern::kTypeWords), word);
}

// "n:string= or n:integer= or n:float="
std::string HeadersFor(const std::string& name)
{
    return name + ":string= or " + name + ":integer= or " + name + ":float=";
}

}  // namespace

std::string HintEqualsForgotten(const FaultPlace& place)
{
    // A name like x or a is a piece by itself, and then the fault is at the colon.
    const std::ptrdiff_t name = place.IsSymbol(0, ':') ? -1 : 0;
    if (!place.IsWord(name) || !place.IsSymbol(name + 1, ':') || !place.IsWord(name + 2)) return "";
    if (place.IsSymbol(name + 3, '=')) return "";
    if (place.IsHeader(name + 2)) {
        return "a text of the message is written in quotes: " +
               InQuotes(place.Token(name).mText + ':');
    }
    return "a capture has an = after its type: " + place.Token(name).mText + ':' +
           place.Token(name + 2).mText + '=';
}

std::string HintTypeForgotten(const FaultPlace& place)
{
    const std::ptrdiff_t name = place.IsSymbol(0, '=') || place.IsSymbol(0, ':') ? -1 : 0;
    if (!place.IsWord(name)) return "";
    const std::string& word = place.Token(name).mText;
    if (place.IsSymbol(name + 1, ':')) {
        if (place.IsWord(name + 2)) return "";
        return "a capture has a type and an = after its name, as in " + HeadersFor(word);
    }
    if (!place.IsSymbol(name + 1, '=')) return "";
    return "a capture has a type between its name and the =, as in " + HeadersFor(word) +
           "; a text of the message is written in quotes: " + InQuotes(word + '=');
}

std::string HintColonForgotten(const FaultPlace& place)
{
    if (!place.IsWord(0) || !place.IsWord(1) || !place.IsSymbol(2, '=')) return "";
    if (FindType(place.Token(1).mText) == NPattern::kTypeNone) return "";
    return "a colon stands between a name and its type: " + place.Token(0).mText + ':' +
           place.Token(1).mText + '=';
}

std::string HintTypeMisspelt(const FaultPlace& place)
{
    if (!place.HasHeader()) return "";
    const std::string& name = place.Token(0).mText;
    const std::string& word = place.Token(2).mText;
    if (FindType(word) != NPattern::kTypeNone) return "";
    // Any beginning of a type word is a type, but a short one is more likely a name.
    if (name.size() > 2 && FindType(name) != NPattern::kTypeNone) {
        return "the name comes before the type: " + word + ':' + name + '=';
    }
    const std::string_view meant = TypeMeantBy(word);
    std::string hint = InQuotes(word) + " is not a type";
    hint += meant.empty() ? "." : "; did you mean " + std::string(meant) + '?';
    return hint + " The types are " + Joined(WordsOf(NPattern::kTypeWords), ", ");
}

std::string HintNothingAfterHeader(const FaultPlace& place)
{
    // Without a header, nothing is missing at the end.
    if (place.HasCount() || place.Word().mType != NPattern::kEnd) return "";
    return "after " + place.Header() + " comes the piece to be captured";
}

std::string HintBeforeHeader(const FaultPlace& place)
{
    if (!place.HasCount() || !place.IsHeader(1)) return "";
    const std::string& count = place.Token(0).mText;
    const std::string& name = place.Token(1).mText;
    if (place.IsAttached(1))
        return "a name begins with a letter or _, not with a digit: _" + count + name;
    const std::string header = name + ':' + place.Token(3).mText + '=';
    const NPattern::LToken& counted = place.Token(5);
    const bool isWord = place.IsWord(5) || counted.mType == NPattern::kSymbol;
    if (!isWord || !IsCountable(counted.mText)) {
        return "only a number or a class has a count, after the name and the type, as in " +
               header + Counted(count, "digits");
    }
    return "a count comes after the name and the type: " + header + Counted(count, counted.mText);
}

std::string HintNameCharacters(const FaultPlace& place)
{
    if (!place.IsWord(0) || !place.IsSymbol(1, '-') || !place.IsWord(2)) return "";
    if (!place.IsSymbol(3, ':') && !place.IsSymbol(3, '=')) return "";
    return "a name has only letters, digits and _: " + place.Token(0).mText + '_' +
           place.Token(2).mText;
}

}  // namespace NExplain
