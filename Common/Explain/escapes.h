// Backslashes in a parsing string.

#pragma once

#include <string>

#include "piece.h"

namespace NExplain {

// Returns a warning if a backslash in the quotes or brackets of a piece stands before a letter or
// digit and so has no meaning, with what was probably meant; otherwise an empty text. Speaks of the
// first such backslash only.
std::string IdleBackslash(const Piece& piece);

// Returns a member of a set in brackets, with a backslash if it needs one.
std::string InSet(const std::string& member);

}  // namespace NExplain
