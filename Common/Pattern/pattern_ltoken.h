// Tokens and the lexer: the first step from a parsing string to elements.

#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "pattern_bytes.h"
#include "pattern_error.h"

namespace NPattern {

// Stands for any one byte but NUL in the text of a quoted token; the lexer writes it for a '?'.
inline constexpr Byte kWildcardByte = 7;

enum LTokenType : std::int32_t {
    kDoubleQuoted,  // mText: the content, escapes resolved, each '?' as kWildcardByte
    kSingleQuoted,  // as kDoubleQuoted
    kNumber,        // mText: the decimal digits; mValue
    kHexByte,       // mText: the two hexadecimal digits; mValue, mChar
    kIdentifier,    // mText: the word
    kSymbol,        // mText: the one byte; mChar, mEscaped
    kEnd            // the last token of every vector; mText is empty
};

struct LToken {
    LTokenType mType = kEnd;
    std::string mText;           // as each LTokenType says
    Byte mChar = 0;              // kSymbol: the byte; kHexByte: the value; else 0
    std::int32_t mValue = 0;     // kNumber: 0 to 2147483647; kHexByte: 0 to 255; else 0
    bool mEscaped = false;       // a kSymbol after a backslash
    std::int32_t mPosition = 0;  // offset of the token's first byte; has no meaning on kEnd
};

enum LexerMode : std::int32_t {
    kCharacterSetMode,  // after '[': every byte is a symbol
    kByteSetMode,       // after '{': hexadecimal byte values
    kNormalMode         // at the start, and after ']' and '}'
};

// Splits the whole of parseString into outTokens, the last of them kEnd.
// Throws PatternSyntaxException at the first byte that no token can hold; outTokens then has the
// tokens before it.
void Tokenize(std::vector<LToken>& outTokens, const std::string& parseString);

// Returns the token at ioCursor, an offset into parseString from 0 to its size, and moves the
// cursor past it. At the end of the string it returns kEnd in kNormalMode.
// Throws PatternSyntaxException, with the cursor where the error was found.
LToken NextToken(const std::string& parseString, std::size_t& ioCursor, LexerMode mode);

// Returns the mode for what follows token, which was read in mode.
LexerMode ModeAfter(const LToken& token, LexerMode mode);

// True for a byte that the lexer skips before a token.
bool IsSkipped(Byte b, LexerMode mode);

// Returns the byte that a backslash before b stands for: n, r and t stand for the control bytes,
// any other byte for itself.
Byte TranslateEscape(Byte b);

}  // namespace NPattern
