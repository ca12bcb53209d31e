#include "syntax_hints.h"

#include <cstdlib>
#include <string_view>

#include "Common/Pattern/pattern_byteset_element.h"
#include "Common/Pattern/pattern_eol_element.h"
#include "Common/Pattern/pattern_number_element.h"
#include "byte_text.h"
#include "word_lists.h"

namespace NExplain {

using NPattern::EqualsIgnoringCase;
using NPattern::FindByteClass;
using NPattern::FindKindWord;
using NPattern::FindType;
using NPattern::LToken;
using NPattern::TokenCursor;

namespace {

// The place of the fault, as the hints look at it.
class Place {
  public:
    Place(const std::vector<LToken>& tokens, TokenCursor cursor)
        : mTokens(tokens), mStart(cursor), mBody(NPattern::SkipDeclaration(tokens, cursor))
    {
        mWord = mBody + (At(mBody).mType == NPattern::kNumber ? 1 : 0);
    }

    // The token at this offset from the first one of the fault; kEnd outside the parsing string.
    const LToken& Token(std::ptrdiff_t offset) const
    {
        return At(mStart + static_cast<TokenCursor>(offset));
    }
    bool IsSymbol(std::ptrdiff_t offset, char symbol) const
    {
        return IsSymbol(Token(offset), symbol);
    }
    bool IsWord(std::ptrdiff_t offset) const
    {
        return Token(offset).mType == NPattern::kIdentifier;
    }

    bool HasHeader() const { return mBody != mStart; }
    bool HasCount() const { return mWord != mBody; }
    const LToken& Count() const { return At(mBody); }
    // The token after the header and the count, if there are any.
    const LToken& Word() const { return At(mWord); }
    const LToken& AfterWord(std::size_t offset) const { return At(mWord + offset); }
    bool WordIsSymbol(char symbol) const { return IsSymbol(Word(), symbol); }
    std::string Header() const { return Token(0).mText + ':' + Token(2).mText + '='; }

    static bool IsSymbol(const LToken& token, char symbol)
    {
        return token.mType == NPattern::kSymbol && !token.mEscaped &&
               token.mText == std::string_view(&symbol, 1);
    }

  private:
    const LToken& At(TokenCursor cursor) const { return NPattern::TokenAt(mTokens, cursor); }

