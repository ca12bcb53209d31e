// Help with a parsing string that doesn't compile.

#pragma once

#include <string>
#include <vector>

#include "Common/Pattern/pattern_element.h"

namespace NSift {

// For the usual slips, at the token at cursor, which starts no piece.
std::vector<std::string> SyntaxHints(const std::vector<NPattern::LToken>& tokens,
                                     NPattern::TokenCursor cursor);

// What each class of piece would have needed at that token, a line each.
std::vector<std::string> SyntaxNeeds(const std::vector<NPattern::LToken>& tokens,
                                     NPattern::TokenCursor cursor);

// For a fault that stopped the cutting into tokens. message: what was said of it; fault: the
// parsing string from there on; mode: of the lexer at that place.
std::vector<std::string> LexerHints(const std::string& message, const std::string& fault,
                                    NPattern::LexerMode mode);

}  // namespace NSift
