// A message with marks below it that show which piece took which byte.

#pragma once

#include <ostream>
#include <string_view>

#include "tools/match_tracer.h"
#include "tools/output/palette.h"

namespace NSift {

enum class ViewForm { kText, kHex };

// Writes the message, or of a long one what stands around the place where it stopped. Below each
// byte stands the number of the piece that took it (of a text its last digit), '-' for white space
// that was skipped, and '^' where a miss stopped. An empty message gives nothing.
void PrintMessage(std::ostream& stream, std::string_view message, const Trace& trace, ViewForm form,
                  const Palette& palette);

}  // namespace NSift
