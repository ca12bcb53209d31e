// The core of the actor: cuts text into messages, matches each one, and publishes the values of
// those that match, followed by the trigger.

#pragma once

#include <cstdint>

#include "host_call.h"

namespace NActor {

// The inputs, in the order of the property definitions.
inline constexpr std::uint16_t kEomCharInput = 1;
inline constexpr std::uint16_t kTextInput = 2;

// Takes the new value of an input of an instance that has a record: an end-of-message character,
// which publishes nothing and takes effect with the next text, or a text. A null string and other
// inputs are ignored. The tag of the value isn't read. Throws as ParseInputText does.
void TakeInput(const HostCall& call, std::uint16_t input, const HostValue& value);

// Cuts text at the end-of-message character of the instance, matches each message and publishes
// those that match. text: NUL-terminated; it is copied first, so the host may change it while
// values go out.
//
// If the host rebuilds the outputs meanwhile, the rest of that message is dropped; if it disposes
// of the instance, the rest of the text. Throws std::bad_alloc and what the host throws; the rest
// of the text is then dropped.
void ParseInputText(const HostCall& call, const char* text);

}  // namespace NActor
