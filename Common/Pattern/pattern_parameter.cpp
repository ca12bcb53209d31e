#include "pattern_parameter.h"

#include <algorithm>
#include <cstring>
#include <iterator>

#include "pattern_numbers.h"

namespace NPattern {

namespace {

// Indexed by ParameterType.
constexpr const char* kTypeSuffixes[] = {":STRING", ":FLOAT", ":LINTEGER", ":BINTEGER"};

// At most four bytes, the least significant first.
std::int32_t LittleEndian(const Byte* data, std::uint32_t length)
{
    std::uint32_t value = 0;
    for (std::uint32_t i = length; i > 0; --i) value = value << 8 | data[i - 1];
    return static_cast<std::int32_t>(value);
}

// At most four bytes, the most significant first.
std::int32_t BigEndian(const Byte* data, std::uint32_t length)
{
    std::uint32_t value = 0;
    for (std::uint32_t i = 0; i < length; ++i) value = value << 8 | data[i];
    return static_cast<std::int32_t>(value);
}

// Any number of bytes, the least significant first.
double LittleEndianFloat(const Byte* data, std::uint32_t length)
{
    double value = 0.0;
    for (std::uint32_t i = length; i > 0; --i) value = value * 256.0 + data[i - 1];
    return value;
}

}  // namespace

ParameterType FindType(std::string_view word)
{
    const auto* const row =
        std::find_if(std::begin(kTypeWords), std::end(kTypeWords), [word](const TypeWord& r) {
            return EqualsIgnoringCase(r.mWord.substr(0, word.size()), word);
        });
    return row != std::end(kTypeWords) && !word.empty() ? row->mType : kTypeNone;
}

void Parameter::SetTextValue(const Byte* text, std::uint32_t length, bool hex)
{
    if (mType == kTypeNone) return;
    const char* const characters = reinterpret_cast<const char*>(text);
    const std::size_t size = length != 0 ? length : std::strlen(characters);
    if (mType == kTypeString) {
        mStringValue.assign(characters, size);
    } else {
        StoreNumber({characters, size}, hex);
    }
}

void Parameter::SetBinaryValue(const Byte* data, std::uint32_t length)
{
    const std::uint32_t significant = std::min(length, std::uint32_t{4});
    switch (mType) {
        case kTypeString: mStringValue.assign(reinterpret_cast<const char*>(data), length); break;
        case kTypeFloat: mFloatValue = LittleEndianFloat(data, length); break;
        case kTypeLInteger: mIntValue = LittleEndian(data, significant); break;
        case kTypeBInteger:
            mIntValue = BigEndian(data + (length - significant), significant);
            break;
        case kTypeNone: break;
    }
}

void Parameter::StoreNumber(std::string_view text, bool hex)
{
    if (IsInteger()) {
        mIntValue = IntegerOf(text, hex ? 16 : 10);
    } else {
        mFloatValue = hex ? IntegerOf(text, 16) : FloatOf(text);
    }
}

void Parameter::StoreInteger(std::int32_t value)
{
    if (mType == kTypeString) {
        mStringValue = std::to_string(value);
    } else if (mType == kTypeFloat) {
        mFloatValue = value;
    }
}

std::string Parameter::TypedName() const
{
    return mType == kTypeNone ? std::string() : mName + kTypeSuffixes[mType];
}

}  // namespace NPattern
