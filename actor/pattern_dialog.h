// The dialog in which the user edits the parsing string.

#pragma once

#include <cstdint>

#include "actor_info.h"
#include "host_interface.h"

namespace NActor {

// ActorInfo slot. Runs the host's text dialog on a copy of the parsing string. If the user accepts,
// the new text is stored whether it compiles or not, the outputs follow it, and the text that
// stands on the input is parsed again (but not from inside a rebuild of the outputs, which they
// follow only when that is done). outChanged: takes 1 if the user accepted and there was still an
// instance to take the text, and 0 otherwise; may be null. Always true.
std::uint8_t DoubleClickCallback(HostContext* context, ActorInfo* info, std::uint8_t* outChanged,
                                 HostWord unread) noexcept;

// The ValidateTextFunction of that dialog. Compiles into a pattern of its own, so that a check
// never disturbs the instance. The place goes out as the engine tells it, and can be -1. A text
// that can't be had, or for which there is no memory, is reported, and the message says so.
std::uint8_t ValidatePatternText(HostTextHandle* text, std::int32_t* outStart, std::int32_t* outEnd,
                                 char* outError, std::int32_t errorSize,
                                 HostContext* context) noexcept;

}  // namespace NActor
