// What a parsing string means, as text.

#pragma once

#include <ostream>

#include "Common/Explain/piece.h"
#include "tools/output/palette.h"

namespace NSift {

// Writes the pieces one by one: what each takes and captures; then where white space is skipped.
void PrintExplanation(std::ostream& stream, const NExplain::Pieces& pieces, const Palette& palette);

}  // namespace NSift
