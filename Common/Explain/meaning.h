// What the pieces of a parsing string take and capture, in plain words.

#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "piece.h"

namespace NExplain {

struct CaptureMeaning {
    std::string mName;   // may be empty
    std::string mValue;  // "an integer, bits 0 to 3"
};

struct Meaning {
    std::string mTakes;  // "one or more letters A to Z or a to z"; follows "takes" or "wanted"
    std::vector<CaptureMeaning> mCaptures;  // one for each capture of the piece
};

Meaning MeaningOf(const Piece& piece);

// The first member of MeaningOf.
std::string TakesOf(const Piece& piece);

}  // namespace NExplain
