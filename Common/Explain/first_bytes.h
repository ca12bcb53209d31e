// The bytes at the ends of what a piece takes, from which follows what its neighbor can take.

#pragma once

#include <bitset>

#include "piece.h"

namespace NExplain {

using ByteSet = std::bitset<256>;

// Every byte with which something that the piece takes can begin.
ByteSet FirstBytes(const Piece& piece);

// Bytes that never come directly after what the piece took, because it takes them too.
ByteSet BytesNeverAfter(const Piece& piece);

const ByteSet& DigitBytes();

}  // namespace NExplain
