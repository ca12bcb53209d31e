// A warning about what compiles and runs, but is most likely not what was meant.

#pragma once

#include <cstddef>
#include <string>

namespace NExplain {

enum CautionKind {
    kCautionRawDigits,       // a number is made of the raw bytes of a set with white space
    kCautionRawFloat,        // a float is made of raw bytes
    kCautionSplitNumber,     // # and .# instead of .#
    kCautionWholeFloat,      // a float captures a whole number
    kCautionLargeNumber,     // an integer may have more digits than fit
    kCautionManyBytes,       // an integer is made of more bytes than fit
    kCautionHexPrefix,       // 0x where the text '0x' was meant
    kCautionBackslash,       // a backslash that has no meaning
    kCautionSwallowed,       // the piece before takes the first digits of a number
    kCautionOnlyAfterSpace,  // the piece before takes the start of a text that follows directly
    kCautionTaken,           // the piece before takes every byte that this one can begin with
    kCautionSkippedSpace,    // a text begins with white space, which is skipped before it
    kCautionByteZero,        // a byte 00 is needed, which the host never passes
    kCautionEmptySet,        // a set has no bytes
    kCautionClamped,         // a value: the number was too large, and is the nearest integer
    kCautionDroppedBytes,    // a value: of the bytes, only the four least significant are in it
    kCautionCutNumber,       // a value: the piece before took the first digits
    kCautionCutSign,         // a value: the piece before took the sign or the decimal point
    kCautionStopped,         // a value: the number goes on after what was taken
    kCautionNoDigit          // a value: a sign or a point without a digit became 0
};

// True if a pattern with such a caution matches no text that the host can pass.
constexpr bool PreventsMatch(CautionKind kind)
{
    return kind == kCautionTaken || kind == kCautionSkippedSpace || kind == kCautionByteZero ||
           kind == kCautionEmptySet;
}

// True if a pattern with such a caution captures a wrong value from every message.
constexpr bool MakesValuesWrong(CautionKind kind)
{
    return kind == kCautionRawDigits || kind == kCautionSplitNumber;
}

struct Caution {
    CautionKind mKind;
    std::size_t mPiece;  // position in Pieces
    std::string mText;
};

}  // namespace NExplain
