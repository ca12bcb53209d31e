// A second implementation of the language of parsing strings, to hold the engine against. It is
// written from the rules of the language alone, as literally as they are worded, and shares no code
// and no table with the engine. Simple comes before fast. Numbers are converted by the C library,
// so the locale must be "C".

#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace NReference {

// Returns the text up to its first NUL, which is where printf and the numbers of C end it.
std::string UpToNul(const std::string& text);

// What ends a compile: a lexical error, or a token at which no element can start. It is thrown.
struct Error {
    std::string mMessage;
    std::int32_t mPosition;  // byte offset in the parsing string, or -1
    std::string mOffendingText;

    // The message with its place, as it is shown to a person.
    std::string FullMessage() const;
};

enum TokenType { kDoubleQuoted, kSingleQuoted, kNumber, kHexByte, kIdentifier, kSymbol, kEnd };

struct Token {
    TokenType mType = kEnd;
    std::string mText;            // of a quoted string: with escapes resolved
    unsigned char mChar = 0;      // of a symbol or a hexadecimal byte
    std::int32_t mValue = 0;      // of a number or a hexadecimal byte
    bool mEscaped = false;        // of a symbol in a character set: it is after a backslash
    std::int32_t mPosition = -1;  // offset of the first byte; unset for kEnd
};

// Stands for any byte but NUL in the text of a quoted token.
constexpr unsigned char kWildcard = 7;

// Returns the tokens of a parsing string; the last is kEnd. Throws Error.
std::vector<Token> Tokenize(const std::string& parseString);

enum ValueType { kString, kFloat, kLInteger, kBInteger, kNone };

// A named value. Only the field of its type is ever written.
struct Value {
    std::string mName;
    ValueType mType = kNone;
    std::int32_t mInteger = 0;
    double mFloat = 0.0;
    std::string mString;

    // Each stores what was matched: a text, whose numbers end at a NUL, or bytes.
    void SetText(const std::string& text, bool hex);
    void SetBytes(std::string_view bytes);

    // Name and type in a dump; empty for kNone.
    std::string TypedName() const;
};

// The elements. mValue is what each captures, of kNone without a declaration.

struct Text {
    Value mValue;
    std::string mText;  // each byte 7 is a wildcard
    bool mCaseSensitive;
};

struct Number {
    Value mValue;
    std::int32_t mIntegerDigits = 0;   // the most digits before the point; 0: no limit
    std::int32_t mFractionDigits = 0;  // the most digits after the point; 0: no limit
    bool mDecimalPoint = false;
    bool mHex = false;
};

struct Byteset {
    Value mValue;
    std::array<bool, 256> mMembers = {};
    std::int32_t mLength = 0;  // 0: a run of any length
    bool mBinary = false;      // the run is stored as bytes, not as text
};

struct BitRange {
    Value mValue;
    std::int32_t mStartBit;
    std::int32_t mEndBit;  // included
};

struct Bitfield {
    std::vector<BitRange> mRanges;
    bool mBigEndian = true;
    std::int32_t mByteCount = 0;
};

struct Line {
    Value mValue;
};

struct Space {};

using Element = std::variant<Text, Number, Byteset, Bitfield, Line, Space>;
using Elements = std::vector<Element>;

// Returns the elements of a parsing string in the order of matching. Throws Error.
Elements Compile(const std::string& parseString);

// True if no white space is skipped next to the element.
bool IsBinary(const Element& element);

// Returns the diagnostic lines of the elements.
std::string Dump(const Elements& elements);

// Returns the captured values in the order of the parsing string.
std::vector<Value> Captures(const Elements& elements);

// Returns how many bytes of a message the elements take, or nothing if they don't match. After a
// match, the elements hold the captured values; otherwise some of them may.
std::optional<std::size_t> Match(Elements& elements, std::string_view message);

}  // namespace NReference
