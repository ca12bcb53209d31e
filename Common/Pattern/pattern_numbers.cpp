#include "pattern_numbers.h"

#include <algorithm>
#include <charconv>
#include <limits>
#include <optional>
#include <system_error>

#include "pattern_bytes.h"
#include "pattern_exact_float.h"

namespace NPattern {

namespace {

std::string_view WithoutSpace(std::string_view text)
{
    while (!text.empty() && IsSpace(static_cast<Byte>(text.front()))) text.remove_prefix(1);
    return text;
}

bool StartsWithSign(std::string_view text)
{
    return !text.empty() && (text.front() == '-' || text.front() == '+');
}

// Removes a sign from the start of the text. Returns true if it was a minus.
bool TakeSign(std::string_view& ioText)
{
    if (!StartsWithSign(ioText)) return false;
    const bool negative = ioText.front() == '-';
    ioText.remove_prefix(1);
    return negative;
}

bool HasDigitAt(std::string_view text, std::size_t position, unsigned radix)
{
    return position < text.size() && HexDigitValue(static_cast<Byte>(text[position])) < radix;
}

bool HasHexPrefix(std::string_view text)
{
    return text.size() > 2 && EqualsIgnoringCase(text.substr(0, 2), "0x");
}

// True if a hexadecimal float follows the prefix, which is otherwise a 0 and a letter.
bool IsHexFloat(std::string_view text)
{
    return HasHexPrefix(text) &&
           (HasDigitAt(text, 2, 16) || (text[2] == '.' && HasDigitAt(text, 3, 16)));
}

#if defined(__cpp_lib_to_chars) && !defined(WORD_SIFTER_PORTABLE_NUMBERS)

// True if a number outside the range of double is too large, false if it is too near to 0. The
// place of its first significant digit decides. text: just the number.
bool IsTooLarge(std::string_view text, unsigned radix)
{
    constexpr std::int64_t kSaturated = std::int64_t{1} << 40;  // more than any text is long
    std::int64_t power = 0;
    bool pointSeen = false;
    bool significant = false;
    std::size_t i = 0;
    for (; i < text.size() && (text[i] == '.' || HasDigitAt(text, i, radix)); ++i) {
        if (text[i] == '.') {
            pointSeen = true;
            continue;
        }
        significant = significant || text[i] != '0';
        if (significant && !pointSeen) ++power;
        if (!significant && pointSeen) --power;
    }
    if (radix == 16) power *= 4;
    if (i == text.size()) return power > 0;

    std::string_view exponentText = text.substr(i + 1);  // after the 'e' or 'p'
    const bool negative = TakeSign(exponentText);
    std::int64_t exponent = 0;
    for (i = 0; HasDigitAt(exponentText, i, 10); ++i) {
        exponent = std::min(exponent * 10 + (exponentText[i] - '0'), kSaturated);
    }
    return power + (negative ? -exponent : exponent) > 0;
}

// Nothing if no number is there.
std::optional<double> MagnitudeOf(std::string_view text, unsigned radix)
{
    // An exponent has one sign. No number goes on after two, but std::from_chars accepts them in a
    // hexadecimal one.
    text = text.substr(0, text.find("+-"));
    double value = 0.0;
    const auto [rest, error] =
        std::from_chars(text.data(), text.data() + text.size(), value,
                        radix == 16 ? std::chars_format::hex : std::chars_format::general);
    if (error == std::errc::invalid_argument) return std::nullopt;
    if (error != std::errc::result_out_of_range) return value;
    text = text.substr(0, static_cast<std::size_t>(rest - text.data()));
    return IsTooLarge(text, radix) ? std::numeric_limits<double>::infinity() : 0.0;
}

#else

std::optional<double> MagnitudeOf(std::string_view text, unsigned radix)
{
    return ExactFloatOf(text, radix);
}

#endif

}  // namespace

std::int32_t IntegerOf(std::string_view text, unsigned radix)
{
    constexpr std::uint64_t kSaturated = std::uint64_t{1} << 32;
    text = WithoutSpace(text);
    const bool negative = TakeSign(text);
    if (radix == 16 && HasHexPrefix(text)) text.remove_prefix(2);

    std::uint64_t magnitude = 0;
    for (std::size_t i = 0; HasDigitAt(text, i, radix); ++i) {
        magnitude =
            std::min(magnitude * radix + HexDigitValue(static_cast<Byte>(text[i])), kSaturated);
    }
    return ClampedInteger(magnitude, negative);
}

double FloatOf(std::string_view text)
{
    text = WithoutSpace(text);
    const bool negative = TakeSign(text);
    if (StartsWithSign(text)) return 0.0;
    const bool isHex = IsHexFloat(text);
    if (isHex) text.remove_prefix(2);
    const std::optional<double> magnitude = MagnitudeOf(text, isHex ? 16 : 10);
    return magnitude ? (negative ? -*magnitude : *magnitude) : 0.0;
}

}  // namespace NPattern
