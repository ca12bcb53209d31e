#include "pattern_number_element.h"

#include <algorithm>

#include "pattern_numbers.h"

namespace NPattern {

namespace {

constexpr char kSourceFile[] = "pattern_number_element.cpp";

[[noreturn]] void ThrowNoNumber(int line)
{
    throw WithCode(kErrorWrongForm, PatternException(kSourceFile, line, "Not a NumberElement"));
}

KindWord ClassifyKindWord(const LToken& token)
{
    const KindWord kind = FindKindWord(token.mText);
    if (kind == kKindNone) ThrowNoNumber(__LINE__);
    return kind;
}

std::int32_t TakeOptionalNumber(const std::vector<LToken>& tokens, TokenCursor& ioCursor)
{
    const LToken* token = nullptr;
    return ExpectToken(tokens, ioCursor, token, kNumber, nullptr) ? token->mValue : 0;
}

KindWord TakeKindWord(const std::vector<LToken>& tokens, TokenCursor& ioCursor)
{
    const LToken* token = nullptr;
    if (!ExpectToken(tokens, ioCursor, token, kIdentifier, nullptr) &&
        !ExpectToken(tokens, ioCursor, token, kSymbol, nullptr)) {
        ThrowNoNumber(__LINE__);
    }
    return ClassifyKindWord(*token);
}

// A run of digits, converted to a number while it is scanned.
struct DigitRun {
    const Byte* mEnd;      // just past the run
    std::uint64_t mValue;  // the number; without meaning if there are too many digits to fit
};

// Any number of at most this many digits fits 64 bits.
constexpr std::ptrdiff_t kMostQuickDigits = 19;
constexpr std::ptrdiff_t kMostQuickHexDigits = 16;

// limit: the most digits taken; 0: no limit. value: the number that the digits before the run make.
template <unsigned kRadix>
DigitRun TakeDigits(const Byte* data, const Byte* end, std::int32_t limit, std::uint64_t value)
{
    if (limit != 0 && end - data > limit) end = data + limit;
    for (; data != end; ++data) {
        const unsigned digit = kRadix == 10 ? *data - unsigned{'0'} : HexDigitValue(*data);
        if (digit >= kRadix) break;
        value = value * kRadix + digit;
    }
    return {data, value};
}

// Powers of ten that a double holds exactly.
constexpr double kPowersOfTen[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                   1e8,  1e9,  1e10, 1e11, 1e12, 1e13, 1e14, 1e15,
                                   1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};

// A double holds any whole number up to this one exactly, so its quotient by a power of ten of the
// table is rounded once: to the double that atof returns.
constexpr std::uint64_t kLargestExact = std::uint64_t{1} << 53;

}  // namespace

KindWord FindKindWord(std::string_view word)
{
    const auto* const row =
        std::find_if(kKindWords.begin(), kKindWords.end(),
                     [word](const KindWordRow& r) { return EqualsIgnoringCase(r.mWord, word); });
    return row != kKindWords.end() ? row->mKind : kKindNone;
}

bool NumberElement::CanStart(const std::vector<LToken>& tokens, TokenCursor cursor)
{
    cursor = SkipDeclaration(tokens, cursor);
    if (TokenAt(tokens, cursor).mType == kNumber) ++cursor;
    const LToken& word = TokenAt(tokens, cursor);
    return (word.mType == kIdentifier || word.mType == kSymbol) &&
           FindKindWord(word.mText) != kKindNone;
}

NumberElement::NumberElement(const std::vector<LToken>& tokens, TokenCursor& ioCursor)
{
    ParseDeclaration(tokens, ioCursor);
    mIntegerDigits = TakeOptionalNumber(tokens, ioCursor);
    const KindWord kind = TakeKindWord(tokens, ioCursor);
    mDecimalPoint = kind == kKindPoint;
    mHex = kind == kKindHex;
    mFractionDigits = mDecimalPoint ? TakeOptionalNumber(tokens, ioCursor) : 0;
    if (mDecimalPoint && TakeKindWord(tokens, ioCursor) != kKindDigit) {
        ThrowNoNumber(__LINE__);
    }
}

void NumberElement::Dump(std::FILE* stream) const
{
    std::fprintf(stream, "%c ", BinaryMark());
    std::fprintf(stream, "NUMBER     %i.%i decimal_point=%s hex=%s %s\n", mIntegerDigits,
                 mFractionDigits, mDecimalPoint ? "true" : "false", mHex ? "true" : "false",
                 mParameter.TypedName().c_str());
}

const Byte* NumberElement::Match(const Byte* data, std::uint32_t length)
{
    const Byte* const end = data + length;
    if (mHex) return MatchHex(data, end);
    return mDecimalPoint ? MatchDecimal<true>(data, end) : MatchDecimal<false>(data, end);
}

const Byte* NumberElement::MatchHex(const Byte* data, const Byte* end)
{
    const DigitRun run = TakeDigits<16>(data, end, mIntegerDigits, 0);
    if (run.mEnd == data) return nullptr;
    if (!mParameter.IsInteger() || run.mEnd - data > kMostQuickHexDigits) {
        return CaptureText(data, run.mEnd, true);
    }
    mParameter.mIntValue = ClampedInteger(run.mValue, false);
    return run.mEnd;
}

template <bool kDecimalPoint>
const Byte* NumberElement::MatchDecimal(const Byte* data, const Byte* end)
{
    if (data == end) return nullptr;
    const bool negative = *data == '-';
    const Byte* const digits = negative || *data == '+' ? data + 1 : data;

    const DigitRun whole = TakeDigits<10>(digits, end, mIntegerDigits, 0);
    DigitRun all = whole;
    std::ptrdiff_t fractionDigits = 0;
    if (kDecimalPoint && whole.mEnd != end && *whole.mEnd == '.') {
        const Byte* const fraction = whole.mEnd + 1;
        all = TakeDigits<10>(fraction, end, mFractionDigits, whole.mValue);
        fractionDigits = all.mEnd - fraction;
    }
    if (all.mEnd == data) return nullptr;

    const std::ptrdiff_t wholeDigits = whole.mEnd - digits;
    if (mParameter.IsInteger() && wholeDigits <= kMostQuickDigits) {
        mParameter.mIntValue = ClampedInteger(whole.mValue, negative);
        return all.mEnd;
    }
    const std::ptrdiff_t digitCount = wholeDigits + fractionDigits;
    if (mParameter.mType == kTypeFloat && digitCount <= kMostQuickDigits &&
        all.mValue <= kLargestExact) {
        const double value = static_cast<double>(static_cast<std::int64_t>(all.mValue)) /
                             kPowersOfTen[fractionDigits];
        // Without any digit there is no number, and so no negative zero either.
        mParameter.mFloatValue = negative && digitCount != 0 ? -value : value;
        return all.mEnd;
    }
    return CaptureText(data, all.mEnd, false);
}

}  // namespace NPattern
