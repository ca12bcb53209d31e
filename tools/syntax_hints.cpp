#include "syntax_hints.h"

#include <algorithm>
#include <cstdlib>
#include <numeric>
#include <string_view>

namespace NSift {

using NPattern::EqualsIgnoringCase;
using NPattern::LToken;
using NPattern::TokenCursor;

namespace {

constexpr std::string_view kTypeWords[] = {"string", "float", "integer", "linteger", "binteger"};
constexpr std::string_view kNumberWords[] = {"#", "digit", "digits", "x", "hex", "."};
constexpr std::string_view kClassWords[] = {"?",    "byte",   "bytes",     "c",
                                            "char", "chars",  "character", "characters",
                                            "a",    "letter", "letters"};

// The place of the fault, as the hints look at it.
class Place {
  public:
    Place(const std::vector<LToken>& tokens, TokenCursor cursor)
        : mTokens(tokens), mStart(cursor), mBody(NPattern::SkipDeclaration(tokens, cursor))
    {
        mWord = mBody + (At(mBody).mType == NPattern::kNumber ? 1 : 0);
    }

    // The token so many places behind the first one of the fault, or before it. Outside of the
    // parsing string stands kEnd.
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
    // The token behind the header and the count, where they are.
    const LToken& Word() const { return At(mWord); }
    const LToken& BehindWord(std::size_t offset) const { return At(mWord + offset); }
    bool WordIsSymbol(char symbol) const { return IsSymbol(Word(), symbol); }

    static bool IsSymbol(const LToken& token, char symbol)
    {
        return token.mType == NPattern::kSymbol && !token.mEscaped &&
               token.mText == std::string_view(&symbol, 1);
    }

  private:
    const LToken& At(TokenCursor cursor) const
    {
        return cursor < mTokens.size() ? mTokens[cursor] : mTokens.back();
    }

