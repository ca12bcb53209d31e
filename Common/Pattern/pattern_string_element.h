#pragma once

#include "pattern_element.h"

namespace NPattern {

// A literal text with single-byte wildcards: "text" ignores case, 'text' doesn't. Captures the
// bytes of the message, not its own text.
class StringElement final : public Element {
  public:
    static bool CanStart(const std::vector<LToken>& tokens, TokenCursor cursor);

    // Throws PatternException where no quoted string stands.
    StringElement(const std::vector<LToken>& tokens, TokenCursor& ioCursor);

    void Dump(std::FILE* stream) const override;
    // Takes exactly as many bytes as the text has. A NUL in the message fits nothing but a NUL in
    // the text, which ends the comparison: the rest is taken unseen.
    const Byte* Match(const Byte* data, std::uint32_t length) override;
    bool IsBinary() const override { return false; }
    void CollectText(TextPieceList& ioPieces) const override;

  private:
    std::string mMatchText;  // never empty; kWildcardByte stands for any byte but NUL
    bool mCaseSensitive = false;
};

}  // namespace NPattern
