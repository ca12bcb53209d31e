#include "pattern_exact_float.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>

#include "pattern_bytes.h"
#include "pattern_numbers.h"

namespace NPattern {

namespace {

// Digits beyond these only show that the number is larger: a point halfway between two doubles has
// at most 767 decimal digits, and 64 bits have 16 hexadecimal ones.
constexpr int kMostDecimalDigits = 800;
constexpr int kMostHexDigits = 20;

// Decimal exponents of the first digit from which a number is certainly infinite or 0.
constexpr std::int64_t kInfiniteFrom = 330;
constexpr std::int64_t kZeroBelow = -350;

// Exponents stop here: far outside what a text of any possible length brings back into range.
constexpr std::int64_t kSaturatedExponent = std::int64_t{1} << 40;

// A non-negative integer in an array, with the few operations that a comparison needs.
class BigNumber {
  public:
    explicit BigNumber(std::uint64_t value = 0)
    {
        for (; value != 0; value >>= 32) mWords[mSize++] = static_cast<std::uint32_t>(value);
    }

    void MultiplyAndAdd(std::uint32_t factor, std::uint32_t summand)
    {
        std::uint64_t carry = summand;
        for (std::size_t i = 0; i < mSize; ++i) {
            carry += std::uint64_t{mWords[i]} * factor;
            mWords[i] = static_cast<std::uint32_t>(carry);
            carry >>= 32;
        }
        if (carry != 0) mWords[mSize++] = static_cast<std::uint32_t>(carry);
    }

    // Changes nothing if exponent is negative.
    void MultiplyByPowerOf5(std::int64_t exponent)
    {
        constexpr std::uint32_t kFiveTo13 = 1220703125;  // the largest in 32 bits
        for (; exponent >= 13; exponent -= 13) MultiplyAndAdd(kFiveTo13, 0);
        for (; exponent > 0; --exponent) MultiplyAndAdd(5, 0);
    }

    void ShiftLeft(std::int64_t bits)
    {
        MultiplyAndAdd(std::uint32_t{1} << (bits % 32), 0);
        const auto words = static_cast<std::size_t>(bits / 32);
        std::copy_backward(mWords.begin(), mWords.begin() + static_cast<std::ptrdiff_t>(mSize),
                           mWords.begin() + static_cast<std::ptrdiff_t>(mSize + words));
        std::fill_n(mWords.begin(), words, 0U);
        mSize += words;
    }

    // Negative, 0 or positive, as *this is less than, equal to or greater than other.
    int Compare(const BigNumber& other) const
    {
        const auto [word, otherWord] =
            std::mismatch(mWords.rbegin(), mWords.rend(), other.mWords.rbegin());
        if (word == mWords.rend()) return 0;
        return *word < *otherWord ? -1 : 1;
    }

