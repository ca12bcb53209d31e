// What the values of one field of many messages have in common.

#pragma once

#include <array>
#include <cstddef>
#include <string_view>
#include <vector>

namespace NSuggest {

// The values of a field, one for each message, in the order of the messages. They refer to the
// messages.
using Column = std::vector<std::string_view>;

// From narrow to wide.
enum class ValueKind {
    kFixed,     // the same text in all messages
    kInteger,   // decimal numbers without a point that fit 32 bits
    kFloat,     // decimal numbers with a point, or too large for an integer
    kExponent,  // decimal numbers, some with an exponent
    kHex,       // hexadecimal numbers
    kDigits,    // digits that are no number: too many, or with zeros in front
    kDate,
    kTime,
    kMonth,    // Jan, Feb
    kWeekday,  // Mon, Tue
    kDotted,   // 192.168.1.17
    kLetters,  // A to Z and a to z
    kVisible,  // visible ASCII
    kText,     // anything else
};

struct Values {
    ValueKind mKind = ValueKind::kFixed;
    std::size_t mShortest;           // in bytes
    std::size_t mLongest;            // in bytes
    std::array<bool, 256> mMembers;  // the bytes that occur
    std::string_view mSample;        // the first one
};

// What a field that is the same in all messages is.
enum class Sameness {
    kText,   // fixed text, unless it is of a date or a time
    kValue,  // a value, if it is a number: there is nothing to compare with
};

// column: not empty, and no value in it is.
Values ValuesOf(const Column& column, Sameness sameness);

// True if all values are the same text. column: not empty.
bool AreEqual(const Column& column);

// True if each value consists of hexadecimal digits.
bool AreHexDigits(const Column& column);

// True for kinds that take the same bytes whatever follows: numbers, dates and times.
bool IsTyped(ValueKind kind);

// True for dates, times and their parts.
bool IsOfClock(ValueKind kind);

}  // namespace NSuggest
