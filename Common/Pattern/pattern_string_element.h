#pragma once

#include <string>

#include "pattern_element.h"

namespace NPattern {

// A literal text with single-byte wildcards: "text" ignores case, 'text' does not. Captures the
// bytes of the message, not its own text.
class StringElement final : public Element {
  public:
    static bool CanStart(const std::vector<LToken>& tokens, TokenCursor cursor);

    // Throws PatternException if no quoted string is at the cursor.
    StringElement(const std::vector<LToken>& tokens, TokenCursor& ioCursor);

    void Dump(std::FILE* stream) const override;
    // Takes exactly as many bytes as the text has. A NUL in the message matches nothing but a NUL
    // in the text, which ends the comparison: the rest is taken without being compared.
    const Byte* Match(const Byte* data, std::uint32_t length) override;
    bool IsBinary() const override { return false; }
    void Emit(Program& ioProgram) override;
    ElementPointer Pointer() const override { return this; }

    // Never empty; kWildcardByte stands for any byte but NUL.
    const std::string& MatchText() const { return mMatchText; }
    bool IsCaseSensitive() const { return mCaseSensitive; }

    // Returns how many bytes at the start of the message agree with the text, at most the size of
    // either.
    std::size_t Agreement(const Byte* data, std::uint32_t length) const;

  private:
    std::string mMatchText;
    bool mCaseSensitive = false;
};

}  // namespace NPattern
