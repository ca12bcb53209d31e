// Text to numbers, independent of the locale and of the standard library's own conversions.

#pragma once

#include <cstdint>
#include <string_view>

namespace NPattern {

// Returns what strtol returns in the "C" locale, clamped to 32 bits whatever the width of long.
// radix: 10 or 16, which allows a prefix 0x.
std::int32_t IntegerOf(std::string_view text, unsigned radix);

// Returns what atof returns in the "C" locale, but for the payload of a nan. Hexadecimal floats,
// infinities and nans included.
double FloatOf(std::string_view text);

// Returns the nearest 32-bit value of a number with this magnitude and sign.
std::int32_t ClampedInteger(std::uint64_t magnitude, bool negative);

}  // namespace NPattern
