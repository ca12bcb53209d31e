// The place at which no piece of a parsing string can start.

#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "Common/Pattern/pattern_element.h"

namespace NExplain {

// The tokens of the fault, as the hints look at them.
class FaultPlace {
  public:
    FaultPlace(const std::vector<NPattern::LToken>& tokens, NPattern::TokenCursor cursor)
        : mTokens(tokens), mStart(cursor), mBody(NPattern::SkipDeclaration(tokens, cursor))
    {
        mWord = mBody + (At(mBody).mType == NPattern::kNumber ? 1 : 0);
    }

    // The token at this offset from the first one of the fault; kEnd outside the parsing string.
    const NPattern::LToken& Token(std::ptrdiff_t offset) const
    {
        return At(mStart + static_cast<NPattern::TokenCursor>(offset));
    }
    bool IsSymbol(std::ptrdiff_t offset, char symbol) const
    {
        return IsSymbol(Token(offset), symbol);
    }
    bool IsWord(std::ptrdiff_t offset) const
    {
        return Token(offset).mType == NPattern::kIdentifier;
    }

    bool HasHeader() const { return mBody != mStart; }
    // True if the tokens at this offset are name:type=, whatever the words.
    bool IsHeader(std::ptrdiff_t offset) const
    {
        return IsWord(offset) && IsSymbol(offset + 1, ':') && IsWord(offset + 2) &&
               IsSymbol(offset + 3, '=');
    }
    bool HasCount() const { return mWord != mBody; }
    const NPattern::LToken& Count() const { return At(mBody); }
    // The token after the header and the count, if there are any.
    const NPattern::LToken& Word() const { return At(mWord); }
    const NPattern::LToken& AfterWord(std::size_t offset) const { return At(mWord + offset); }
    bool WordIsSymbol(char symbol) const { return IsSymbol(Word(), symbol); }
    // True if nothing stands between the token at this offset and the one before it.
    bool IsAttached(std::ptrdiff_t offset) const
    {
        const NPattern::LToken& before = Token(offset - 1);
        return before.mPosition + static_cast<std::int32_t>(before.mText.size()) ==
               Token(offset).mPosition;
    }
    std::string Header() const { return Token(0).mText + ':' + Token(2).mText + '='; }

    static bool IsSymbol(const NPattern::LToken& token, char symbol)
    {
        return token.mType == NPattern::kSymbol && !token.mEscaped &&
               token.mText == std::string_view(&symbol, 1);
    }

  private:
    const NPattern::LToken& At(NPattern::TokenCursor cursor) const
    {
        return NPattern::TokenAt(mTokens, cursor);
    }

    const std::vector<NPattern::LToken>& mTokens;
    NPattern::TokenCursor mStart;
    NPattern::TokenCursor mBody;  // after the header, if there is one
    NPattern::TokenCursor mWord;  // after the count, if there is one
};

}  // namespace NExplain
