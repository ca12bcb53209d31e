// Cautions about a parsing string.

#pragma once

#include <cstddef>
#include <vector>

#include "caution.h"
#include "piece.h"

namespace NExplain {

// In the order of the pieces; a piece can have several.
std::vector<Caution> FindCautions(const Pieces& pieces);

// Those about pieces[index] alone.
std::vector<Caution> FindCautions(const Pieces& pieces, std::size_t index);

}  // namespace NExplain
