// Text to numbers, independent of the locale and of the standard library's own conversions.

#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <limits>
#include <string_view>

namespace NPattern {

// Powers of ten that a double holds exactly.
inline constexpr std::array<double, 23> kPowersOfTen = {
    1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,  1e8,  1e9,  1e10, 1e11,
    1e12, 1e13, 1e14, 1e15, 1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};

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
