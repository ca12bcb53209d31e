#pragma once

#include <vector>

#include "pattern_element.h"

namespace NPattern {

// One range of bits, with its name and its value from the last match.
struct BitfieldField : Parameter {
    std::int32_t mStartBit = 0;  // the lower bit of the range, included
    std::int32_t mEndBit = 0;    // the higher bit, included; at most mStartBit + 31
};

// How the value of a range is read, computed once the size of the block is known.
struct BitPlace {
    std::int32_t mFirstByte =
        0;                       // of the bytes that hold it; the whole block if that has at most 8
    std::int32_t mByteSpan = 0;  // number of these bytes
    std::int32_t mShift = 0;     // place of its lowest bit in the number that these bytes make
    std::uint32_t mMask = 0;     // one bit for each bit of the value
};

// A block of bytes read as one unsigned number and cut into ranges of bits: (a=0-3, b=4-15) : L.
// Bit 0 is the least significant bit of the block. Each range captures an integer, even one
// without a name; mParameter stays empty.
class BitfieldElement final : public Element {
  public:
    static bool CanStart(const std::vector<LToken>& tokens, TokenCursor cursor);

    // Throws PatternException if no bit field is at the cursor, or if a range is wider than 32
    // bits.
    BitfieldElement(const std::vector<LToken>& tokens, TokenCursor& ioCursor);

    void Dump(std::FILE* stream) const override;
    // Takes the whole block, bits between the ranges included.
    const Byte* Match(const Byte* data, std::uint32_t length) override;
    bool IsBinary() const override { return true; }
    void CollectParameters(std::vector<Parameter>& ioList) const override;
    void Emit(Program& ioProgram) override;
    ElementPointer Pointer() const override { return this; }

    // In the order written; at least one.
    const std::vector<BitfieldField>& Fields() const { return mFields; }
    bool IsBigEndian() const { return mBigEndian; }
    std::int32_t ByteCount() const { return mByteCount; }

  private:
    void PlaceFields();

    std::vector<BitfieldField> mFields;
    std::vector<BitPlace> mPlaces;  // of mFields
    bool mBigEndian = true;
    std::int32_t mByteCount = 0;  // size of the block, at least 1
};

}  // namespace NPattern
