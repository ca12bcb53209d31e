// Shows a message with marks below it: which piece took which byte.

#pragma once

#include <ostream>
#include <string_view>

#include "Common/Explain/trace.h"
#include "tools/output/palette.h"

namespace NSift {

enum class ViewForm { kText, kHex };

// Writes the message and a line of marks; of a long message, only the part around the place where
// it stopped. The mark of a byte is the number of the piece that took it (for text, the last
// digit), '-' for white space that was skipped, and '^' where a miss stopped. Writes nothing for an
// empty message.
void PrintMessage(std::ostream& stream, std::string_view message, const NExplain::Trace& trace,
                  ViewForm form, const Palette& palette);

}  // namespace NSift