    const std::vector<LToken>& mTokens;
    TokenCursor mStart;
    TokenCursor mBody;  // behind the header, if there is one
    TokenCursor mWord;  // behind the count, if there is one
};

template <typename Words>
bool Contains(const Words& words, std::string_view word)
{
    return std::any_of(std::begin(words), std::end(words),
                       [word](std::string_view row) { return EqualsIgnoringCase(row, word); });
}

bool NamesType(std::string_view word)
{
    return std::any_of(std::begin(kTypeWords), std::end(kTypeWords), [word](std::string_view row) {
        return EqualsIgnoringCase(row.substr(0, word.size()), word);
    });
}

// How many letters must be put in, left out or changed to make one word the other.
std::size_t Distance(std::string_view a, std::string_view b)
{
    std::vector<std::size_t> row(b.size() + 1);
    std::iota(row.begin(), row.end(), std::size_t{0});
    for (std::size_t i = 1; i <= a.size(); ++i) {
        std::size_t diagonal = row[0]++;
        for (std::size_t j = 1; j <= b.size(); ++j) {
            const std::size_t changed =
                diagonal + (EqualsIgnoringCase(a.substr(i - 1, 1), b.substr(j - 1, 1)) ? 0 : 1);
            diagonal = row[j];
            row[j] = std::min({row[j] + 1, row[j - 1] + 1, changed});
        }
    }
    return row.back();
}

// The word that was most likely meant, or none. Short words are like everything.
template <typename Words>
std::string_view Nearest(const Words& words, std::string_view word)
{
    std::string_view nearest;
    std::size_t least = 3;
    for (const std::string_view row : words) {
        const std::size_t distance = Distance(row, word);
        if (row.size() < 3 || distance >= least) continue;
        nearest = row;
        least = distance;
    }
    return nearest;
}

std::string InQuotes(std::string_view text)
{
    return '\'' + std::string(text) + '\'';
}

// Each gives a hint if the slip is its own, else an empty text.

std::string HintCountBeforeBracket(const Place& place)
{
    if (!place.HasCount() || (!place.WordIsSymbol('[') && !place.WordIsSymbol('{'))) return "";
    const bool isText = place.WordIsSymbol('[');
    return "a count can't stand before a bracket. " + std::string(isText ? "[ ]" : "{ }") +
           " takes as many as come, " + (isText ? "[[ ]]" : "{{ }}") +
           " exactly one; write that once for each";
}

std::string HintEqualsForgotten(const Place& place)
{
    // A name like x or a is a piece by itself, and the fault is then seen at the colon.
    const std::ptrdiff_t name = place.IsSymbol(0, ':') ? -1 : 0;
    if (!place.IsWord(name) || !place.IsSymbol(name + 1, ':') || !place.IsWord(name + 2)) return "";
    if (place.IsSymbol(name + 3, '=')) return "";
    return "a capture has an = behind its type: " + place.Token(name).mText + ':' +
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
    if (!place.HasHeader() || NamesType(place.Token(2).mText)) return "";
    const std::string& word = place.Token(2).mText;
    const std::string_view nearest = Nearest(kTypeWords, word);
    std::string hint = InQuotes(word) + " is no type";
    hint += nearest.empty() ? "." : "; did you mean " + std::string(nearest) + '?';
    return hint + " The types are string, float, integer (or linteger) and binteger";
}

std::string HintNothingBehindHeader(const Place& place)
{
    if (!place.HasHeader() || place.Word().mType != NPattern::kEnd) return "";
    return "behind " + place.Token(0).mText + ':' + place.Token(2).mText +
           "= must stand the piece that is to be captured";
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
        !Contains(kClassWords, place.Word().mText))
        return "";
    return "a count is at least 1";
}

std::string HintCountBehindWord(const Place& place)
{
    if (place.Token(0).mType != NPattern::kNumber) return "";
    const std::string& word = place.Token(-1).mText;
    if (place.Token(-1).mType == NPattern::kEnd || word == "." ||
        (!Contains(kNumberWords, word) && !Contains(kClassWords, word))) {
        return "";
    }
    return "a count stands before its word: " + place.Token(0).mText +
           (word.size() > 1 ? " " : "") + word;
}

std::string HintOrderBehindBytes(const Place& place)
{
    if (!place.IsSymbol(0, ':') || !place.IsWord(1)) return "";
    const std::string& word = place.Token(1).mText;
    if (!EqualsIgnoringCase(word, "L") && !EqualsIgnoringCase(word, "B")) return "";
    return "only a bit field has a byte order behind it; that of captured bytes is told by the "
           "type: linteger or binteger";
}

std::string HintWord(const Place& place)
{
    const LToken& word = place.Word();
    if (word.mType != NPattern::kIdentifier) return "";
    if (!place.HasHeader() && (place.IsSymbol(1, ':') || place.IsSymbol(1, '='))) return "";
    if (Contains(kNumberWords, word.mText) || Contains(kClassWords, word.mText)) return "";
    const std::size_t letters = word.mText.find_first_of("0123456789");
    const std::string stem = word.mText.substr(0, letters);
    if (letters != std::string::npos &&
        word.mText.find_first_not_of("0123456789", letters) == std::string::npos &&
        (Contains(kNumberWords, stem) || Contains(kClassWords, stem))) {
        return "a count stands before its word: " + word.mText.substr(letters) +
               (stem.size() > 1 ? " " : "") + stem;
    }
    constexpr std::string_view kWords[] = {"digit",      "digits", "hex",     "byte",
                                           "bytes",      "char",   "chars",   "character",
                                           "characters", "letter", "letters", "eol"};
    const std::string_view nearest = word.mText.size() > 2 ? Nearest(kWords, word.mText) : "";
    std::string hint =
        "a text that the message holds is written in quotes: " + InQuotes(word.mText);
    if (!nearest.empty()) hint = "did you mean " + std::string(nearest) + "? Else " + hint;
    if (Place::IsSymbol(place.BehindWord(1), '.') && !place.HasHeader()) {
        hint += ". If this names a file that holds the parsing string, it goes behind -f";
    }
    return hint;
}

std::string HintBareNumber(const Place& place)
{
    if (!place.HasCount() || place.HasHeader() || place.Word().mType == NPattern::kIdentifier ||
        place.Word().mType == NPattern::kSymbol) {
        return "";
    }
    return "a number alone is only a count. If the message holds it, it is written in quotes: " +
           InQuotes(place.Count().mText) + "; any number is #";
}

std::string HintWideBits(const Place& place)
{
    if (!place.WordIsSymbol('(')) return "";
    for (std::size_t t = 1; place.BehindWord(t).mType != NPattern::kEnd; ++t) {
        if (!Place::IsSymbol(place.BehindWord(t), '-')) continue;
        const std::int64_t one = place.BehindWord(t - 1).mValue;
        const std::int64_t other = place.BehindWord(t + 1).mValue;
        if (std::abs(one - other) >= 32) {
            return "a range of bits is at most 32 bits wide: " + std::to_string(one) + '-' +
                   std::to_string(other) + " is more";
        }
    }
    return "";
}

std::string HintBitRanges(const Place& place)
{
    if (!place.WordIsSymbol('(') || place.HasHeader()) return "";
    return "a bit field is written (low=0-3, high=4-7): each range with both its bits, a comma "
           "between two; then :L if the first byte has the lowest bits";
}

std::string HintStraySymbol(const Place& place)
{
    if (place.IsSymbol(0, ',') || place.IsSymbol(0, '-') || place.IsSymbol(0, ':') ||
        place.IsSymbol(0, '=') || place.IsSymbol(0, '^')) {
        return "pieces follow one another without a sign between. If the message holds it, it is "
               "written in quotes: " +
               InQuotes(place.Token(0).mText);
    }
    if (place.IsSymbol(0, ']') || place.IsSymbol(0, '}') || place.IsSymbol(0, ')')) {
        return "nothing is open that " + InQuotes(place.Token(0).mText) +
               " could close; in a set it is written behind a backslash";
    }
    return "";
}

// In the order of their worth: the first that speaks is the only one.
constexpr std::string (*kHints[])(const Place&) = {
    HintCountBeforeBracket,
    HintTypeMisspelt,
    HintHeaderBeforeBits,
    HintNothingBehindHeader,
    HintOrderBehindBytes,
    HintEqualsForgotten,
    HintTypeForgotten,
    HintZeroCount,
    HintCountBehindWord,
    HintBareNumber,
    HintWideBits,
    HintBitRanges,
    HintWord,
    HintStraySymbol,
};

std::string NumberNeed(const Place& place)
{
    const LToken& behindPoint = place.BehindWord(1);
    if (!place.WordIsSymbol('.') || behindPoint.mText == "#") {
        return "one of # digit digits x hex, or . and one of # digits";
    }
    return "behind the point one of # digit digits, with a count before it or without";
}

std::string SetNeed(const Place& place)
{
    std::string classes = "one of ? byte bytes c char chars a letter letters";
    if (place.HasCount()) return classes;
    const bool isText = place.WordIsSymbol('[');
    if (!isText && !place.WordIsSymbol('{')) return classes + ", or [ or {";
    const std::string closing = isText ? "]" : "}";
    const bool isDouble = Place::IsSymbol(place.BehindWord(1), isText ? '[' : '{');
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
    std::string behind;
    if (place.HasHeader()) {
        behind = NamesType(place.Token(2).mText)
                     ? "behind " + place.Token(0).mText + ':' + place.Token(2).mText + "= "
                     : "another type in the header, and then ";
    }
    const std::string behindCount =
        place.HasCount() ? behind + "behind the count " + place.Count().mText + ' ' : behind;
    return {
        "text       " + behind + "'a text in quotes' or \"one that ignores case\"",
        "number     " + behindCount + NumberNeed(place),
        "set        " + behindCount + SetNeed(place),
        "bit field  " + std::string(place.HasHeader() ? "no header, and " : "") +
            "( ranges like name=0-7 and ), then :L or :B or neither",
        "line end   " + behind + "the word eol",
    };
}

std::vector<std::string> LexerHints(const std::string& message, const std::string& fault,
                                    NPattern::LexerMode mode)
{
    const std::string_view text = fault;
    const char first = fault.empty() ? '\0' : fault.front();
    if (message == "Invalid byte value") {
        const std::size_t digits =
            std::min(text.find_first_not_of("0123456789ABCDEFabcdef"), text.size());
        std::string hint = "between { and } a byte has exactly two hexadecimal digits";
        if (digits == 1) return {hint + ": 0" + first};
        if (digits == 4) {
            return {hint + ", and blanks or commas set bytes apart: " + fault.substr(0, 2) + ' ' +
                    fault.substr(2, 2)};
        }
        return {hint + ", and blanks or commas set bytes apart"};
    }
    if (message.rfind("Unmatched", 0) == 0) {
        return {
            "the text that starts here has no closing quote; a quote inside it is written "
            "behind a backslash, or the other kind of quote stands around it"};
    }
    if (message.rfind("End of input", 0) == 0) {
        return {std::string("the set that starts here isn't closed by ") +
                (first == '{' ? '}' : ']')};
    }
    if (message.rfind("Quoted", 0) == 0) return {"a piece has to take something: leave it out"};
    if (text.rfind("\xE2\x80", 0) == 0 || text.rfind("\xC2\xB4", 0) == 0 || first == '`') {
        return {"this isn't a plain quote; a word processor may have put it there. Use ' or \""};
    }
    if (mode == NPattern::kByteSetMode) {
        return {
            "between { and } stand bytes of two hexadecimal digits, such as 0D or 41-5A; "
            "characters stand between [ and ]"};
    }
    switch (first) {
        case '\\': return {"a backslash is read only inside quotes and inside [ ]"};
        case '|':
            return {
                "there are no alternatives in a parsing string; for a single character a "
                "set does: [[ab]]"};
        case '*':
        case '+':
            return {
                "nothing is repeated by a sign; [ ] takes as many as come, and # reads a "
                "sign of a number by itself. If the message holds it: '" +
                std::string(1, first) + "'"};
        default: break;
    }
    return {
        "outside quotes and sets it means nothing. If the message holds it, it is written in "
        "quotes; in a name only letters, digits and _ can stand"};
}

}  // namespace NSift
