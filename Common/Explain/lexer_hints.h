// Help with a parsing string that cannot be split into tokens.

#pragma once

#include <string>
#include <vector>

#include "Common/Pattern/pattern_ltoken.h"

namespace NExplain {

// code: of an error of the lexer. fault: the parsing string from the fault on, not empty; mode: of
// the lexer there.
std::vector<std::string> LexerHints(NPattern::PatternErrorCode code, const std::string& fault,
                                    NPattern::LexerMode mode);

}  // namespace NExplain
