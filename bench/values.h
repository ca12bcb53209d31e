// Captured values, in types that are the same for every peer, so that they can be compared. A
// record of captures is a tuple of double, std::int32_t, std::string, and the types below.

#pragma once

#include <charconv>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <tuple>
#include <utility>

#include "Common/Pattern/pattern.h"

namespace NBench {

// An integer in hexadecimal digits.
struct Hex {
    std::int32_t mValue = 0;
    bool operator==(const Hex&) const = default;
};

// The five fields in the four bytes of a packet, the most significant byte first.
struct PacketBits {
    std::int32_t mMode = 0;   // bits 0 to 2
    std::int32_t mChan = 0;   // 3 to 8
    std::int32_t mLevel = 0;  // 9 to 18
    std::int32_t mTemp = 0;   // 19 to 29
    std::int32_t mFlags = 0;  // 30 to 31
    bool operator==(const PacketBits&) const = default;
};

// Two bytes, the least significant first.
struct LittleWord {
    std::int32_t mValue = 0;
    bool operator==(const LittleWord&) const = default;
};

// Read: converts the bytes that a peer captured.
template <typename Number, typename... Format>
void ReadNumber(std::string_view text, Number& outValue, Format... format)
{
    if (!text.empty() && text.front() == '+') text.remove_prefix(1);
    if (std::from_chars(text.data(), text.data() + text.size(), outValue, format...).ec !=
        std::errc()) {
        outValue = 0;
    }
}
inline void Read(std::string_view text, double& outValue)
{
    ReadNumber(text, outValue, std::chars_format::fixed);
}
inline void Read(std::string_view text, std::int32_t& outValue)
{
    ReadNumber(text, outValue);
}
inline void Read(std::string_view text, Hex& outValue)
{
    ReadNumber(text, outValue.mValue, 16);
}
inline void Read(std::string_view text, std::string& outValue)
{
    outValue.assign(text);
}
inline void Read(std::string_view bytes, PacketBits& outValue)
{
    std::uint32_t bits = 0;
    for (const char byte : bytes) bits = bits << 8 | static_cast<unsigned char>(byte);
    const auto field = [bits](int first, int width) {
        return static_cast<std::int32_t>(bits >> first & ((1U << width) - 1));
    };
    outValue = {field(0, 3), field(3, 6), field(9, 10), field(19, 11), field(30, 2)};
}
inline void Read(std::string_view bytes, LittleWord& outValue)
{
    outValue.mValue = static_cast<unsigned char>(bytes[0]) | static_cast<unsigned char>(bytes[1])
                                                                 << 8;
}

// capture: returns the bytes of the capture at an index from 0.
template <typename Capture, typename... Values>
void ReadCaptures(std::tuple<Values...>& outRecord, Capture capture)
{
    [&]<std::size_t... kIndex>(std::index_sequence<kIndex...>)
    {
        (Read(capture(kIndex), std::get<kIndex>(outRecord)), ...);
    }
    (std::index_sequence_for<Values...>{});
}

// Take: copies what the engine captured and moves ioNext past it.
inline void Take(const NPattern::Parameter*& ioNext, double& outValue)
{
    outValue = ioNext++->mFloatValue;
}
inline void Take(const NPattern::Parameter*& ioNext, std::int32_t& outValue)
{
    outValue = ioNext++->mIntValue;
}
inline void Take(const NPattern::Parameter*& ioNext, Hex& outValue)
{
    Take(ioNext, outValue.mValue);
}
inline void Take(const NPattern::Parameter*& ioNext, std::string& outValue)
{
    outValue = ioNext++->mStringValue;
}
inline void Take(const NPattern::Parameter*& ioNext, PacketBits& outValue)
{
    for (std::int32_t* const field :
         {&outValue.mMode, &outValue.mChan, &outValue.mLevel, &outValue.mTemp, &outValue.mFlags}) {
        Take(ioNext, *field);
    }
}
inline void Take(const NPattern::Parameter*& ioNext, LittleWord& outValue)
{
    Take(ioNext, outValue.mValue);
}

using SensorRecord = std::tuple<double, std::int32_t, std::int32_t>;
using PositionRecord = std::tuple<std::string, double, std::string, double, std::string,
                                  std::int32_t, std::int32_t, double, double>;
using HexDataRecord = std::tuple<Hex, Hex, Hex, Hex>;
using CommandRecord = std::tuple<std::string, double, std::string>;
using PacketRecord = std::tuple<PacketBits, LittleWord>;
using HeadingRecord = std::tuple<double, Hex>;

}  // namespace NBench
