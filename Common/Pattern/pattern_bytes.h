// Bytes, byte classes and case folding. Plain ASCII, so that no locale changes a result: no byte
// above 127 belongs to a class or changes case.

#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace NPattern {

using Byte = unsigned char;

constexpr bool IsSpace(Byte b)
{
    // One bit for the space character and one for each of the five bytes from tab on. The
    // comparison rejects most other bytes without the shift.
    constexpr std::uint64_t kSpaceBits = std::uint64_t{1} << ' ' | std::uint64_t{0x1F} << '\t';
    return b <= ' ' && (kSpaceBits >> b & 1) != 0;
}
constexpr bool IsDigit(Byte b)
{
    return b >= '0' && b <= '9';
}
constexpr bool IsAlpha(Byte b)
{
    return (b >= 'A' && b <= 'Z') || (b >= 'a' && b <= 'z');
}
constexpr bool IsAlnum(Byte b)
{
    return IsDigit(b) || IsAlpha(b);
}
constexpr bool IsPrint(Byte b)
{
    return b >= ' ' && b <= '~';
}

// The bit in which an upper-case letter differs from its lower-case letter.
inline constexpr Byte kCaseBit = 0x20;

constexpr Byte ToLower(Byte b)
{
    return b >= 'A' && b <= 'Z' ? static_cast<Byte>(b | kCaseBit) : b;
}

// Both texts whole, with the case of A to Z ignored.
constexpr bool EqualsIgnoringCase(std::string_view a, std::string_view b)
{
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](char x, char y) {
        return ToLower(static_cast<Byte>(x)) == ToLower(static_cast<Byte>(y));
    });
}

// By table: numbers are converted digit by digit with it.
constexpr std::array<Byte, 256> MakeHexDigitValues()
{
    std::array<Byte, 256> values{};
    for (Byte b = 0; Byte & value : values) {
        const Byte lower = ToLower(b++);
        value = static_cast<Byte>(IsDigit(lower) ? lower - '0'
                                  : lower >= 'a' ? lower - 'a' + 10
                                                 : 16);
    }
    return values;
}
inline constexpr std::array<Byte, 256> kHexDigitValues = MakeHexDigitValues();

// The value of a hexadecimal digit, 0 to 15; 16 or more for any other byte.
constexpr unsigned HexDigitValue(Byte b)
{
    return kHexDigitValues[b];
}
constexpr bool IsHexDigit(Byte b)
{
    return HexDigitValue(b) < 16;
}

}  // namespace NPattern
