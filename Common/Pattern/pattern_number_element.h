#pragma once

#include "pattern_element.h"

namespace NPattern {

// A number written as text: #, 3#, x, 2x, .#, 3.2# and the like. Takes all that it can within its
// limits, however little of a number that is: a lone sign or point is a match, of value 0.
class NumberElement final : public Element {
  public:
    static bool CanStart(const std::vector<LToken>& tokens, TokenCursor cursor);

    // Throws PatternException where no number form stands.
    NumberElement(const std::vector<LToken>& tokens, TokenCursor& ioCursor);

    void Dump(std::FILE* stream) const override;
    const Byte* Match(const Byte* data, std::uint32_t length) override;
    bool IsBinary() const override { return false; }

  private:
    const Byte* MatchHex(const Byte* data, const Byte* end);
    template <bool kDecimalPoint>
    const Byte* MatchDecimal(const Byte* data, const Byte* end);

    std::int32_t mIntegerDigits = 0;   // the most digits before the point; 0: no limit
    std::int32_t mFractionDigits = 0;  // the most digits behind the point; 0: no limit
    bool mDecimalPoint = false;        // a point may follow; never together with mHex
    bool mHex = false;                 // hexadecimal digits, and no sign
};

}  // namespace NPattern
