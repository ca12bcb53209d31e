#include "pattern_fault.h"

#include <algorithm>
#include <string_view>

#include "Common/Pattern/pattern_ltoken.h"
#include "syntax_hints.h"
#include "tools/output/text_forms.h"

namespace NSift {

using NPattern::Byte;
using NPattern::LexerMode;
using NPattern::LToken;

namespace {

bool IsSkipped(char c, LexerMode mode)
{
    switch (mode) {
        case NPattern::kCharacterSetMode: return c == '\r' || c == '\n';
        case NPattern::kByteSetMode: return c == ',' || NPattern::IsSpace(static_cast<Byte>(c));
        case NPattern::kNormalMode: break;
    }
    return NPattern::IsSpace(static_cast<Byte>(c));
}

// How far the parsing string can be cut into tokens.
struct Reading {
    std::vector<LToken> mTokens;
    LexerMode mMode = NPattern::kNormalMode;
    std::size_t mBracket = 0;  // the last one that opened a set
    std::size_t mStop = 0;  // start of the first token that can't be read; if it ends there, size
};

void FollowMode(const LToken& token, Reading& ioReading)
{
    if (token.mType != NPattern::kSymbol || token.mEscaped) return;
    switch (token.mChar) {
        case '[': ioReading.mMode = NPattern::kCharacterSetMode; break;
        case '{': ioReading.mMode = NPattern::kByteSetMode; break;
        case ']':
        case '}': ioReading.mMode = NPattern::kNormalMode; return;
        default: return;
    }
    ioReading.mBracket = static_cast<std::size_t>(token.mPosition);
}

Reading ReadTokens(const std::string& pattern)
{
    Reading reading;
    std::size_t cursor = 0;
    do {
        reading.mStop = cursor;
        while (reading.mStop < pattern.size() && IsSkipped(pattern[reading.mStop], reading.mMode)) {
            ++reading.mStop;
        }
        try {
            reading.mTokens.push_back(NPattern::NextToken(pattern, cursor, reading.mMode));
        } catch (const NPattern::PatternException&) {
            return reading;
        }
        FollowMode(reading.mTokens.back(), reading);
    } while (reading.mTokens.back().mType != NPattern::kEnd);
    return reading;
}

// From an opening bracket or quote that nothing closes the mark stands under that alone.
std::size_t LengthAt(const std::string& pattern, std::size_t start, LexerMode mode)
{
    if (mode != NPattern::kByteSetMode) {
        return std::max<std::size_t>(start < pattern.size() ? Utf8Length(pattern, start) : 0, 1);
    }
    std::size_t length = 0;
    while (start + length < pattern.size() &&
           NPattern::IsHexDigit(static_cast<Byte>(pattern[start + length]))) {
        ++length;
    }
    return std::max<std::size_t>(length, 1);
}

PatternFault LexerFault(const std::string& pattern, const Reading& reading,
                        const std::string& message)
{
    // Of a set that isn't closed nothing but the opening tells.
    const bool isOpenSet =
        reading.mStop == pattern.size() || message == "End of input in escape sequence";
    PatternFault fault{message, isOpenSet ? reading.mBracket : reading.mStop, 1, {}, {}};
    if (message == "Quoted strings can't be empty") {
        fault.mLength = 2;
    } else if (!isOpenSet) {
        fault.mLength = LengthAt(pattern, fault.mStart, reading.mMode);
    }
    fault.mHints = LexerHints(message, pattern.substr(fault.mStart), reading.mMode);
    return fault;
}

// What is shown of a long line, around the place of the fault.
std::string_view LineAround(std::string_view pattern, std::size_t place, std::size_t& outColumn)
{
    constexpr std::size_t kBefore = 70;
    constexpr std::size_t kMost = 100;
    const std::size_t lineStart = place == 0 ? 0 : pattern.rfind('\n', place - 1) + 1;  // npos + 1
    std::size_t start = std::max(lineStart, place > kBefore ? place - kBefore : 0);
    while (start < place && (pattern[start] & 0xC0) == 0x80) ++start;
    outColumn = place - start;
    const std::string_view rest = pattern.substr(start);
    return rest.substr(0, std::min(rest.find('\n', outColumn), kMost));
}

}  // namespace

PatternFault FindFault(const std::string& pattern, const NStandIn::Validation& error)
{
    const Reading reading = ReadTokens(pattern);
    if (reading.mTokens.empty() || reading.mTokens.back().mType != NPattern::kEnd) {
        return LexerFault(pattern, reading, error.mMessage);
    }
    const auto at =
        std::find_if(reading.mTokens.begin(), reading.mTokens.end(),
                     [&error](const LToken& token) { return token.mPosition == error.mStart; });
    if (at == reading.mTokens.end()) return {error.mMessage, pattern.size(), 0, {}, {}};

    const auto cursor = static_cast<NPattern::TokenCursor>(at - reading.mTokens.begin());
    return {error.mMessage, static_cast<std::size_t>(error.mStart),
            static_cast<std::size_t>(std::max(error.mEnd - error.mStart, 1)),
            SyntaxHints(reading.mTokens, cursor), SyntaxNeeds(reading.mTokens, cursor)};
}

void PrintFault(std::ostream& stream, const std::string& pattern, const PatternFault& fault,
                const Palette& palette)
{
    std::size_t column = 0;
    const std::string_view line = LineAround(pattern, fault.mStart, column);
    const std::string before = Escaped(line.substr(0, column));
    const std::string marked = Escaped(line.substr(column, fault.mLength));
    const std::string carets(std::max<std::size_t>(ColumnsOf(marked), 1), '^');
    stream << palette.Paint(Role::kFault, Escaped(fault.mMessage)) << "\n  " << Escaped(line)
           << "\n  " << std::string(ColumnsOf(before), ' ') << palette.Paint(Role::kMark, carets)
           << "\nat byte " << fault.mStart << " of the parsing string\n";
    for (const std::string& hint : fault.mHints) stream << "hint: " << hint << '\n';
    if (fault.mNeeds.empty()) return;
    stream << "no piece can start there; each kind would have needed:\n";
    for (const std::string& need : fault.mNeeds) stream << "  " << need << '\n';
}

}  // namespace NSift
