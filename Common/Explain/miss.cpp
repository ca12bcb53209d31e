#include "miss.h"

#include <algorithm>

#include "Common/Pattern/pattern_elements.h"
#include "byte_text.h"
#include "cautions.h"
#include "meaning.h"

namespace NExplain {

using NPattern::BitfieldElement;
using NPattern::Byte;
using NPattern::BytesetElement;
using NPattern::Element;
using NPattern::EOLElement;
using NPattern::NumberElement;
using NPattern::StringElement;

namespace {

// The place where a message stopped, as the hints look at it.
struct Stop {
    const Pieces& mPieces;
    std::string_view mMessage;
    const Trace& mTrace;
    bool mIsCut;
    std::size_t mIndex;  // of the piece that refused
    const Piece& mPiece;
    std::string_view mRest;  // of the message

    bool IsUsedUp() const { return mRest.empty(); }
    Byte Next() const { return IsUsedUp() ? Byte{0} : static_cast<Byte>(mRest[0]); }
    // The last take, if a piece and not white space took it.
    const Take* LastTake() const
    {
        const bool isOfPiece = !mTrace.mTakes.empty() && mTrace.mTakes.back().mPiece.has_value();
        return isOfPiece ? &mTrace.mTakes.back() : nullptr;
    }
    std::string_view LastTaken() const
    {
        return LastTake() != nullptr ? LastTake()->mSpan.Of(mMessage) : std::string_view();
    }
    // The piece that took the bytes just before the stop, if it is of this class.
    template <typename Form>
    const Form* Before() const
    {
        return LastTake() != nullptr ? ElementAs<Form>(mPieces[*LastTake()->mPiece]) : nullptr;
    }
};

std::size_t AgreementWith(const StringElement& text, std::string_view rest)
{
    return text.Agreement(reinterpret_cast<const Byte*>(rest.data()),
                          static_cast<std::uint32_t>(rest.size()));
}

std::string Excerpt(std::string_view text)
{
    constexpr std::size_t kMost = 20;
    std::size_t length = 0;
    while (length < text.size() && length < kMost) {
        length += std::max<std::size_t>(Utf8Length(text, length), 1);
    }
    return AlwaysQuoted(text.substr(0, length)) + (length < text.size() ? " ..." : "");
}

std::string Found(const Element& /*element*/, const Stop& stop)
{
    return NameOfByte(stop.Next());
}

std::string Found(const StringElement& text, const Stop& stop)
{
    const std::string_view rest = stop.mRest;
    const std::size_t agreement = AgreementWith(text, rest);
    if (agreement == rest.size()) return Excerpt(rest) + ", where the message ends";
    if (agreement == 0) return Excerpt(rest);
    const auto wanted = static_cast<Byte>(text.MatchText()[agreement]);
    return Excerpt(rest) + ", which differs at byte " +
           std::to_string(stop.mTrace.mStoppedAt + agreement) + ": " +
           NameOfByte(static_cast<Byte>(rest[agreement])) + " instead of " +
           (wanted == NPattern::kWildcardByte ? "any other byte" : NameOfByte(wanted));
}

std::string Found(const BytesetElement& set, const Stop& stop)
{
    const std::string_view rest = stop.mRest;
    const auto end = std::find_if_not(rest.begin(), rest.end(),
                                      [&set](char c) { return set.Has(static_cast<Byte>(c)); });
    if (end == rest.begin()) return NameOfByte(stop.Next());
    return "only " + std::to_string(end - rest.begin()) + " of them, then " +
           (end == rest.end() ? "the message ends" : NameOfByte(static_cast<Byte>(*end)));
}

std::string Found(const BitfieldElement& /*block*/, const Stop& stop)
{
    return "only " + CountOf(stop.mRest.size(), "byte");
}

std::string FoundWords(const Stop& stop)
{
    if (stop.IsUsedUp()) return "nothing";
    return std::visit([&stop](const auto* element) { return Found(*element, stop); },
                      stop.mPiece.mElement->Pointer());
}

std::string PieceName(std::size_t index)
{
    return "piece " + std::to_string(index + 1);
}

std::string VerdictWords(const Stop& stop)
{
    if (stop.mMessage.empty()) return "the message is empty";
    if (stop.IsUsedUp()) return "the message ends before " + PieceName(stop.mIndex);
    return PieceName(stop.mIndex) + " does not match at byte " +
           std::to_string(stop.mTrace.mStoppedAt);
}

// Each returns a hint if it knows the mistake, otherwise an empty text.

std::string HintOtherCase(const Stop& stop)
{
    const auto* const text = ElementAs<StringElement>(stop.mPiece);
    if (text == nullptr || !NPattern::EqualsIgnoringCase(
                               text->MatchText(), stop.mRest.substr(0, text->MatchText().size()))) {
        return "";
    }
    return "only uppercase and lowercase differ: a text in \"double quotes\" ignores that";
}

// A set that takes the white space at the start of text. Two of its bytes have no escape.
std::string SetFor(std::string_view text)
{
    constexpr std::string_view kSpaces = " \t\r\n\v\f";
    const std::string_view space = text.substr(0, text.find_first_not_of(kSpaces));
    const bool isInBraces = space.find_first_of("\v\f") != std::string_view::npos;
    std::string members;
    for (const char c : kSpaces) {
        if (space.find(c) == std::string_view::npos) continue;
        if (isInBraces && !members.empty()) members += ' ';
        members += isInBraces ? HexOf({&c, 1}) : Escaped({&c, 1});
    }
    return isInBraces ? '{' + members + '}' : '[' + members + ']';
}

std::string HintFirstSpace(const Stop& stop)
{
    if (stop.mMessage.find_first_not_of("\r\n") == std::string_view::npos) {
        return "this is an empty line, as many devices send before an answer: it does no harm";
    }
    if (stop.Next() == '\n') {
        return "the message begins with a line feed: if lines end with CR LF, the end-of-message "
               "character is 10, not 13";
    }
    return "white space at the start of a message is not skipped; if every message begins with it, "
           "begin the parsing string with a piece that takes it: " +
           SetFor(stop.mRest);
}

std::string HintSpace(const Stop& stop)
{
    if (!NPattern::IsSpace(stop.Next())) return "";
    const auto* const text = ElementAs<StringElement>(stop.mPiece);
    if (text != nullptr && AgreementWith(*text, stop.mRest) > 0) return "";
    // These do not refuse the space, but a message that is too short.
    const auto* const set = ElementAs<BytesetElement>(stop.mPiece);
    const bool takesSpace = set != nullptr && set->Has(stop.Next());
    if (takesSpace || ElementAs<BitfieldElement>(stop.mPiece) != nullptr) return "";
    if (set != nullptr && set->Has(' ')) {
        return "this set takes spaces, but no other white space; [ \\t\\r\\n] takes tabs and "
               "line ends too";
    }
    if (stop.mIndex == 0) return HintFirstSpace(stop);
    return "white space is skipped only between two pieces that read text, and " +
           PieceName(stop.mPiece.mElement->IsBinary() ? stop.mIndex : stop.mIndex - 1) +
           " reads bytes; " + SetFor(stop.mRest) + " takes it";
}

std::string HintPoint(const Stop& stop)
{
    const auto* const number = stop.Before<NumberElement>();
    if (number == nullptr || number->IsHex() || number->HasPoint() || stop.Next() != '.') return "";
    return "write a number that may have a decimal point as .#";
}

std::string HintExponent(const Stop& stop)
{
    const auto* const number = stop.Before<NumberElement>();
    if (number == nullptr || number->IsHex() || NPattern::ToLower(stop.Next()) != 'e') return "";
    const std::size_t digit = stop.mRest.find_first_not_of("+-", 1);
    if (digit > 2 || !NPattern::IsDigit(static_cast<Byte>(stop.mRest[digit]))) return "";
    return "name:float=[-+.0-9Ee] reads a number with an exponent";
}

std::string HintHexPrefix(const Stop& stop)
{
    if (stop.Before<NumberElement>() == nullptr || stop.LastTaken() != "0" ||
        NPattern::ToLower(stop.Next()) != 'x') {
        return "";
    }
    return "a prefix 0x is not part of a number: take it with the text '0x', and the hexadecimal "
           "number after it with x";
}

std::string HintSign(const Stop& stop)
{
    if (ElementAs<NumberElement>(stop.mPiece) == nullptr) return "";
    // A decimal number never refuses them.
    if (stop.Next() != '-' && stop.Next() != '+') return "";
    return "a hexadecimal number has no sign";
}

// A text or a number is in the message, but further on.
std::string HintFurtherOn(const Stop& stop)
{
    const auto* const number = ElementAs<NumberElement>(stop.mPiece);
    if (number != nullptr && !number->IsHex() && NPattern::IsAlpha(stop.Next())) {
        const std::size_t digit = stop.mRest.find_first_of("0123456789");
        if (digit == std::string_view::npos) return "";
        return "the number comes later, after " + Excerpt(stop.mRest.substr(0, digit)) +
               ": nothing is passed over, so a piece has to take that";
    }
    const auto* const text = ElementAs<StringElement>(stop.mPiece);
    if (text == nullptr) return "";
    const std::size_t place = stop.mRest.find(text->MatchText());
    // White space has a hint of its own.
    if (place == std::string_view::npos || stop.mRest.find_first_not_of(" \t\r\n") == place) {
        return "";
    }
    return "this text comes later, after " + Excerpt(stop.mRest.substr(0, place)) +
           ": nothing is passed over, so a piece has to take that";
}

std::string HintTookTooMuch(const Stop& stop)
{
    const std::string_view taken = stop.LastTaken();
    if (taken.empty()) return "";
    const std::size_t index = *stop.LastTake()->mPiece;
    const auto* const text = ElementAs<StringElement>(stop.mPiece);
    const bool tookWanted =
        text != nullptr && taken.find(text->MatchText()) != std::string_view::npos;
    const auto* const set = stop.Before<BytesetElement>();
    const bool isSet = set != nullptr && set->Length() == 0;
    const bool isLine = stop.Before<EOLElement>() != nullptr;
    const bool isNumber = stop.Before<NumberElement>() != nullptr;
    if (!isSet && !isLine && !isNumber) return "";
    const bool isSecondNumber = isNumber && ElementAs<NumberElement>(stop.mPiece) != nullptr;
    const bool tookAll = stop.IsUsedUp() && taken.size() > 1 && (isSet || isLine || isSecondNumber);
    if (!tookWanted && !tookAll) return "";
    const char* const remedy =
        isSet ? "; a set without the character that ends the field stops there, as [^,] does"
        : isSecondNumber ? "; a count limits a number: 2# takes at most two digits"
                         : "";
    return PieceName(index) + " took " + Excerpt(taken) +
           ": a piece takes all it can and never gives anything back" + remedy;
}

std::string HintCut(const Stop& stop)
{
    if (!stop.mIsCut || !stop.IsUsedUp()) return "";
    return "the message goes on with a byte 00, but the host passes text that ends there";
}

std::string HintEmptyRest(const Stop& stop)
{
    // It refuses nothing else.
    const bool isLine = ElementAs<EOLElement>(stop.mPiece) != nullptr;
    if (!isLine || stop.mIsCut || stop.mMessage.empty()) return "";
    return "each piece needs at least one character, even eol";
}

// In UTF-8, one character that isn't ASCII is several bytes.
std::string HintWildcard(const Stop& stop)
{
    const auto* const text = ElementAs<StringElement>(stop.mPiece);
    if (text == nullptr) return "";
    const std::size_t length = std::min(AgreementWith(*text, stop.mRest), stop.mRest.size());
    for (std::size_t i = 0; i < length; ++i) {
        const std::size_t bytes = Utf8Length(stop.mRest, i);
        if (bytes < 2 || text->MatchText()[i] != static_cast<char>(NPattern::kWildcardByte))
            continue;
        return "each ? is one byte, and " + AlwaysQuoted(stop.mRest.substr(i, bytes)) + " is " +
               CountOf(bytes, "byte") + ": use " + std::string(bytes, '?');
    }
    return "";
}

constexpr std::string (*kHints[])(const Stop&) = {
    HintOtherCase, HintSpace,       HintPoint, HintExponent,  HintHexPrefix, HintSign,
    HintFurtherOn, HintTookTooMuch, HintCut,   HintEmptyRest, HintWildcard,
};

}  // namespace

Miss ExplainMiss(const Pieces& pieces, std::string_view message, const Trace& trace, bool isCut)
{
    const std::size_t index = *trace.mRefusedBy;
    const Stop stop{
        pieces, message, trace, isCut, index, pieces[index], message.substr(trace.mStoppedAt)};
    Miss miss{VerdictWords(stop), TakesOf(stop.mPiece), FoundWords(stop), {}};
    // The mistake is in the parsing string, not in the message.
    for (const Caution& caution : FindCautions(pieces, index)) {
        if (PreventsMatch(caution.mKind) || caution.mKind == kCautionOnlyAfterSpace) {
            miss.mHints.push_back(caution.mText);
            return miss;
        }
    }
    for (const auto hintFor : kHints) {
        if (std::string hint = hintFor(stop); !hint.empty()) miss.mHints.push_back(std::move(hint));
    }
    return miss;
}

}  // namespace NExplain
