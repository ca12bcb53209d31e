// The lower half of the engine: bytes, tokens and errors. A parsing string becomes a row of
// LToken here, before any element is built from it.

#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace NPattern {

using Byte = unsigned char;

// Stands in the text of a quoted token for any one byte but NUL; the lexer writes it for a '?'.
inline constexpr Byte kWildcardByte = 7;

// Byte classes and case folding. Plain ASCII, so that a locale set by the host changes nothing:
// no byte above 127 is in a class or changes case.
constexpr bool IsSpace(Byte b)
{
    // A bit for the blank and each of the five from tab on. The comparison tells most other bytes.
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
constexpr Byte ToLower(Byte b)
{
    return b >= 'A' && b <= 'Z' ? static_cast<Byte>(b + 32) : b;
}

// The value of a hexadecimal digit, 0 to 15; 16 for a byte that is none. By table: numbers are
// converted with it, digit by digit.
constexpr std::array<Byte, 256> MakeHexDigitValues()
{
    std::array<Byte, 256> values{};
    for (std::size_t b = 0; b < values.size(); ++b) {
        const Byte lower = ToLower(static_cast<Byte>(b));
        const bool isLetter = lower >= 'a' && lower <= 'f';
        values[b] = static_cast<Byte>(IsDigit(lower) ? lower - '0'
                                      : isLetter     ? lower - 'a' + 10
                                                     : 16);
    }
    return values;
}
inline constexpr std::array<Byte, 256> kHexDigitValues = MakeHexDigitValues();
constexpr unsigned HexDigitValue(Byte b)
{
    return kHexDigitValues[b];
}
constexpr bool IsHexDigit(Byte b)
{
    return HexDigitValue(b) < 16;
}

// What the byte behind a backslash stands for: n, r and t for the control bytes, any other for
// itself.
constexpr Byte TranslateEscape(Byte b)
{
    switch (b) {
        case 'n': return '\n';
        case 'r': return '\r';
        case 't': return '\t';
        default: return b;
    }
}

bool EqualsIgnoringCase(std::string_view a, std::string_view b);

enum LTokenType : std::int32_t {
    kDoubleQuoted,  // mText: the content, escapes resolved, each '?' as kWildcardByte
    kSingleQuoted,  // as kDoubleQuoted
    kNumber,        // mText: the decimal digits; mValue
    kHexByte,       // mText: the two hexadecimal digits; mValue, mChar
    kIdentifier,    // mText: the word
    kSymbol,        // mText: the one byte; mChar, mEscaped
    kEnd            // closes every token vector; mText is empty
};

struct LToken {
    LTokenType mType = kEnd;
    std::string mText;           // as told at each LTokenType
    Byte mChar = 0;              // kSymbol: the byte; kHexByte: the value; else 0
    std::int32_t mValue = 0;     // kNumber: 0 to 2147483647; kHexByte: 0 to 255; else 0
    bool mEscaped = false;       // a kSymbol that stood behind a backslash
    std::int32_t mPosition = 0;  // offset of the token's first byte; means nothing on kEnd
};

enum LexerMode : std::int32_t {
    kCharacterSetMode,  // behind '[': every byte is a symbol
    kByteSetMode,       // behind '{': hexadecimal byte values
    kNormalMode         // at the start, and behind ']' and '}'
};

// Splits the whole of parseString into outTokens, the last of them kEnd.
// Throws PatternSyntaxException at the first byte that no token can hold; outTokens then has the
// tokens before it.
void Tokenize(std::vector<LToken>& outTokens, const std::string& parseString);

// Gives the token at ioCursor, an offset into parseString from 0 to its size, and moves the cursor
// behind it. At the end of the string it gives kEnd in kNormalMode.
// Throws PatternSyntaxException, with the cursor where the error was seen.
LToken NextToken(const std::string& parseString, std::size_t& ioCursor, LexerMode mode);

// An error of the engine. It has no standard exception as its base, so a handler for those alone
// misses it. Thrown by value, caught by reference.
class PatternException {
  public:
    // file: bare name of the source file of the throw; null gives "<unknown>".
    // format: as for printf; null gives "Unknown error". The text is cut at 2048 bytes.
    PatternException(const char* file, int line, const char* format, ...);
    PatternException(const PatternException&) = default;
    PatternException& operator=(const PatternException&) = default;
    virtual ~PatternException();

    // What to show a person.
    virtual std::string Message() const;

    std::string mMessage;  // the formatted text, without any position
    std::string mFile;
    std::int32_t mLine;

  protected:
    PatternException(const char* file, int line);
};

// An error with a place in the parsing string.
class PatternSyntaxException : public PatternException {
  public:
    // An error at a cursor: the place is cursor + positionOffset, in 32 bits, and the offending
    // text the one byte under the cursor, NUL at the end of the string.
    PatternSyntaxException(const char* file, int line, const std::string& parseString,
                           std::size_t cursor, std::int32_t positionOffset, const char* format,
                           ...);

    // An error at a token: place and text as given.
    PatternSyntaxException(const char* file, int line, std::int32_t position,
                           const std::string& offendingText, const char* format, ...);

    // "Syntax error at character 3 (!): ...", cut at 2048 bytes.
    std::string Message() const override;

    std::int32_t mPosition;  // byte offset in the parsing string, or -1
    std::string mOffendingText;
};

}  // namespace NPattern
