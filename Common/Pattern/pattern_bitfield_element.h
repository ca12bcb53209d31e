#pragma once

#include "pattern_element.h"

namespace NPattern {

// One range of bits, with its name and its value of the last match.
struct BitfieldField : Parameter {
    std::int32_t mStartBit = 0;  // the lower bit of the range, included
    std::int32_t mEndBit = 0;    // the higher bit, included; at most mStartBit + 31

    // How the value is read, worked out when the whole block is known: bytes that hold it, the
    // whole block if that has at most 8, the place of its lowest bit in the number that these make,
    // and the bits that count.
    std::int32_t mFirstByte = 0;
    std::int32_t mByteSpan = 0;
    std::int32_t mShift = 0;
    std::uint64_t mMask = 0;
};

// A block of bytes read as one unsigned number and cut into ranges of bits: (a=0-3, b=4-15) : L.
// Bit 0 is the least significant bit of the block. Each range captures an integer, one without a
// name too; mParameter stays empty.
class BitfieldElement final : public Element {
  public:
    static bool CanStart(const std::vector<LToken>& tokens, TokenCursor cursor);

    // Throws PatternException where no bit field stands, or one with a range wider than 32 bits.
    BitfieldElement(const std::vector<LToken>& tokens, TokenCursor& ioCursor);

    void Dump(std::FILE* stream) const override;
    // Takes the whole block, the bits between the ranges too.
    const Byte* Match(const Byte* data, std::uint32_t length) override;
    bool IsBinary() const override { return true; }
    void CollectParameters(ParameterList& ioList) const override;

  private:
    void PlaceFields();

    std::vector<BitfieldField> mFields;  // in the order written; at least one
    bool mBigEndian = true;
    std::int32_t mByteCount = 0;  // size of the block, at least 1
};

}  // namespace NPattern
