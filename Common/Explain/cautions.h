// What compiles, but is most likely not what was meant.

#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "piece.h"

namespace NExplain {

struct Caution {
    std::size_t mPiece;  // position in Pieces
    std::string mText;
};

// In the order of the pieces, at most one for each.
std::vector<Caution> FindCautions(const Pieces& pieces);

}  // namespace NExplain
