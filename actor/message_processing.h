// The spine of the actor: text comes in, is cut into messages, and the values of each message that
// matches go out, with the trigger behind them.

#pragma once

#include <cstdint>

#include "actor_info.h"
#include "host_interface.h"

namespace NActor {

// The inputs, in the order of the property definitions.
inline constexpr std::uint16_t kEomCharInput = 1;
inline constexpr std::uint16_t kTextInput = 2;

// A message has at most so many characters; one that would be longer is cut there, and the
// character behind the cut is lost.
inline constexpr std::uint32_t kMessageLimit = 2048;

// Cuts text at the instance's end-of-message character, matches each message and publishes those
// that match. What is left at the end without that character is dropped. text: NUL-terminated; it
// is copied first, so the host may change it while values go out. Where the host rebuilds the
// outputs meanwhile, the rest of that message is dropped; where it disposes of the instance, the
// rest of the text. May throw std::bad_alloc.
void ParseInputText(const HostContext* context, const ActorInfo* info, const char* text);

// ActorInfo slot. Takes a new end-of-message character, which publishes nothing and counts from the
// next text on, or a new text. value: null, or a null string, is ignored; its tag isn't looked at.
void InputChangedCallback(HostContext* context, ActorInfo* info, std::uint16_t input,
                          HostWord unread, const HostValue* value) noexcept;

}  // namespace NActor
