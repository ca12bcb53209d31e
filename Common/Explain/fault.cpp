#include "fault.h"

#include <algorithm>

#include "Common/Pattern/pattern_element.h"
#include "byte_text.h"
#include "lexer_hints.h"
#include "syntax_hints.h"

namespace NExplain {

using NPattern::Byte;
using NPattern::LexerMode;
using NPattern::LToken;
using NPattern::PatternSyntaxException;

namespace {

// Where the lexer stops. The place that it reports itself is two bytes before its cursor.
struct LexerStop {
    LexerMode mMode = NPattern::kNormalMode;
    std::size_t mStart = 0;  // of the token that cannot be read; the size of the string at its end
    std::size_t mBracket = 0;  // the last one that opened or closed a set
};

// parseString: one that the lexer can't read.
LexerStop FindLexerStop(const std::string& parseString)
{
    LexerStop stop;
    std::size_t cursor = 0;
    for (;;) {
        stop.mStart = cursor;
        // The NUL after the last character isn't skipped.
        while (NPattern::IsSkipped(static_cast<Byte>(parseString[stop.mStart]), stop.mMode)) {
            ++stop.mStart;
        }
        LToken token;
        try {
            token = NPattern::NextToken(parseString, cursor, stop.mMode);
        } catch (const PatternSyntaxException&) {
            return stop;
        }
        const LexerMode next = NPattern::ModeAfter(token, stop.mMode);
        if (next != stop.mMode) stop.mBracket = static_cast<std::size_t>(token.mPosition);
        stop.mMode = next;
    }
}

std::size_t LengthOfHexDigits(const std::string& text, std::size_t start)
{
    const auto begin = text.begin() + static_cast<std::ptrdiff_t>(start);
    const auto end = std::find_if_not(
        begin, text.end(), [](char c) { return NPattern::IsHexDigit(static_cast<Byte>(c)); });
    return static_cast<std::size_t>(end - begin);
}

Fault LexerFault(const std::string& parseString, const PatternSyntaxException& error)
{
    const LexerStop stop = FindLexerStop(parseString);
    Fault fault{error.mCode, error.mMessage, stop.mStart, 1, {}, {}};
    switch (error.mCode) {
        case NPattern::kErrorUnclosedSet:
        case NPattern::kErrorUnfinishedEscape: fault.mStart = stop.mBracket; break;
        case NPattern::kErrorEmptyQuotes: fault.mLength = 2; break;
        case NPattern::kErrorInvalidByteValue:
            fault.mLength = LengthOfHexDigits(parseString, stop.mStart);
            break;
        case NPattern::kErrorUnexpectedCharacter:
            fault.mLength = std::max<std::size_t>(Utf8Length(parseString, stop.mStart), 1);
            break;
        default: break;  // an unmatched quote: the mark is under the quote alone
    }
    fault.mHints = LexerHints(error.mCode, parseString, fault.mStart, stop.mMode);
    return fault;
}

Fault SyntaxFault(const std::string& parseString, const PatternSyntaxException& error)
{
    std::vector<LToken> tokens;
    NPattern::Tokenize(tokens, parseString);
    const auto at = std::find_if(tokens.begin(), tokens.end(), [&error](const LToken& token) {
        return token.mPosition == error.mPosition;
    });
    const auto cursor = static_cast<NPattern::TokenCursor>(at - tokens.begin());
    return {error.mCode,
            error.mMessage,
            static_cast<std::size_t>(error.mPosition),
            error.mOffendingText.size(),
            SyntaxHints(tokens, cursor),
            SyntaxNeeds(tokens, cursor)};
}

}  // namespace

std::optional<Fault> FindFault(const std::string& parseString)
{
    try {
        NPattern::CompileElements(parseString);
        return std::nullopt;
    } catch (const PatternSyntaxException& error) {
        return error.mCode == NPattern::kErrorSyntax ? SyntaxFault(parseString, error)
                                                     : LexerFault(parseString, error);
    }
}

}  // namespace NExplain
