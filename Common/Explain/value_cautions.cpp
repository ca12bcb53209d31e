#include "value_cautions.h"

#include <algorithm>
#include <limits>

#include "Common/Pattern/pattern_elements.h"
#include "Common/Pattern/pattern_numbers.h"
#include "byte_text.h"
#include "cautions.h"
#include "first_bytes.h"

namespace NExplain {

using NPattern::Byte;
using NPattern::BytesetElement;
using NPattern::NumberElement;
using NPattern::Parameter;

namespace {

constexpr std::size_t kIntegerBytes = 4;
constexpr std::string_view kDigits = "0123456789";

bool IsHexNumber(const Piece& piece)
{
    const auto* const number = ElementAs<NumberElement>(piece);
    return number != nullptr && number->IsHex();
}

// The most digits that the piece can take, if it is a number with a limit; otherwise 0.
std::int32_t MostDigits(const Piece& piece)
{
    const auto* const number = ElementAs<NumberElement>(piece);
    return number != nullptr ? number->IntegerDigits() : 0;
}

// The digits at the start of a text that the engine converts to an integer, without zeros in front.
std::string_view DigitsOf(std::string_view text, bool hex)
{
    text.remove_prefix(std::min(text.find_first_not_of(" \t\n\v\f\r+-"), text.size()));
    text.remove_prefix(std::min(text.find_first_not_of('0'), text.size()));
    return text.substr(0, text.find_first_not_of(hex ? "0123456789ABCDEFabcdef" : kDigits));
}

// A decimal number as a value, not as a string.
bool CapturesDecimal(const Piece& piece)
{
    const auto* const number = ElementAs<NumberElement>(piece);
    return number != nullptr && !number->IsHex() && !piece.mCaptures.empty() &&
           piece.mCaptures[0].mType != NPattern::kTypeString;
}

// A set that takes as many bytes as there are.
bool TakesRun(const Piece& piece)
{
    const auto* const set = ElementAs<BytesetElement>(piece);
    return set != nullptr && set->Length() == 0;
}

// Each returns a warning about the value that a piece captured, or an empty text.

std::string ClampedWords(const Piece& piece, std::string_view taken)
{
    const bool hex = IsHexNumber(piece);
    const std::int32_t value = NPattern::IntegerOf(taken, hex ? 16 : 10);
    const bool isLargest = value == std::numeric_limits<std::int32_t>::max();
    if (!isLargest && value != std::numeric_limits<std::int32_t>::min()) return "";
    const std::string_view digits = DigitsOf(taken, hex);
    const char* const exact = hex ? "7FFFFFFF" : isLargest ? "2147483647" : "2147483648";
    if (NPattern::EqualsIgnoringCase(digits, exact)) return "";
    return "the number " + std::string(digits) + " is too large, so " + piece.mCaptures[0].mName +
           " is " + std::to_string(value) + "; a string keeps all digits" +
           (hex ? "" : ", and a float holds 15");
}

std::string DroppedWords(const Piece& piece, std::string_view taken)
{
    if (taken.size() <= kIntegerBytes) return "";
    const bool isBig = piece.mCaptures[0].mType == NPattern::kTypeBInteger;
    const std::string_view dropped =
        isBig ? taken.substr(0, taken.size() - kIntegerBytes) : taken.substr(kIntegerBytes);
    if (dropped.find_first_not_of('\0') == std::string_view::npos) return "";
    return "only the " + std::string(isBig ? "last" : "first") + " four of " +
           CountOf(taken.size(), "byte") + " are in " + piece.mCaptures[0].mName;
}

std::string CutWords(const Take& take, std::string_view message)
{
    if (!NPattern::IsDigit(static_cast<Byte>(message[take.mSpan.mStart - 1]))) return "";
    return "the number starts at " + AlwaysQuoted(take.mSpan.Of(message)) +
           ", because the piece before it took the digits before that";
}

bool IsDigitAt(std::string_view text, std::size_t position)
{
    return position < text.size() && NPattern::IsDigit(static_cast<Byte>(text[position]));
}

// A '-' or a point directly after a letter or a point is part of a word: COM-5.
std::string CutSignWords(const Piece& piece, const Take& take, std::string_view message)
{
    const std::size_t start = take.mSpan.mStart;
    const std::size_t digit = message.substr(start, 1) == "." ? start + 1 : start;
    if (!IsDigitAt(message, digit)) return "";
    const char cut = message[start - 1];
    const bool mayBeCut = cut == '-' || (cut == '.' && ElementAs<NumberElement>(piece)->HasPoint());
    const bool isInWord =
        start > 1 && (NPattern::IsAlnum(static_cast<Byte>(message[start - 2])) ||
                      std::string_view("-._/").find(message[start - 2]) != std::string_view::npos);
    if (!mayBeCut || isInWord) return "";
    const std::string shown = InQuotes({&cut, 1});
    return "the piece before it took the " + shown + " directly before " +
           AlwaysQuoted(take.mSpan.Of(message)) + "; a set without " + shown +
           " leaves it to the number";
}

std::string NoDigitWords(const Piece& piece, const Take& take, std::string_view message)
{
    const std::string_view taken = take.mSpan.Of(message);
    if (taken.find_first_of(kDigits) != std::string_view::npos) return "";
    return "there is no digit in " + AlwaysQuoted(taken) + ", so " + piece.mCaptures[0].mName +
           " is 0";
}

// What may come after a number with a decimal comma: a unit.
bool IsUnit(std::string_view text)
{
    return std::all_of(text.begin(), text.end(), [](char c) {
        const auto byte = static_cast<Byte>(c);
        return NPattern::IsAlpha(byte) || NPattern::IsSpace(byte) || byte == '%' || byte > 127;
    });
}

// Each returns advice if the number that was taken goes on in rest, otherwise null. rest: of
// message after the number, not empty.

// More digits after the point are only more precision; digits that are split by position are meant.
const char* MoreDigits(std::string_view message, const Span& taken, std::string_view /*rest*/)
{
    const bool isSplit = taken.mStart > 0 && IsDigitAt(message, taken.mStart - 1);
    return isSplit ? nullptr : "a larger count, or none, takes more digits";
}

// A number with two points is a date, an address or a version.
const char* PointAfter(std::string_view message, const Span& taken, std::string_view rest)
{
    const std::size_t end = std::min(rest.find_first_not_of(kDigits, 1), rest.size());
    const bool isFirst = taken.mStart == 0 || message[taken.mStart - 1] != '.';
    const bool isLast = end == rest.size() || rest[end] != '.' || !IsDigitAt(rest, end + 1);
    return IsDigitAt(rest, 1) && isFirst && isLast ? "a decimal point is read by .#" : nullptr;
}

// A comma separates fields more often than it is a decimal point: it is one only if the message has
// no other, and nothing but a unit after the digits.
const char* CommaAfter(std::string_view message, const Span& /*taken*/, std::string_view rest)
{
    const std::size_t end = std::min(rest.find_first_not_of(kDigits, 1), rest.size());
    const bool isDecimal = IsDigitAt(rest, 1) && IsUnit(rest.substr(end)) &&
                           std::count(message.begin(), message.end(), ',') == 1;
    return isDecimal ? "a decimal comma is read by # ',' #" : nullptr;
}

const char* ExponentAfter(std::string_view rest)
{
    const bool hasSign = rest.size() > 1 && (rest[1] == '-' || rest[1] == '+');
    return IsDigitAt(rest, hasSign ? 2 : 1)
               ? "name:float=[-+.0-9Ee] reads a number with an exponent"
               : nullptr;
}

std::string StoppedWords(const Piece& piece, const Take& take, std::string_view message)
{
    const std::string_view taken = take.mSpan.Of(message);
    const std::string_view rest = message.substr(take.mSpan.mEnd);
    const bool hasPoint = taken.find('.') != std::string_view::npos;
    if (rest.empty() || taken.find_first_of(kDigits) == std::string_view::npos) return "";
    const char* advice = nullptr;
    if (NPattern::ToLower(static_cast<Byte>(rest[0])) == 'e') {
        advice = ExponentAfter(rest);
    } else if (!hasPoint) {
        const bool isDigit = IsDigitAt(rest, 0);
        const auto find = isDigit          ? MoreDigits
                          : rest[0] == '.' ? PointAfter
                          : rest[0] == ',' ? CommaAfter
                                           : nullptr;
        if (find != nullptr) advice = find(message, take.mSpan, rest);
    }
    if (advice == nullptr) return "";
    const std::size_t end = std::min(rest.find_first_not_of("0123456789+-.,Ee"), rest.size());
    return piece.mCaptures[0].mName + " is only " + AlwaysQuoted(taken) + " of " +
           AlwaysQuoted(message.substr(take.mSpan.mStart, taken.size() + end)) + "; " + advice;
}

std::string WordsFor(const ValueRisk& risk, const Piece& piece, const Take& take,
                     std::string_view message)
{
    switch (risk.mKind) {
        case kCautionClamped: return ClampedWords(piece, take.mSpan.Of(message));
        case kCautionDroppedBytes: return DroppedWords(piece, take.mSpan.Of(message));
        case kCautionCutSign: return CutSignWords(piece, take, message);
        case kCautionStopped: return StoppedWords(piece, take, message);
        case kCautionNoDigit: return NoDigitWords(piece, take, message);
        default: return CutWords(take, message);
    }
}

}  // namespace

bool CanBeClamped(const Piece& piece)
{
    if (piece.mElement->IsBinary() || piece.mCaptures.empty()) return false;
    const bool hex = IsHexNumber(piece);
    const Parameter& capture = piece.mCaptures[0];
    // A hexadecimal number is converted to an integer first, even for a float.
    const bool isInteger = capture.IsInteger() || (hex && capture.mType == NPattern::kTypeFloat);
    const std::int32_t digits = MostDigits(piece);
    return isInteger &&
           (digits == 0 || digits >= (hex ? kFewestLargeHexDigits : kFewestLargeDigits));
}

bool CanDropBytes(const Piece& piece)
{
    const auto* const set = ElementAs<BytesetElement>(piece);
    if (set == nullptr || !set->IsBinary() || piece.mCaptures.empty()) return false;
    const auto length = static_cast<std::size_t>(set->Length());
    return piece.mCaptures[0].IsInteger() && (length == 0 || length > kIntegerBytes);
}

bool MayBeTrue(const ValueRisk& risk, const Piece& piece, std::string_view message)
{
    if (risk.mKind == kCautionCutSign) return message.find_first_of("-.") != message.npos;
    if (risk.mKind != kCautionStopped) return true;
    const auto& number = *ElementAs<NumberElement>(piece);
    const bool isLimited = number.IntegerDigits() != 0;
    const auto mayGoOn = [&](char before, char c) {
        if (!NPattern::IsDigit(static_cast<Byte>(before)) && before != '.') return false;
        return c == ',' || c == 'E' || c == 'e' || (c == '.' && !number.HasPoint()) ||
               (isLimited && NPattern::IsDigit(static_cast<Byte>(c)));
    };
    return std::adjacent_find(message.begin(), message.end(), mayGoOn) != message.end();
}

std::vector<ValueRisk> FindValueRisks(const Pieces& pieces)
{
    std::vector<ValueRisk> risks;
    for (std::size_t p = 0; p < pieces.size(); ++p) {
        if (CapturesDecimal(pieces[p])) {
            risks.push_back({kCautionNoDigit, p});
            if (p > 0 && TakesRun(pieces[p - 1])) risks.push_back({kCautionCutSign, p});
            // A piece after the number takes what comes directly after it.
            if (p + 1 == pieces.size()) risks.push_back({kCautionStopped, p});
        }
        if (CanBeClamped(pieces[p])) risks.push_back({kCautionClamped, p});
        if (CanDropBytes(pieces[p])) risks.push_back({kCautionDroppedBytes, p});
    }
    for (const Caution& caution : FindCautions(pieces)) {
        if (caution.mKind == kCautionSwallowed)
            risks.push_back({kCautionCutNumber, caution.mPiece});
    }
    return risks;
}

std::vector<Caution> FindValueCautions(const Pieces& pieces, const std::vector<ValueRisk>& risks,
                                       std::string_view message, const Trace& trace)
{
    std::vector<Caution> cautions;
    for (const ValueRisk& risk : risks) {
        const auto take = std::find_if(trace.mTakes.begin(), trace.mTakes.end(),
                                       [&risk](const Take& t) { return t.mPiece == risk.mPiece; });
        std::string words = WordsFor(risk, pieces[risk.mPiece], *take, message);
        if (!words.empty()) cautions.push_back({risk.mKind, risk.mPiece, std::move(words)});
    }
    return cautions;
}

}  // namespace NExplain
