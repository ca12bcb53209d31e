// What the host shows of the actor's properties: their definitions and their help.

#pragma once

#include <cstdint>

#include "host_call.h"
#include "host_interface.h"

namespace NActor {

// The definitions of the two inputs and the fixed output; static. Only the host reads them.
const char* DefinitionString() noexcept;

// Writes the help text of a property, or of the actor itself, into outText: cut to size bytes with
// its NUL, the rest of the size bytes filled with NUL. All dynamic outputs share one text. Empty if
// the host gives no position of the help table. Writes nothing if size is 0.
void WriteHelpText(const HostCall& call, PropertyKind kind, std::uint16_t number, char* outText,
                   std::uint32_t size) noexcept;

}  // namespace NActor
