#include "cautions.h"

#include <algorithm>
#include <iterator>
#include <optional>
#include <string_view>

#include "Common/Pattern/pattern_elements.h"
#include "byte_text.h"
#include "escapes.h"
#include "first_bytes.h"
#include "value_cautions.h"

namespace NExplain {

using NPattern::BytesetElement;
using NPattern::NumberElement;
using NPattern::StringElement;

namespace {

// A piece among its neighbors.
struct Place {
    const Piece& mPiece;
    const Piece* mPrevious;  // null for the first piece
    const Piece* mNext;      // null for the last piece
    std::size_t mIndex;

    std::string PreviousName() const { return "piece " + std::to_string(mIndex); }
    // What the piece can begin with after the previous one, if no white space comes between. A byte
    // 00 never arrives. Not for the first piece.
    ByteSet Firsts() const { return FirstBytes(mPiece).reset(0) & ~BytesNeverAfter(*mPrevious); }
};

struct Finding {
    CautionKind mKind;
    std::string mText;
};

using MaybeFinding = std::optional<Finding>;

bool CapturesNumber(const Piece& piece)
{
    return !piece.mCaptures.empty() && piece.mCaptures[0].mType != NPattern::kTypeString;
}

bool CapturesFloat(const Piece& piece)
{
    return !piece.mCaptures.empty() && piece.mCaptures[0].mType == NPattern::kTypeFloat;
}

// Each returns a caution if there is cause for it.

MaybeFinding FindRawDigits(const Place& place)
{
    const auto* const set = ElementAs<BytesetElement>(place.mPiece);
    if (set == nullptr || !set->IsBinary() || set->IsInBraces() ||
        set->Class() != NPattern::kClassNone || !CapturesNumber(place.mPiece)) {
        return std::nullopt;
    }
    return Finding{kCautionRawDigits,
                   "this set includes white space, so the number is made of the raw bytes: 1 "
                   "becomes 49. A set without white space, such as [-+.0-9], reads digits"};
}

MaybeFinding FindRawFloat(const Place& place)
{
    const auto* const set = ElementAs<BytesetElement>(place.mPiece);
    if (set == nullptr || !set->IsBinary() || set->Length() == 1 || !CapturesFloat(place.mPiece) ||
        FindRawDigits(place)) {
        return std::nullopt;
    }
    return Finding{kCautionRawFloat,
                   "the bytes are read as a whole number without a sign, least significant byte "
                   "first, and not as the bytes of a floating-point number"};
}

MaybeFinding FindSplitNumber(const Place& place)
{
    const auto* const number = ElementAs<NumberElement>(place.mPiece);
    const auto* const second =
        place.mNext != nullptr ? ElementAs<NumberElement>(*place.mNext) : nullptr;
    if (number == nullptr || number->IsHex() || number->HasPoint() || second == nullptr ||
        !second->HasPoint() || !place.mNext->mCaptures.empty()) {
        return std::nullopt;
    }
    return Finding{kCautionSplitNumber,
                   "this piece and the next are two numbers, and only the first is captured; one "
                   "number with a decimal point is .#"};
}

// A number that is too large for an integer is a reason for a float.
MaybeFinding FindWholeFloat(const Place& place)
{
    const auto* const number = ElementAs<NumberElement>(place.mPiece);
    if (number == nullptr || number->HasPoint() || number->IsHex() ||
        !CapturesFloat(place.mPiece) || number->IntegerDigits() >= kFewestLargeDigits ||
        FindSplitNumber(place)) {
        return std::nullopt;
    }
    return Finding{
        kCautionWholeFloat,
        "this reads whole numbers only and stops at a decimal point; .# reads the point too"};
}

// Without a count, what the device sends is unknown: only the values can be checked.
MaybeFinding FindLargeNumber(const Place& place)
{
    const auto* const number = ElementAs<NumberElement>(place.mPiece);
    if (number == nullptr || number->IntegerDigits() == 0 || !CanBeClamped(place.mPiece)) {
        return std::nullopt;
    }
    const std::string digits = std::to_string(number->IntegerDigits());
    return Finding{kCautionLargeNumber,
                   number->IsHex()
                       ? digits +
                             " hexadecimal digits can be more than 7FFFFFFF, and then the "
                             "value is that, 2147483647; 4x twice captures both halves"
                       : digits +
                             " digits can be more than 2147483647, and then the value is "
                             "that; a string keeps all digits, and a float holds 15"};
}

MaybeFinding FindManyBytes(const Place& place)
{
    const auto* const set = ElementAs<BytesetElement>(place.mPiece);
    if (set == nullptr || set->Length() == 0 || !CanDropBytes(place.mPiece)) return std::nullopt;
    const bool isBig = place.mPiece.mCaptures[0].mType == NPattern::kTypeBInteger;
    return Finding{kCautionManyBytes, "an integer holds four bytes, so only the " +
                                          std::string(isBig ? "last" : "first") +
                                          " four of these " + std::to_string(set->Length()) +
                                          " are in the value; capture parts of at most four bytes"};
}

// A count of 0 is never needed, so it is most likely meant as part of a prefix.
MaybeFinding FindHexPrefix(const Place& place)
{
    const std::string& source = place.mPiece.mSource;
    const std::string_view body = std::string_view(source).substr(source.find('=') + 1);
    if (!NPattern::EqualsIgnoringCase(body, "0x")) return std::nullopt;
    return Finding{kCautionHexPrefix,
                   "this takes a hexadecimal number; the text 0x is written in quotes: '0x'"};
}

MaybeFinding FindBackslash(const Place& place)
{
    std::string words = IdleBackslash(place.mPiece);
    if (words.empty()) return std::nullopt;
    return Finding{kCautionBackslash, std::move(words)};
}

MaybeFinding FindImpossible(const Place& place)
{
    const ByteSet first = FirstBytes(place.mPiece);
    if (first.none()) {
        return Finding{kCautionEmptySet, "this set excludes every byte, so it never matches"};
    }
    const auto* const text = ElementAs<StringElement>(place.mPiece);
    const bool hasZero = text != nullptr && text->MatchText().find('\0') != std::string::npos;
    if (hasZero || first == ByteSet().set(0)) {
        return Finding{kCautionByteZero,
                       "this needs a byte 00, but the host passes text only up to the first one, "
                       "so it never matches"};
    }
    return std::nullopt;
}

MaybeFinding FindSkippedSpace(const Place& place)
{
    const auto* const text = ElementAs<StringElement>(place.mPiece);
    if (!place.mPiece.mSkipsSpace || text == nullptr) return std::nullopt;
    const std::string& shown = text->MatchText();
    const auto isSpace = [](char c) { return NPattern::IsSpace(static_cast<NPattern::Byte>(c)); };
    if (!isSpace(shown.front())) return std::nullopt;
    const std::string cause =
        "this text begins with white space, but white space is skipped before it, so it never "
        "matches; ";
    if (std::all_of(shown.begin(), shown.end(), isSpace)) {
        return Finding{kCautionSkippedSpace, cause + "leave the piece out"};
    }
    return Finding{kCautionSkippedSpace, cause + "leave the white space out"};
}

// Characters that usually come directly after a value. Others usually begin a word of their own,
// and then white space comes before them.
constexpr std::string_view kSeparators = ",;:=|*)]}>";

bool HasSeparator(const ByteSet& bytes, std::string_view separators)
{
    return std::any_of(separators.begin(), separators.end(),
                       [&bytes](char c) { return bytes[static_cast<unsigned char>(c)]; });
}

// "[^;] stops before it": a set that stops before the first byte of text.
std::string StopsBefore(const StringElement& text)
{
    const auto first = static_cast<NPattern::Byte>(text.MatchText().front());
    if (!NPattern::IsPrint(first)) return "a set without " + NameOfByte(first) + " stops before it";
    std::string shown = InSet({static_cast<char>(first)});
    if (!text.IsCaseSensitive() && NPattern::IsAlpha(first)) {
        shown += static_cast<char>(first ^ NPattern::kCaseBit);
    }
    return "[^" + shown + "] stops before it";
}

MaybeFinding FindTaken(const Place& place)
{
    if (place.mPrevious == nullptr || FindImpossible(place) || place.Firsts().any()) {
        return std::nullopt;
    }
    const auto* const text = ElementAs<StringElement>(place.mPiece);
    const bool hasStop =
        text != nullptr &&
        static_cast<NPattern::Byte>(text->MatchText().front()) != NPattern::kWildcardByte;
    if (!place.mPiece.mSkipsSpace) {
        return Finding{kCautionTaken,
                       place.PreviousName() +
                           " takes everything with which this can begin, so this never matches; " +
                           (hasStop ? "in its place, " + StopsBefore(*text)
                                    : "what separates the two needs a piece of its own")};
    }
    if (text == nullptr || !HasSeparator(FirstBytes(place.mPiece), kSeparators)) {
        return std::nullopt;
    }
    return Finding{kCautionOnlyAfterSpace,
                   place.PreviousName() + " takes " +
                       NameOfByte(static_cast<NPattern::Byte>(text->MatchText().front())) +
                       " too, so this matches only after white space; in its place, " +
                       StopsBefore(*text)};
}

// A set that takes digits before a number. White space can separate the two if both read text; but
// not if the set also takes what separates fields.
MaybeFinding FindSwallowed(const Place& place)
{
    if (place.mPrevious == nullptr || ElementAs<NumberElement>(place.mPiece) == nullptr ||
        place.mPiece.mCaptures.empty()) {
        return std::nullopt;
    }
    const ByteSet taken = BytesNeverAfter(*place.mPrevious);
    if ((taken & DigitBytes()) != DigitBytes() || place.Firsts().none()) return std::nullopt;
    if (place.mPiece.mSkipsSpace && !HasSeparator(taken, ",;")) return std::nullopt;
    return Finding{kCautionSwallowed,
                   place.PreviousName() +
                       " takes digits too, so it takes the first digits of this number" +
                       (place.mPiece.mSkipsSpace ? " unless white space comes before it" : "") +
                       "; take what separates them, such as ',', with a piece of its own"};
}

constexpr MaybeFinding (*kFinders[])(const Place&) = {
    FindHexPrefix, FindImpossible,  FindSkippedSpace, FindTaken,
    FindSwallowed, FindBackslash,   FindRawDigits,    FindRawFloat,
    FindManyBytes, FindLargeNumber, FindSplitNumber,  FindWholeFloat,
};

}  // namespace

std::vector<Caution> FindCautions(const Pieces& pieces, std::size_t index)
{
    const Place place{pieces[index], index > 0 ? &pieces[index - 1] : nullptr,
                      index + 1 < pieces.size() ? &pieces[index + 1] : nullptr, index};
    std::vector<Caution> cautions;
    for (const auto find : kFinders) {
        if (MaybeFinding finding = find(place)) {
            cautions.push_back({finding->mKind, index, std::move(finding->mText)});
        }
    }
    return cautions;
}

std::vector<Caution> FindCautions(const Pieces& pieces)
{
    std::vector<Caution> cautions;
    for (std::size_t p = 0; p < pieces.size(); ++p) {
        std::vector<Caution> more = FindCautions(pieces, p);
        std::move(more.begin(), more.end(), std::back_inserter(cautions));
    }
    return cautions;
}

}  // namespace NExplain
