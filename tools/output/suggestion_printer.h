// Suggestions on a stream.

#pragma once

#include <cstdint>
#include <optional>
#include <ostream>

#include "Common/Suggest/suggestion.h"
#include "tools/output/palette.h"

namespace NSift {

// eomChar: the end-of-message character of the messages; none: none was found. 0: NUL and pauses.
void PrintSuggestions(std::ostream& stream, const NSuggest::Report& report,
                      std::optional<std::uint8_t> eomChar, const Palette& palette);

// One line for each suggestion, and a summary.
void PrintSuggestionsAsJson(std::ostream& stream, const NSuggest::Report& report,
                            std::optional<std::uint8_t> eomChar);

}  // namespace NSift
