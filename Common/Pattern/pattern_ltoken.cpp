#include "pattern_ltoken.h"

#include <algorithm>
#include <limits>
#include <string_view>

namespace NPattern {

namespace {

constexpr char kSourceFile[] = "pattern_ltoken.cpp";

constexpr std::string_view kNormalSymbols = "[]{}()^-:=,#.?";
constexpr std::string_view kByteSetSymbols = "{}^-";

// The host sees the place of a lexical error, and whoever draws a mark counts on it: two bytes
// before the cursor, and so one byte before a byte that was just rejected.
constexpr std::int32_t kLexerPositionOffset = -2;

template <typename... Arguments>
[[noreturn]] void ThrowAt(int line, PatternErrorCode code, const std::string& parseString,
                          std::size_t cursor, const char* format, Arguments... arguments)
{
    throw WithCode(code, PatternSyntaxException(kSourceFile, line, parseString, cursor,
                                                kLexerPositionOffset, format, arguments...));
}

bool AtEnd(const std::string& parseString, std::size_t cursor)
{
    return cursor >= parseString.size();
}

// The byte under the cursor, 0 at the end of the string.
Byte ByteAt(const std::string& parseString, std::size_t cursor)
{
    return static_cast<Byte>(parseString[cursor]);
}

bool IsOneOf(Byte b, std::string_view symbols)
{
    return symbols.find(static_cast<char>(b)) != std::string_view::npos;
}

// predicate: false for NUL, and so at the end of the string.
template <typename Predicate>
void SkipWhile(const std::string& parseString, std::size_t& ioCursor, Predicate predicate)
{
    while (predicate(ByteAt(parseString, ioCursor))) ++ioCursor;
}

// Moves the cursor past the longest run that fits, and returns the text from start on.
template <typename Predicate>
std::string TakeWhile(const std::string& parseString, std::size_t start, std::size_t& ioCursor,
                      Predicate predicate)
{
    SkipWhile(parseString, ioCursor, predicate);
    return parseString.substr(start, ioCursor - start);
}

void SkipBeforeToken(const std::string& parseString, std::size_t& ioCursor, LexerMode mode)
{
    SkipWhile(parseString, ioCursor, [mode](Byte b) { return IsSkipped(b, mode); });
}

void SetSymbol(LToken& outToken, Byte symbol)
{
    outToken.mType = kSymbol;
    outToken.mText.assign(1, static_cast<char>(symbol));
    outToken.mChar = symbol;
}

// The decimal value, or 2147483647 if that is less.
std::int32_t DecimalValue(const std::string& digits)
{
    constexpr std::int64_t kLargest = std::numeric_limits<std::int32_t>::max();
    std::int64_t value = 0;
    for (const char digit : digits) value = std::min(value * 10 + (digit - '0'), kLargest);
    return static_cast<std::int32_t>(value);
}

void DemandMoreOfSet(const std::string& parseString, std::size_t cursor)
{
    if (AtEnd(parseString, cursor)) {
        ThrowAt(__LINE__, kErrorUnclosedSet, parseString, cursor, "End of input in character set");
    }
}

LToken NextCharacterSetToken(const std::string& parseString, std::size_t& ioCursor)
{
    SkipBeforeToken(parseString, ioCursor, kCharacterSetMode);
    DemandMoreOfSet(parseString, ioCursor);
    LToken token;
    token.mPosition = static_cast<std::int32_t>(ioCursor);
    if (ByteAt(parseString, ioCursor) == '\\') {
        ++ioCursor;
        if (AtEnd(parseString, ioCursor)) {
            ThrowAt(__LINE__, kErrorUnfinishedEscape, parseString, ioCursor,
                    "End of input in escape sequence");
        }
        token.mEscaped = true;
    }
    SetSymbol(token, ByteAt(parseString, ioCursor));
    ++ioCursor;
    return token;
}

LToken NextByteSetToken(const std::string& parseString, std::size_t& ioCursor)
{
    SkipBeforeToken(parseString, ioCursor, kByteSetMode);
    DemandMoreOfSet(parseString, ioCursor);
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
        ThrowAt(__LINE__, kErrorUnexpectedCharacter, parseString, ioCursor,
                "Unexpected character '%c'", first);
    }
    token.mType = kHexByte;
    token.mText = TakeWhile(parseString, start, ioCursor, IsHexDigit);
    if (token.mText.size() != 2) {
        ThrowAt(__LINE__, kErrorInvalidByteValue, parseString, ioCursor, "Invalid byte value");
    }
    token.mChar = static_cast<Byte>(HexDigitValue(first) * 16 +
                                    HexDigitValue(ByteAt(parseString, start + 1)));
    token.mValue = token.mChar;
    return token;
}

// Reads up to and over the closing quote. The cursor is just past the opening one.
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
        ThrowAt(__LINE__, kErrorUnmatchedQuote, parseString, ioCursor, "Unmatched %c quote", quote);
    }
    if (text.empty()) {
        ThrowAt(__LINE__, kErrorEmptyQuotes, parseString, ioCursor,
                "Quoted strings can't be empty");
    }
    ++ioCursor;
    return text;
}

LToken NextNormalToken(const std::string& parseString, std::size_t& ioCursor)
{
    LToken token;
    SkipBeforeToken(parseString, ioCursor, kNormalMode);
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
        ThrowAt(__LINE__, kErrorUnexpectedCharacter, parseString, ioCursor,
                "Unexpected character '%c'", first);
    }
    return token;
}

}  // namespace

void Tokenize(std::vector<LToken>& outTokens, const std::string& parseString)
{
    outTokens.clear();
    outTokens.reserve(parseString.size() / 4 + 1);  // about as many as most strings have
    std::size_t cursor = 0;
    LexerMode mode = kNormalMode;
    do {
        outTokens.push_back(NextToken(parseString, cursor, mode));
        mode = ModeAfter(outTokens.back(), mode);
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

// Brackets are not paired: an unescaped one changes the mode whatever it was.
LexerMode ModeAfter(const LToken& token, LexerMode mode)
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

bool IsSkipped(Byte b, LexerMode mode)
{
    switch (mode) {
        case kCharacterSetMode: return b == '\r' || b == '\n';
        case kByteSetMode: return IsSpace(b) || b == ',';
        case kNormalMode: break;
    }
    return IsSpace(b);
}

Byte TranslateEscape(Byte b)
{
    switch (b) {
        case 'n': return '\n';
        case 'r': return '\r';
        case 't': return '\t';
        default: return b;
    }
}

}  // namespace NPattern
