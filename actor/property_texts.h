// What the host shows of the actor's properties: their definitions and their help.

#pragma once

#include <cstdint>

#include "actor_info.h"
#include "host_interface.h"

namespace NActor {

// ActorInfo slots.

// The definitions of the two inputs and the fixed output, static. Only the host reads them.
const char* DefinitionStringCallback(HostContext* context) noexcept;

// Writes the help text of a property, or of the actor itself, into outText, cut to size bytes with
// its NUL; the rest of the size bytes becomes NUL. All dynamic outputs share one text. With a size
// of 0 nothing is written.
void PropertyHelpCallback(HostContext* context, ActorInfo* info, PropertyKind kind,
                          std::uint16_t number, char* outText, std::uint32_t size) noexcept;

}  // namespace NActor
