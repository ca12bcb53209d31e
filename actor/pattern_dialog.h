// The dialog in which the user edits the parsing string.

#pragma once

#include <cstdint>

#include "host_call.h"
#include "host_interface.h"

namespace NActor {

// Runs the host's text dialog on a copy of the parsing string; does nothing for an instance
// without a record. If the user accepts, stores the new text whether it compiles or not, rebuilds
// the outputs, and parses the text on the input again (not from inside a rebuild of the outputs,
// which are then rebuilt later). Returns true if the user accepted and there was still an instance
// to take the text. Throws what the host throws until the user accepts; nothing has changed then.
bool EditParseString(const HostCall& call);

// The ValidateTextFunction of that dialog. Compiles into a pattern of its own, so a check never
// disturbs the instance. The positions go out as the engine has them, so the start can be -1. A
// text that can't be read, or for which there is no memory, is reported, and the message says so.
std::uint8_t ValidatePatternText(HostTextHandle* text, std::int32_t* outStart, std::int32_t* outEnd,
                                 char* outError, std::int32_t errorSize,
                                 HostContext* context) noexcept;

}  // namespace NActor
