// Captured values.

#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "pattern_bytes.h"

namespace NPattern {

enum ParameterType : std::int32_t {
    kTypeString,    // mStringValue
    kTypeFloat,     // mFloatValue
    kTypeLInteger,  // mIntValue; the first of several raw bytes is the least significant
    kTypeBInteger,  // mIntValue; the first of several raw bytes is the most significant
    kTypeNone       // nothing is captured
};

// A type word of a declaration header, and the type that it names.
struct TypeWord {
    std::string_view mWord;
    ParameterType mType;
};

// In the order of search: any non-empty beginning of a word names its type.
inline constexpr TypeWord kTypeWords[] = {
    {"string", kTypeString},     {"float", kTypeFloat},       {"integer", kTypeLInteger},
    {"linteger", kTypeLInteger}, {"binteger", kTypeBInteger},
};

// Returns the type that a type word names, case ignored, or kTypeNone.
ParameterType FindType(std::string_view word);

// A captured value: a plain record, handed out by copy. Only the value field that belongs to mType
// is ever written.
struct Parameter {
    std::string mName;  // as written in the declaration header
    ParameterType mType = kTypeNone;
    std::int32_t mIntValue = 0;
    double mFloatValue = 0.0;
    std::string mStringValue;  // bytes, NUL among them

    // Stores a text, converted as strtol and atof do in the "C" locale.
    // length: in bytes; 0 means that the text ends at its NUL, which must then be there. A NUL
    // before the end of the length ends a number, but not a string.
    // hex: numbers have radix 16, for kTypeFloat too. Integers are clamped to 32 bits.
    void SetTextValue(const Byte* text, std::uint32_t length, bool hex);

    // Stores raw bytes: a string of exactly these, or an unsigned number in the byte order of mType
    // (little-endian for kTypeFloat). An integer takes the four least significant bytes.
    void SetBinaryValue(const Byte* data, std::uint32_t length);

    // Stores 32 bits that are already a number; a float or a string takes it as a signed one.
    void SetIntegerValue(std::uint32_t value)
    {
        if (IsInteger()) {
            mIntValue = static_cast<std::int32_t>(value);
        } else {
            StoreInteger(static_cast<std::int32_t>(value));
        }
    }

    // True if mIntValue is the value.
    bool IsInteger() const { return mType == kTypeLInteger || mType == kTypeBInteger; }

    // "name:FLOAT" and the like; empty for kTypeNone.
    std::string TypedName() const;

  private:
    void StoreNumber(std::string_view text, bool hex);
    void StoreInteger(std::int32_t value);
};

}  // namespace NPattern
