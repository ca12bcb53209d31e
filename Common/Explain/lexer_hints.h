// Help with a parsing string that cannot be split into tokens.

#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "Common/Pattern/pattern_ltoken.h"

namespace NExplain {

// code: of an error of the lexer. start: of the fault, less than the size of parseString; mode: of
// the lexer there.
std::vector<std::string> LexerHints(NPattern::PatternErrorCode code, const std::string& parseString,
                                    std::size_t start, NPattern::LexerMode mode);

}  // namespace NExplain
