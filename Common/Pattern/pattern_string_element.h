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

  private:
    void PrepareHead();
    const Byte* MatchBytes(const Byte* data, std::size_t start);

    std::string mMatchText;  // never empty; kWildcardByte stands for any byte but NUL
    bool mCaseSensitive = false;

    // The first bytes of the text, as many as a word holds, are compared in one step: most messages
    // that don't match differ there. Bytes as they lie in memory.
    std::uint64_t mHead = 0;
    std::uint64_t mHeadFold = 0;  // set in a message before it is compared: case is ignored
    std::uint64_t mHeadMask = 0;  // what of the word counts
    std::size_t mHeadLength = 0;  // 0 for a text that holds a wildcard or a NUL
    bool mHeadIsAll = false;      // nothing is left to compare, and nothing to capture
};

}  // namespace NPattern
