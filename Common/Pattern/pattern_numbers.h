// Text to numbers, independent of the locale and of the standard library's own conversions.

#pragma once

#include <algorithm>
#include <cstdint>
#include <limits>
#include <string_view>

namespace NPattern {

// Returns what strtol returns in the "C" locale, clamped to 32 bits whatever the width of long.
// radix: 10 or 16, which allows a prefix 0x.
std::int32_t IntegerOf(std::string_view text, unsigned radix);

// Returns what atof returns in the "C" locale, but for the payload of a nan. Hexadecimal floats,
// infinities and nans included.
double FloatOf(std::string_view text);

// Returns the nearest 32-bit value of a number with this magnitude and sign.
inline std::int32_t ClampedInteger(std::uint64_t magnitude, bool negative)
{
    constexpr std::uint64_t kLargest = std::numeric_limits<std::int32_t>::max();
    const auto clamped =
        static_cast<std::int64_t>(std::min(magnitude, negative ? kLargest + 1 : kLargest));
    return static_cast<std::int32_t>(negative ? -clamped : clamped);
}

}  // namespace NPattern
