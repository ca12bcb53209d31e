#include "pattern_ltoken.h"

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <limits>

namespace NPattern {

namespace {

constexpr char kSourceFile[] = "pattern_ltoken.cpp";

constexpr std::size_t kMessageLimit = 2048;

constexpr std::string_view kNormalSymbols = "[]{}()^-:=,#.?";
constexpr std::string_view kByteSetSymbols = "{}^-";

// The place of a lexical error is part of what the host sees: two bytes before the cursor, and so
// one before a byte that was just rejected. Whoever draws a mark counts on that.
constexpr std::int32_t kLexerPositionOffset = -2;

// What printf would write, NUL bytes included, cut at kMessageLimit. Kept in a buffer of its own
// until va_end has run: making the string can throw.
class FormattedMessage {
  public:
    FormattedMessage(const char* format, std::va_list arguments) noexcept
    {
        const int length = std::vsnprintf(mBuffer, sizeof mBuffer,
                                          format != nullptr ? format : "Unknown error", arguments);
        // Negative for a text that is longer than an int tells.
        mLength = std::min(static_cast<std::size_t>(std::max(length, 0)), kMessageLimit);
    }
    std::string_view Text() const { return {mBuffer, mLength}; }

  private:
    char mBuffer[kMessageLimit + 1];
    std::size_t mLength;
};

bool AtEnd(const std::string& parseString, std::size_t cursor)
{
    return cursor >= parseString.size();
}

// The byte under the cursor, 0 at the end of the string.
Byte ByteAt(const std::string& parseString, std::size_t cursor)
{
    return AtEnd(parseString, cursor) ? Byte{0} : static_cast<Byte>(parseString[cursor]);
}

bool IsOneOf(Byte b, std::string_view symbols)
{
    return symbols.find(static_cast<char>(b)) != std::string_view::npos;
}

template <typename Predicate>
void SkipWhile(const std::string& parseString, std::size_t& ioCursor, Predicate predicate)
{
    while (!AtEnd(parseString, ioCursor) && predicate(ByteAt(parseString, ioCursor))) ++ioCursor;
}

// Moves the cursor behind the longest run that fits, and gives the text from start on.
template <typename Predicate>
std::string TakeWhile(const std::string& parseString, std::size_t start, std::size_t& ioCursor,
                      Predicate predicate)
{
    SkipWhile(parseString, ioCursor, predicate);
    return parseString.substr(start, ioCursor - start);
}

void SetSymbol(LToken& outToken, Byte symbol)
{
    outToken.mType = kSymbol;
    outToken.mText.assign(1, static_cast<char>(symbol));
    outToken.mChar = symbol;
}

// The decimal value, 2147483647 where the digits leave 32 bits.
std::int32_t DecimalValue(const std::string& digits)
{
    constexpr std::int64_t kLargest = std::numeric_limits<std::int32_t>::max();
    std::int64_t value = 0;
    for (const char digit : digits) value = std::min(value * 10 + (digit - '0'), kLargest);
    return static_cast<std::int32_t>(value);
}

LToken NextCharacterSetToken(const std::string& parseString, std::size_t& ioCursor)
{
    SkipWhile(parseString, ioCursor, [](Byte b) { return b == '\r' || b == '\n'; });
    if (AtEnd(parseString, ioCursor)) {
        throw PatternSyntaxException(kSourceFile, __LINE__, parseString, ioCursor,
                                     kLexerPositionOffset, "End of input in character set");
    }
    LToken token;
    token.mPosition = static_cast<std::int32_t>(ioCursor);
    if (ByteAt(parseString, ioCursor) == '\\') {
        ++ioCursor;
        if (AtEnd(parseString, ioCursor)) {
            throw PatternSyntaxException(kSourceFile, __LINE__, parseString, ioCursor,
                                         kLexerPositionOffset, "End of input in escape sequence");
        }
        token.mEscaped = true;
    }
    SetSymbol(token, ByteAt(parseString, ioCursor));
    ++ioCursor;
    return token;
}

LToken NextByteSetToken(const std::string& parseString, std::size_t& ioCursor)
{
    SkipWhile(parseString, ioCursor, [](Byte b) { return IsSpace(b) || b == ','; });
    if (AtEnd(parseString, ioCursor)) {
        throw PatternSyntaxException(kSourceFile, __LINE__, parseString, ioCursor,
                                     kLexerPositionOffset, "End of input in character set");
    }
    LToken token;
    const std::size_t start = ioCursor;
    token.mPosition = static_cast<std::int32_t>(start);
    const Byte first = ByteAt(parseString, ioCursor);
    ++ioCursor;
    if (IsOneOf(first, kByteSetSymbols)) {
        SetSymbol(token, first);
        return token;
    }
    if (!IsHexDigit(first)) {
        throw PatternSyntaxException(kSourceFile, __LINE__, parseString, ioCursor,
                                     kLexerPositionOffset, "Unexpected character '%c'", first);
    }
    token.mType = kHexByte;
    token.mText = TakeWhile(parseString, start, ioCursor, IsHexDigit);
    if (token.mText.size() != 2) {
        throw PatternSyntaxException(kSourceFile, __LINE__, parseString, ioCursor,
                                     kLexerPositionOffset, "Invalid byte value");
    }
    token.mChar = static_cast<Byte>(HexDigitValue(first) * 16 +
                                    HexDigitValue(ByteAt(parseString, start + 1)));
    token.mValue = token.mChar;
    return token;
}

// Reads up to and over the closing quote; the cursor stands behind the opening one.
std::string TakeQuotedText(const std::string& parseString, std::size_t& ioCursor, Byte quote)
{
    std::string text;
    bool escaped = false;
    for (; !AtEnd(parseString, ioCursor); ++ioCursor) {
        const Byte b = ByteAt(parseString, ioCursor);
        if (escaped) {
            text.push_back(static_cast<char>(TranslateEscape(b)));
            escaped = false;
        } else if (b == quote) {
            break;
        } else if (b == '\\') {
            escaped = true;
        } else {
            text.push_back(static_cast<char>(b == '?' ? kWildcardByte : b));
        }
    }
    if (AtEnd(parseString, ioCursor)) {
        throw PatternSyntaxException(kSourceFile, __LINE__, parseString, ioCursor,
                                     kLexerPositionOffset, "Unmatched %c quote", quote);
    }
    if (text.empty()) {
        throw PatternSyntaxException(kSourceFile, __LINE__, parseString, ioCursor,
                                     kLexerPositionOffset, "Quoted strings can't be empty");
    }
    ++ioCursor;
    return text;
}

LToken NextNormalToken(const std::string& parseString, std::size_t& ioCursor)
{
    LToken token;
    SkipWhile(parseString, ioCursor, IsSpace);
    if (AtEnd(parseString, ioCursor)) return token;

    const std::size_t start = ioCursor;
    token.mPosition = static_cast<std::int32_t>(start);
    const Byte first = ByteAt(parseString, ioCursor);
    ++ioCursor;
    if (first == '"' || first == '\'') {
        token.mType = first == '"' ? kDoubleQuoted : kSingleQuoted;
        token.mText = TakeQuotedText(parseString, ioCursor, first);
    } else if (IsOneOf(first, kNormalSymbols)) {
        SetSymbol(token, first);
    } else if (IsDigit(first)) {
        token.mType = kNumber;
        token.mText = TakeWhile(parseString, start, ioCursor, IsDigit);
        token.mValue = DecimalValue(token.mText);
    } else if (IsAlpha(first) || first == '_') {
        token.mType = kIdentifier;
        token.mText =
            TakeWhile(parseString, start, ioCursor, [](Byte b) { return IsAlnum(b) || b == '_'; });
    } else {
        throw PatternSyntaxException(kSourceFile, __LINE__, parseString, ioCursor,
                                     kLexerPositionOffset, "Unexpected character '%c'", first);
    }
    return token;
}

// Brackets aren't paired: an unescaped one switches whatever mode is in force.
LexerMode ModeBehind(const LToken& token, LexerMode mode)
{
    if (token.mType != kSymbol || token.mEscaped) return mode;
    switch (token.mChar) {
        case '[': return kCharacterSetMode;
        case '{': return kByteSetMode;
        case ']':
        case '}': return kNormalMode;
        default: return mode;
    }
}

}  // namespace

bool EqualsIgnoringCase(std::string_view a, std::string_view b)
{
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](char x, char y) {
        return ToLower(static_cast<Byte>(x)) == ToLower(static_cast<Byte>(y));
    });
}

