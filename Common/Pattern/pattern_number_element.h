#pragma once

#include <string_view>

#include "pattern_element.h"

namespace NPattern {

enum NumberKind { kNumberNone, kNumberDecimal, kNumberHex, kNumberPoint };

// A word of the language for a kind of number.
struct NumberWord {
    std::string_view mWord;
    NumberKind mKind;
};

inline constexpr NumberWord kNumberWords[] = {
    {"x", kNumberHex},         {"hex", kNumberHex},        {"#", kNumberDecimal},
    {"digit", kNumberDecimal}, {"digits", kNumberDecimal}, {".", kNumberPoint},
};

// Returns the kind that a word names, case ignored, or kNumberNone.
NumberKind FindNumberKind(std::string_view word);

// A number written as text: #, 3#, x, 2x, .#, 3.2# and the like. Takes as many bytes as its limits
// allow, even if they are no number: a lone sign or point is a match, of value 0.
class NumberElement final : public Element {
  public:
    static bool CanStart(const std::vector<LToken>& tokens, TokenCursor cursor);

    // Throws PatternException if no number form is at the cursor.
    NumberElement(const std::vector<LToken>& tokens, TokenCursor& ioCursor);

    void Dump(std::FILE* stream) const override;
    const Byte* Match(const Byte* data, std::uint32_t length) override;
    bool IsBinary() const override { return false; }
    void Emit(Program& ioProgram) override;
    ElementPointer Pointer() const override { return this; }

    // The most digits before and after the point; 0: no limit.
    std::int32_t IntegerDigits() const { return mIntegerDigits; }
    std::int32_t FractionDigits() const { return mFractionDigits; }
    bool HasPoint() const { return mDecimalPoint; }
    bool IsHex() const { return mHex; }

    // Returns the address just past the number at data, or data if there is none. data: not end.
    const Byte* EndOfNumber(const Byte* data, const Byte* end) const;

  private:
    std::int32_t mIntegerDigits = 0;
    std::int32_t mFractionDigits = 0;
    bool mDecimalPoint = false;  // a point may follow; never together with mHex
    bool mHex = false;           // hexadecimal digits, and no sign
};

}  // namespace NPattern