    const std::vector<LToken>& mTokens;
    TokenCursor mStart;
    TokenCursor mBody;  // after the header, if there is one
    TokenCursor mWord;  // after the count, if there is one
};

// "4 digits", "4x"
std::string CountBefore(const std::string& count, const std::string& word)
{
    return "a count comes before its word: " + count + (word.size() > 1 ? " " : "") + word;
}

// Each returns a hint if it knows the mistake, otherwise an empty text.

std::string HintCountBeforeBracket(const Place& place)
{
    if (!place.HasCount() || (!place.WordIsSymbol('[') && !place.WordIsSymbol('{'))) return "";
    const bool isText = place.WordIsSymbol('[');
    return "a count cannot come before a bracket. " + std::string(isText ? "[ ]" : "{ }") +
           " takes as many as there are, " + (isText ? "[[ ]]" : "{{ }}") +
           " exactly one; write that once for each";
}

std::string HintEqualsForgotten(const Place& place)
{
    // A name like x or a is a piece by itself, and then the fault is at the colon.
    const std::ptrdiff_t name = place.IsSymbol(0, ':') ? -1 : 0;
    if (!place.IsWord(name) || !place.IsSymbol(name + 1, ':') || !place.IsWord(name + 2)) return "";
    if (place.IsSymbol(name + 3, '=')) return "";
    return "a capture has an = after its type: " + place.Token(name).mText + ':' +
           place.Token(name + 2).mText + '=';
}

std::string HintTypeForgotten(const Place& place)
{
    const std::ptrdiff_t name = place.IsSymbol(0, '=') ? -1 : 0;
    if (!place.IsWord(name)) return "";
    std::ptrdiff_t equals = name + 1;
    if (place.IsSymbol(equals, ':')) ++equals;
    if (!place.IsSymbol(equals, '=')) return "";
    const std::string& word = place.Token(name).mText;
    return "a capture has a type between its name and the =, as in " + word + ":string= or " +
           word + ":integer= or " + word + ":float=";
}

std::string HintTypeMisspelt(const Place& place)
{
    if (!place.HasHeader()) return "";
    const std::string& word = place.Token(2).mText;
    if (FindType(word) != NPattern::kTypeNone) return "";
    const Words types = WordsOf(NPattern::kTypeWords);
    const std::string_view nearest = Nearest(types, word);
    std::string hint = InQuotes(word) + " is not a type";
    hint += nearest.empty() ? "." : "; did you mean " + std::string(nearest) + '?';
    return hint + " The types are " + Joined(types, ", ");
}

std::string HintNothingAfterHeader(const Place& place)
{
    if (!place.HasHeader() || place.Word().mType != NPattern::kEnd) return "";
    return "after " + place.Header() + " comes the piece to be captured";
}

std::string HintHeaderBeforeBits(const Place& place)
{
    if (!place.HasHeader() || !place.WordIsSymbol('(')) return "";
    return "a bit field has no header: each range in it has a name of its own, as in (" +
           place.Token(0).mText + "=0-7)";
}

std::string HintZeroCount(const Place& place)
{
    if (!place.HasCount() || place.Count().mValue != 0 ||
        FindByteClass(place.Word().mText) == NPattern::kClassNone) {
        return "";
    }
    return "a count is at least 1";
}

std::string HintCountAfterWord(const Place& place)
{
    const LToken& word = place.Token(-1);
    const bool isWord = word.mType == NPattern::kIdentifier || word.mType == NPattern::kSymbol;
    if (place.Token(0).mType != NPattern::kNumber || !isWord || !IsCountable(word.mText)) return "";
    return CountBefore(place.Token(0).mText, word.mText);
}

std::string HintOrderAfterBytes(const Place& place)
{
    if (!place.IsSymbol(0, ':') || !place.IsWord(1)) return "";
    const std::string& word = place.Token(1).mText;
    if (!EqualsIgnoringCase(word, "L") && !EqualsIgnoringCase(word, "B")) return "";
    return "only a bit field has a byte order after it; the byte order of captured bytes follows "
           "from the type: linteger or binteger";
}

std::string HintWord(const Place& place)
{
    const LToken& word = place.Word();
    if (word.mType != NPattern::kIdentifier) return "";
    if (!place.HasHeader() && (place.IsSymbol(1, ':') || place.IsSymbol(1, '='))) return "";
    if (IsCountable(word.mText)) return "";
    if (place.HasCount() && EqualsIgnoringCase(word.mText, NPattern::kEolWord)) {
        return "a count cannot come before eol";
    }
    const std::size_t digits = word.mText.find_first_of("0123456789");
    const std::string stem = word.mText.substr(0, digits);
    const bool endsInDigits =
        digits != std::string::npos &&
        word.mText.find_first_not_of("0123456789", digits) == std::string::npos;
    if (endsInDigits && IsCountable(stem)) return CountBefore(word.mText.substr(digits), stem);

    const std::string_view nearest = word.mText.size() > 2 ? Nearest(PieceWords(), word.mText) : "";
    std::string hint = "a text of the message is written in quotes: " + InQuotes(word.mText);
    if (!nearest.empty()) hint = "did you mean " + std::string(nearest) + "? Otherwise " + hint;
    if (Place::IsSymbol(place.AfterWord(1), '.') && !place.HasHeader()) {
        hint += ". If this is the name of a file with the parsing string, put -f before it";
    }
    return hint;
}

std::string HintBareNumber(const Place& place)
{
    if (!place.HasCount() || place.HasHeader() || place.Word().mType == NPattern::kIdentifier ||
        place.Word().mType == NPattern::kSymbol) {
        return "";
    }
    return "a number alone is only a count. If it is a text of the message, write it in quotes: " +
           InQuotes(place.Count().mText) + "; # takes any number";
}

std::string HintWideBits(const Place& place)
{
    if (!place.WordIsSymbol('(')) return "";
    for (std::size_t t = 1; place.AfterWord(t).mType != NPattern::kEnd; ++t) {
        if (Place::IsSymbol(place.AfterWord(t), ')')) break;
        if (!Place::IsSymbol(place.AfterWord(t), '-')) continue;
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

std::string HintBitRanges(const Place& place)
{
    if (!place.WordIsSymbol('(') || place.HasHeader()) return "";
    return "write a bit field as (low=0-3, high=4-7): each range with both its bits, and commas "
           "between the ranges; then :L if the first byte is the least significant";
}

std::string HintStraySymbol(const Place& place)
{
    for (const char symbol : {',', '-', ':', '=', '^'}) {
        if (!place.IsSymbol(0, symbol)) continue;
        return "pieces follow one another without a sign between them. If it is a text of the "
               "message, write it in quotes: " +
               InQuotes(place.Token(0).mText);
    }
    for (const char symbol : {']', '}', ')'}) {
        if (!place.IsSymbol(0, symbol)) continue;
        return "there is nothing open that " + InQuotes(place.Token(0).mText) +
               " could close; in a set write a backslash before it";
    }
    return "";
}

// The most specific ones first: only the first hint that is found is shown.
constexpr std::string (*kHints[])(const Place&) = {
    HintCountBeforeBracket,
    HintTypeMisspelt,
    HintHeaderBeforeBits,
    HintNothingAfterHeader,
    HintOrderAfterBytes,
    HintEqualsForgotten,
    HintTypeForgotten,
    HintZeroCount,
    HintCountAfterWord,
    HintBareNumber,
    HintWideBits,
    HintBitRanges,
    HintWord,
    HintStraySymbol,
};

// "one of # digit digits": the words of these kinds of number.
std::string NumberWords(bool digitsOnly)
{
    const Words words = WordsOf(NPattern::kKindWords, [digitsOnly](const auto& row) {
        return row.mKind == NPattern::kKindDigit ||
               (!digitsOnly && row.mKind == NPattern::kKindHex);
    });
    return "one of " + Joined(words, " ");
}

std::string NumberNeed(const Place& place)
{
    const bool isPoint =
        place.WordIsSymbol('.') && FindKindWord(place.AfterWord(1).mText) != NPattern::kKindDigit;
    if (isPoint) return "after the point " + NumberWords(true) + ", with or without a count before";
    return NumberWords(false) + ", or . and " + NumberWords(true);
}

std::string SetNeed(const Place& place)
{
    std::string classes = "one of " + Joined(WordsOf(NPattern::kByteClasses), " ");
    if (place.HasCount()) return classes;
    const bool isText = place.WordIsSymbol('[');
    if (!isText && !place.WordIsSymbol('{')) return classes + ", or [ or {";
    const std::string closing = isText ? "]" : "}";
    const bool isDouble = Place::IsSymbol(place.AfterWord(1), isText ? '[' : '{');
    return std::string(isText ? "characters or ranges like a-z"
                              : "bytes like 0D or ranges like 41-5A") +
           ", at least one, up to " + (isDouble ? closing + closing : closing);
}

}  // namespace

std::vector<std::string> SyntaxHints(const std::vector<LToken>& tokens, TokenCursor cursor)
{
    const Place place(tokens, cursor);
    for (const auto hintFor : kHints) {
        if (std::string hint = hintFor(place); !hint.empty()) return {hint};
    }
    return {};
}

std::vector<std::string> SyntaxNeeds(const std::vector<LToken>& tokens, TokenCursor cursor)
{
    const Place place(tokens, cursor);
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