  private:
    // Enough for kMostDecimalDigits digits, and for either side of any comparison of a number in
    // the range between kZeroBelow and kInfiniteFrom with a double: below 3,800 bits.
    std::array<std::uint32_t, 128> mWords{};
    std::size_t mSize = 0;  // words in use; the others are 0
};

// The number digits * 5^fives * 2^twos.
struct ExactNumber {
    BigNumber mDigits;
    std::int64_t mFives;
    std::int64_t mTwos;
};

// A text as it is scanned.
struct ScannedNumber {
    BigNumber mDigits;               // the first ones, without the point
    std::uint64_t mLeading = 0;      // the first ones as far as they fit
    std::int64_t mSignificant = 0;   // digits in mDigits
    std::int64_t mLeadingCount = 0;  // digits in mLeading
    std::int64_t mExponent = 0;      // power of the radix by which mDigits is to be multiplied
};

// Takes the digits with their point from the start of ioText. False if there is no digit.
bool TakeDigits(std::string_view& ioText, unsigned radix, ScannedNumber& outNumber)
{
    const std::int64_t most = radix == 10 ? kMostDecimalDigits : kMostHexDigits;
    bool pointSeen = false;
    bool digitSeen = false;
    bool isCut = false;
    std::size_t i = 0;
    for (; i < ioText.size(); ++i) {
        if (ioText[i] == '.' && !pointSeen) {
            pointSeen = true;
            continue;
        }
        const unsigned digit = HexDigitValue(static_cast<Byte>(ioText[i]));
        if (digit >= radix) break;
        digitSeen = true;
        if (pointSeen) --outNumber.mExponent;
        if (digit == 0 && outNumber.mSignificant == 0) continue;
        if (outNumber.mSignificant == most) {
            isCut = isCut || digit != 0;
            ++outNumber.mExponent;
            continue;
        }
        outNumber.mDigits.MultiplyAndAdd(radix, digit);
        ++outNumber.mSignificant;
        if (outNumber.mLeading <= (std::numeric_limits<std::uint64_t>::max() - 15) / 16) {
            outNumber.mLeading = outNumber.mLeading * radix + digit;
            ++outNumber.mLeadingCount;
        }
    }
    // One more digit stands for all that were cut off.
    if (isCut) {
        outNumber.mDigits.MultiplyAndAdd(radix, 1);
        ++outNumber.mSignificant;
        --outNumber.mExponent;
    }
    ioText.remove_prefix(i);
    return digitSeen;
}

// The exponent at the start of text, 0 if there is none. The letter counts only if digits follow.
std::int64_t ExponentOf(std::string_view text, Byte letter)
{
    if (text.empty() || ToLower(static_cast<Byte>(text[0])) != letter) return 0;
    text.remove_prefix(1);
    const bool negative = text.starts_with('-');
    if (negative || text.starts_with('+')) text.remove_prefix(1);
    std::int64_t exponent = 0;
    for (const char c : text) {
        if (!IsDigit(static_cast<Byte>(c))) break;
        exponent = std::min(exponent * 10 + (c - '0'), kSaturatedExponent);
    }
    return negative ? -exponent : exponent;
}

// The bits of doubles from 0 upwards, infinity included, are in the order of their values.
constexpr std::uint64_t kInfinityBits = 0x7FF0000000000000;
constexpr int kMantissaBits = 52;
constexpr int kLeastExponent = -1074;  // of the lowest bit of a subnormal number

// Compares a number with the point halfway between a finite double and the next one.
int CompareWithHalfway(const ExactNumber& number, std::uint64_t doubleBits)
{
    constexpr std::uint64_t kHiddenBit = std::uint64_t{1} << kMantissaBits;
    const auto biased = static_cast<std::int64_t>(doubleBits >> kMantissaBits);
    const std::uint64_t fraction = doubleBits & (kHiddenBit - 1);
    const std::uint64_t mantissa = biased == 0 ? fraction : fraction | kHiddenBit;
    const std::int64_t exponent = kLeastExponent + std::max<std::int64_t>(biased, 1) - 1;

    BigNumber left = number.mDigits;
    BigNumber right(mantissa * 2 + 1);
    left.MultiplyByPowerOf5(number.mFives);
    right.MultiplyByPowerOf5(-number.mFives);
    const std::int64_t shift = number.mTwos - (exponent - 1);
    left.ShiftLeft(std::max<std::int64_t>(shift, 0));
    right.ShiftLeft(std::max<std::int64_t>(-shift, 0));
    return left.Compare(right);
}

// Stands in for std::bit_cast, which some libraries lack as well as std::from_chars.
template <typename To, typename From>
To BitsAs(From from)
{
    static_assert(sizeof(To) == sizeof(From));
    To to{};
    std::memcpy(&to, &from, sizeof to);
    return to;
}

// guess: at most a few doubles away from the result, which is exact.
double NearestDouble(const ExactNumber& number, double guess)
{
    auto bits = BitsAs<std::uint64_t>(guess);
    const auto isUp = [&number](std::uint64_t from) {
        const int order = CompareWithHalfway(number, from);
        return order > 0 || (order == 0 && from % 2 != 0);
    };
    while (bits < kInfinityBits && isUp(bits)) ++bits;
    while (bits > 0 && !isUp(bits - 1)) --bits;
    return BitsAs<double>(bits);
}

constexpr std::int64_t kLargestExactPower = kPowersOfTen.size() - 1;

// Exact if value has at most 53 bits and exponent is within kLargestExactPower; otherwise each
// factor adds a rounding error.
double TimesPowerOfTen(double value, std::int64_t exponent)
{
    for (; exponent > kLargestExactPower; exponent -= kLargestExactPower) {
        value *= kPowersOfTen.back();
    }
    for (; exponent < -kLargestExactPower; exponent += kLargestExactPower) {
        value /= kPowersOfTen.back();
    }
    const auto power = kPowersOfTen[static_cast<std::size_t>(std::abs(exponent))];
    return exponent < 0 ? value / power : value * power;
}

double DecimalValue(const ScannedNumber& number)
{
    constexpr std::uint64_t kLargestExact = std::uint64_t{1} << 53;
    const std::int64_t firstDigit = number.mExponent + number.mSignificant;
    if (firstDigit > kInfiniteFrom) return std::numeric_limits<double>::infinity();
    if (firstDigit < kZeroBelow) return 0.0;
    const auto leading = static_cast<double>(number.mLeading);
    const std::int64_t dropped = number.mSignificant - number.mLeadingCount;
    const double guess = TimesPowerOfTen(leading, number.mExponent + dropped);
    // All digits are in mLeading then.
    const bool isExact =
        number.mLeading <= kLargestExact && std::abs(number.mExponent) <= kLargestExactPower;
    if (isExact) return guess;
    return NearestDouble({number.mDigits, number.mExponent, number.mExponent}, guess);
}

double HexValue(const ScannedNumber& number, std::int64_t binaryExponent)
{
    constexpr std::int64_t kInfiniteFromBit = 1100;
    constexpr std::int64_t kZeroBelowBit = -1200;
    const std::int64_t exponent = number.mExponent * 4 + binaryExponent;
    if (exponent > kInfiniteFromBit) return std::numeric_limits<double>::infinity();
    if (exponent < kZeroBelowBit) return 0.0;
    const std::int64_t dropped = number.mSignificant - number.mLeadingCount;
    const double guess =
        std::ldexp(static_cast<double>(number.mLeading), static_cast<int>(exponent + dropped * 4));
    return NearestDouble({number.mDigits, 0, exponent}, guess);
}

}  // namespace

std::optional<double> ExactFloatOf(std::string_view text, unsigned radix)
{
    if (EqualsIgnoringCase(text.substr(0, 3), "inf"))
        return std::numeric_limits<double>::infinity();
    if (EqualsIgnoringCase(text.substr(0, 3), "nan"))
        return std::numeric_limits<double>::quiet_NaN();
    ScannedNumber number;
    if (!TakeDigits(text, radix, number)) return std::nullopt;
    if (number.mSignificant == 0) return 0.0;
    const std::int64_t exponent = ExponentOf(text, radix == 10 ? 'e' : 'p');
    if (radix == 16) return HexValue(number, exponent);
    number.mExponent += exponent;
    return DecimalValue(number);
}

}  // namespace NPattern
