// The tokens of a parsing string.

#include <cctype>
#include <cstdlib>
#include <limits>

#include "reference.h"

namespace NReference {

namespace {

enum Mode { kCharacterSetMode, kByteSetMode, kNormalMode };

bool IsOneOf(unsigned char byte, std::string_view set)
{
    return set.find(static_cast<char>(byte)) != std::string_view::npos;
}

// Reads one token after another from a parsing string.
class Lexer {
  public:
    explicit Lexer(const std::string& parseString) : mString(parseString) {}

    Token Next(Mode mode)
    {
        switch (mode) {
            case kCharacterSetMode: return NextInCharacterSet();
            case kByteSetMode: return NextInByteSet();
            case kNormalMode: break;
        }
        return NextInNormalMode();
    }

  private:
    bool AtEnd() const { return mCursor == mString.size(); }

    // The byte under the cursor, 0 at the end.
    unsigned char Here() const
    {
        return AtEnd() ? static_cast<unsigned char>(0)
                       : static_cast<unsigned char>(mString[mCursor]);
    }

    unsigned char Take()
    {
        const unsigned char byte = Here();
        ++mCursor;
        return byte;
    }

    // The position is the cursor less two, wherever the cursor is.
    [[noreturn]] void Fail(const std::string& message) const
    {
        throw Error{message, static_cast<std::int32_t>(mCursor) - 2,
                    std::string(1, static_cast<char>(Here()))};
    }

    Token Start() const
    {
        Token token;
        token.mPosition = static_cast<std::int32_t>(mCursor);
        return token;
    }

    static void MakeSymbol(Token& token, unsigned char byte)
    {
        token.mType = kSymbol;
        token.mChar = byte;
        token.mText = std::string(1, static_cast<char>(byte));
    }

    Token NextInCharacterSet()
    {
        while (!AtEnd() && (Here() == '\r' || Here() == '\n')) ++mCursor;
        if (AtEnd()) Fail("End of input in character set");
        Token token = Start();
        if (Here() == '\\') {
            ++mCursor;
            if (AtEnd()) Fail("End of input in escape sequence");
            token.mEscaped = true;
        }
        MakeSymbol(token, Take());
        return token;
    }

    Token NextInByteSet()
    {
        while (!AtEnd() && (std::isspace(Here()) != 0 || Here() == ',')) ++mCursor;
        if (AtEnd()) Fail("End of input in character set");
        Token token = Start();
        const unsigned char byte = Take();
        if (IsOneOf(byte, "{}^-")) {
            MakeSymbol(token, byte);
            return token;
        }
        if (std::isxdigit(byte) == 0) FailAtCharacter(byte);
        token.mType = kHexByte;
        token.mText = std::string(1, static_cast<char>(byte));
        while (!AtEnd() && std::isxdigit(Here()) != 0) token.mText += static_cast<char>(Take());
        if (token.mText.size() != 2) Fail("Invalid byte value");
        token.mValue = static_cast<std::int32_t>(std::strtol(token.mText.c_str(), nullptr, 16));
        token.mChar = static_cast<unsigned char>(token.mValue);
        return token;
    }

    Token NextInNormalMode()
    {
        while (!AtEnd() && std::isspace(Here()) != 0) ++mCursor;
        if (AtEnd()) return Token();
        Token token = Start();
        const unsigned char byte = Take();
        if (byte == '"' || byte == '\'') {
            token.mType = byte == '"' ? kDoubleQuoted : kSingleQuoted;
            token.mText = QuotedText(byte);
        } else if (IsOneOf(byte, "[]{}()^-:=,#.?")) {
            MakeSymbol(token, byte);
        } else if (std::isdigit(byte) != 0) {
            MakeNumber(token, byte);
        } else if (std::isalpha(byte) != 0 || byte == '_') {
            token.mType = kIdentifier;
            token.mText = std::string(1, static_cast<char>(byte));
            while (!AtEnd() && (std::isalnum(Here()) != 0 || Here() == '_')) {
                token.mText += static_cast<char>(Take());
            }
        } else {
            FailAtCharacter(byte);
        }
        return token;
    }

    // A number too large for 32 bits has the largest value.
    void MakeNumber(Token& token, unsigned char first)
    {
        token.mType = kNumber;
        token.mText = std::string(1, static_cast<char>(first));
        while (!AtEnd() && std::isdigit(Here()) != 0) token.mText += static_cast<char>(Take());
        const long long value = std::strtoll(token.mText.c_str(), nullptr, 10);
        constexpr std::int32_t kLargest = std::numeric_limits<std::int32_t>::max();
        token.mValue = value > kLargest ? kLargest : static_cast<std::int32_t>(value);
    }

    std::string QuotedText(unsigned char quote)
    {
        std::string text;
        bool escape = false;
        while (!AtEnd()) {
            const unsigned char byte = Here();
            if (byte == quote && !escape) break;
            if (escape) {
                text += byte == 'n'   ? '\n'
                        : byte == 'r' ? '\r'
                        : byte == 't' ? '\t'
                                      : static_cast<char>(byte);
                escape = false;
            } else if (byte == '\\') {
                escape = true;
            } else if (byte == '?') {
                text += static_cast<char>(kWildcard);
            } else {
                text += static_cast<char>(byte);
            }
            ++mCursor;
        }
        if (AtEnd()) Fail(std::string("Unmatched ") + static_cast<char>(quote) + " quote");
        if (text.empty()) Fail("Quoted strings can't be empty");
        ++mCursor;
        return text;
    }

    [[noreturn]] void FailAtCharacter(unsigned char byte) const
    {
        Fail(std::string("Unexpected character '") + static_cast<char>(byte) + "'");
    }

    const std::string& mString;
    std::size_t mCursor = 0;
};

Mode ModeAfter(const Token& token, Mode mode)
{
    if (token.mType != kSymbol || token.mEscaped) return mode;
    if (token.mChar == '[') return kCharacterSetMode;
    if (token.mChar == '{') return kByteSetMode;
    if (token.mChar == ']' || token.mChar == '}') return kNormalMode;
    return mode;
}

}  // namespace

std::vector<Token> Tokenize(const std::string& parseString)
{
    std::vector<Token> tokens;
    Lexer lexer(parseString);
    Mode mode = kNormalMode;
    do {
        tokens.push_back(lexer.Next(mode));
        mode = ModeAfter(tokens.back(), mode);
    } while (tokens.back().mType != kEnd);
    return tokens;
}

std::string Error::FullMessage() const
{
    const std::string message = "Syntax error at character " + std::to_string(mPosition) + " (" +
                                UpToNul(mOffendingText) + "): " + UpToNul(mMessage) + ".";
    return message.substr(0, 2048);
}

}  // namespace NReference
