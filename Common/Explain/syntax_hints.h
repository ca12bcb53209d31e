// Help with a token at which no piece of a parsing string can start.

#pragma once

#include <string>
#include <vector>

#include "Common/Pattern/pattern_element.h"

namespace NExplain {

// For common mistakes.
std::vector<std::string> SyntaxHints(const std::vector<NPattern::LToken>& tokens,
                                     NPattern::TokenCursor cursor);

// What each form of a piece would have needed there, one line each.
std::vector<std::string> SyntaxNeeds(const std::vector<NPattern::LToken>& tokens,
                                     NPattern::TokenCursor cursor);

}  // namespace NExplain