void Tokenize(std::vector<LToken>& outTokens, const std::string& parseString)
{
    outTokens.clear();
    std::size_t cursor = 0;
    LexerMode mode = kNormalMode;
    do {
        outTokens.push_back(NextToken(parseString, cursor, mode));
        mode = ModeBehind(outTokens.back(), mode);
    } while (outTokens.back().mType != kEnd);
}

LToken NextToken(const std::string& parseString, std::size_t& ioCursor, LexerMode mode)
{
    switch (mode) {
        case kCharacterSetMode: return NextCharacterSetToken(parseString, ioCursor);
        case kByteSetMode: return NextByteSetToken(parseString, ioCursor);
        case kNormalMode: break;
    }
    return NextNormalToken(parseString, ioCursor);
}

PatternException::PatternException(const char* file, int line)
    : mFile(file != nullptr ? file : "<unknown>"), mLine(line)
{
}

PatternException::PatternException(const char* file, int line, const char* format, ...)
    : PatternException(file, line)
{
    std::va_list arguments;
    va_start(arguments, format);
    const FormattedMessage message(format, arguments);
    va_end(arguments);
    mMessage = message.Text();
}

PatternException::~PatternException() = default;

std::string PatternException::Message() const
{
    return mMessage;
}

PatternSyntaxException::PatternSyntaxException(const char* file, int line,
                                               const std::string& parseString, std::size_t cursor,
                                               std::int32_t positionOffset, const char* format, ...)
    : PatternException(file, line),
      mPosition(static_cast<std::int32_t>(static_cast<std::uint32_t>(cursor) +
                                          static_cast<std::uint32_t>(positionOffset))),
      mOffendingText(1, static_cast<char>(ByteAt(parseString, cursor)))
{
    std::va_list arguments;
    va_start(arguments, format);
    const FormattedMessage message(format, arguments);
    va_end(arguments);
    mMessage = message.Text();
}

PatternSyntaxException::PatternSyntaxException(const char* file, int line, std::int32_t position,
                                               const std::string& offendingText, const char* format,
                                               ...)
    : PatternException(file, line), mPosition(position), mOffendingText(offendingText)
{
    std::va_list arguments;
    va_start(arguments, format);
    const FormattedMessage message(format, arguments);
    va_end(arguments);
    mMessage = message.Text();
}

std::string PatternSyntaxException::Message() const
{
    return PatternException(nullptr, 0, "Syntax error at character %i (%s): %s.", mPosition,
                            mOffendingText.c_str(), mMessage.c_str())
        .mMessage;
}

}  // namespace NPattern
