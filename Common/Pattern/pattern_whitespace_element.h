#pragma once

#include "pattern_element.h"

namespace NPattern {

// Skips white space, if there is any, between two elements that read text. Has no form of its own
// in the language, and captures nothing.
class WhitespaceElement final : public Element {
  public:
    void Dump(std::FILE* stream) const override;
    const Byte* Match(const Byte* data, std::uint32_t length) override;
    bool IsBinary() const override { return true; }
    void CollectParameters(std::vector<Parameter>& ioList) const override;
    void Emit(Program& ioProgram) override;
    ElementPointer Pointer() const override { return this; }
};

}  // namespace NPattern
