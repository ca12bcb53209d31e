#pragma once

#include "pattern_element.h"

namespace NPattern {

inline constexpr char kEolWord[] = "eol";

// The word eol: everything up to the end of the line, the line ends after it included. Captures
// the free text of a line, with its line ends, up to the first NUL.
class EOLElement final : public Element {
  public:
    static bool CanStart(const std::vector<LToken>& tokens, TokenCursor cursor);

    // Throws PatternException if the word eol is not at the cursor.
    EOLElement(const std::vector<LToken>& tokens, TokenCursor& ioCursor);

    void Dump(std::FILE* stream) const override;
    // A message without any line end is taken whole. Null only for length 0.
    const Byte* Match(const Byte* data, std::uint32_t length) override;
    bool IsBinary() const override { return false; }
    void Emit(Program& ioProgram) override;
    ElementPointer Pointer() const override { return this; }
};

}  // namespace NPattern
