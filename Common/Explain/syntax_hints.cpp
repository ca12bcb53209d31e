#include "syntax_hints.h"

#include <algorithm>
#include <string_view>

#include "Common/Pattern/pattern_byteset_element.h"
#include "Common/Pattern/pattern_eol_element.h"
#include "Common/Pattern/pattern_number_element.h"
#include "byte_text.h"
#include "hint_functions.h"
#include "word_lists.h"

namespace NExplain {

using NPattern::EqualsIgnoringCase;
using NPattern::FindByteClass;
using NPattern::FindNumberKind;
using NPattern::LToken;
using NPattern::TokenCursor;

namespace {

// Words that are no pieces, and what to write for what they mean.
struct ForeignWord {
    std::string_view mWord;
    std::string_view mInstead;
};

constexpr char kLineEnd[] =
    "white space between text pieces is skipped, line ends too, so nothing has to take it";
constexpr char kNumber[] = "# takes a whole number, and .# one with a point";
constexpr char kText[] =
    "chars takes all up to the next white space, and [^,] all up to the next comma";
constexpr char kLine[] = "eol takes the rest of the line, and [^\\r\\n] the same without its end";

constexpr ForeignWord kForeignWords[] = {
    {"SOH", "a byte is written {{01}}"},
    {"STX", "a byte is written {{02}}"},
    {"ETX", "a byte is written {{03}}"},
    {"EOT", "a byte is written {{04}}"},
    {"ENQ", "a byte is written {{05}}"},
    {"ACK", "a byte is written {{06}}"},
    {"NAK", "a byte is written {{15}}"},
    {"ESC", "a byte is written {{1B}}"},
    {"CR", kLineEnd},
    {"LF", kLineEnd},
    {"CRLF", kLineEnd},
    {"space", kLineEnd},
    {"number", kNumber},
    {"numbers", kNumber},
    {"num", kNumber},
    {"int", kNumber},
    {"integer", kNumber},
    {"float", kNumber},
    {"string", kText},
    {"text", kText},
    {"word", kText},
    {"any", kText},
    {"line", kLine},
    {"rest", kLine},
    {"or", "a parsing string has no alternatives"},
    {"optional", "a piece cannot be optional: each has to match"},
};

bool IsHexText(std::string_view text)
{
    return std::all_of(text.begin(), text.end(),
                       [](char c) { return NPattern::IsHexDigit(static_cast<NPattern::Byte>(c)); });
}

std::string CountBefore(const std::string& count, const std::string& word)
{
    return "a count comes before its word: " + Counted(count, word);
}

std::string HintZeroCount(const FaultPlace& place)
{
    // A class is at fault only because of its count.
    const bool isClass = FindByteClass(place.Word().mText) != NPattern::kClassNone;
    return isClass && place.Count().mValue == 0 ? "a count is at least 1" : "";
}

std::string HintCountAfterWord(const FaultPlace& place)
{
    const LToken& word = place.Token(-1);
    const bool isWord = word.mType == NPattern::kIdentifier || word.mType == NPattern::kSymbol;
    const LToken& count = place.Token(place.IsSymbol(0, '(') ? 1 : 0);
    if (count.mType != NPattern::kNumber || !isWord || !IsCountable(word.mText)) return "";
    return CountBefore(count.mText, word.mText);
}

std::string HintByteNumber(const FaultPlace& place)
{
    const std::string& word = place.Word().mText;
    if (place.HasHeader() || place.Count().mText != "0" || (word[0] != 'x' && word[0] != 'X') ||
        !IsHexText(word.substr(1))) {
        return "";
    }
    const std::string digits = word.substr(1);
    return (digits.size() == 2 ? "a byte is written in braces: {{" + digits + "}}"
                               : "a byte is written as two hexadecimal digits in braces: {{C3}}") +
           ". If it is a text of the message, write it in quotes: " + InQuotes('0' + word);
}

std::string HintPoint(const FaultPlace& place)
{
    if (!place.WordIsSymbol('.')) return "";
    const std::string count = place.HasCount() ? place.Count().mText : "";
    const LToken& second = place.AfterWord(1);
    const bool hasSecond = second.mType == NPattern::kNumber;
    const LToken& word = place.AfterWord(hasSecond ? 2 : 1);
    if (FindNumberKind(word.mText) == NPattern::kNumberHex) {
        return "a hexadecimal number has no point: " + Counted(count, word.mText);
    }
    const std::string number = count + '.' + (hasSecond ? second.mText : "");
    if (number.size() == 1) return "a number with a point is .#";
    return "a number with a point is .#, and " + number +
           "# limits its digits. If it is a text of the message, write it in quotes: " +
           InQuotes(number);
}

std::string HintSignOfNumber(const FaultPlace& place)
{
    if (!place.HasHeader() || !place.WordIsSymbol('-')) return "";
    return "# and .# read the sign of a number by themselves: " + place.Header() + '#';
}

std::string HintForeignWord(const FaultPlace& place)
{
    const std::string& word = place.Word().mText;
    for (const ForeignWord& row : kForeignWords) {
        if (!EqualsIgnoringCase(word, row.mWord)) continue;
        return std::string(row.mInstead) +
               ". If it is a text of the message, write it in quotes: " + InQuotes(word);
    }
    return "";
}

std::string HintWord(const FaultPlace& place)
{
    const LToken& word = place.Word();
    if (word.mType != NPattern::kIdentifier) return "";
    if (EqualsIgnoringCase(word.mText, NPattern::kEolWord)) return "a count cannot come before eol";
    const std::size_t digits = word.mText.find_first_of("0123456789");
    const std::string stem = word.mText.substr(0, digits);
    const bool endsInDigits =
        word.mText.find_first_not_of("0123456789", digits) == std::string::npos;
    if (endsInDigits && IsCountable(stem)) return CountBefore(word.mText.substr(digits), stem);

    const std::string_view nearest = word.mText.size() > 2 ? Nearest(PieceWords(), word.mText) : "";
    std::string hint = "a text of the message is written in quotes: " + InQuotes(word.mText);
    if (!nearest.empty()) hint = "did you mean " + std::string(nearest) + "? Otherwise " + hint;
    if (FaultPlace::IsSymbol(place.AfterWord(1), '.') && !place.HasHeader()) {
        hint += ". If this is the name of a file with the parsing string, put -f before it";
    }
    return hint;
}

std::string HintBareNumber(const FaultPlace& place)
{
    if (!place.HasCount() || place.Word().mType == NPattern::kIdentifier) return "";
    const std::string& count = place.Count().mText;
    std::string hint =
        "a number alone is only a count. If it is a text of the message, write it in quotes: " +
        InQuotes(count) + "; # takes any number";
    if (place.Count().mValue == 0) return hint;
    const auto size = static_cast<std::size_t>(place.Count().mValue);
    return hint + ", " + count + "# one of at most " + CountOf(size, "digit") + ", and " + count +
           " chars exactly " + CountOf(size, "character");
}

std::string HintStraySymbol(const FaultPlace& place)
{
    const LToken& symbol = place.Word();
    const std::string inQuotes =
        "if it is a text of the message, write it in quotes: " + InQuotes(symbol.mText);
    for (const char c : {',', '-', ':', '=', '^'}) {
        if (!FaultPlace::IsSymbol(symbol, c)) continue;
        if (place.HasHeader() && c == '=') return "one = is enough: " + place.Header();
        if (place.HasHeader())
            return "no piece begins with " + InQuotes(symbol.mText) + "; " + inQuotes;
        return "pieces follow one another without a sign between them; " + inQuotes;
    }
    for (const char c : {']', '}', ')'}) {
        if (!FaultPlace::IsSymbol(symbol, c)) continue;
        if (c != ')' && place.IsSymbol(-1, c)) {
            return "a set that ends with two brackets also begins with two";
        }
        return "there is nothing open that " + InQuotes(symbol.mText) + " could close; " +
               (c == ')' ? "" : "in a set write a backslash before it, and ") + inQuotes;
    }
    return "";
}

// The most specific ones first: only the first hint that is found is shown.
constexpr std::string (*kHints[])(const FaultPlace&) = {
    HintBeforeHeader,
    HintCountBeforeBracket,
    HintTypeMisspelt,
    HintHeaderBeforeBits,
    HintNothingAfterHeader,
    HintOrderAfterBytes,
    HintEqualsForgotten,
    HintColonForgotten,
    HintNameCharacters,
    HintBitsWithoutParentheses,
    HintTypeForgotten,
    HintZeroCount,
    HintByteNumber,
    HintCountAfterWord,
    HintPoint,
    HintBareNumber,
    HintSet,
    HintWideBits,
    HintBitRanges,
    HintForeignWord,
    HintWord,
    HintSignOfNumber,
    HintStraySymbol,
};

}  // namespace

std::string Counted(const std::string& count, const std::string& word)
{
    return count + (word.size() > 1 && !count.empty() ? " " : "") + word;
}

std::vector<std::string> SyntaxHints(const std::vector<LToken>& tokens, TokenCursor cursor)
{
    const FaultPlace place(tokens, cursor);
    for (const auto hintFor : kHints) {
        if (std::string hint = hintFor(place); !hint.empty()) return {hint};
    }
    return {};
}

}  // namespace NExplain
