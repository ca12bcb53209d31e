// How an instance is saved and restored. Its state is the bytes of its parsing string and nothing
// else, kept whether they compile or not.

#pragma once

#include <cstdint>

#include "actor_info.h"
#include "host_interface.h"
#include "parser_data.h"

namespace NActor {

// Makes the string of size bytes in block that of an instance that has a record: stores it,
// compiles it and brings the outputs in line. Gives what RebuildOutputs gives. A null block leaves
// no string and an empty pattern, and the outputs as they are: false. Throws what the engine throws
// and std::bad_alloc: the string is then stored, and the pattern empty.
bool InstallParseString(const HostContext* context, const ActorInfo* info, StringBlock block,
                        std::uint32_t size);

// ActorInfo slots. Without a record they do nothing, and give 0.

// Installs size bytes as the parsing string, compiles it and rebuilds the outputs. A string that
// doesn't compile is kept and reported; the pattern is then empty and the outputs stay. bytes: the
// host's, copied; not read for a size of 0.
void SetStateCallback(HostContext* context, ActorInfo* info, const void* bytes,
                      std::uint32_t size) noexcept;

// The number of bytes to save. Doesn't touch the context.
std::uint32_t StateSizeCallback(HostContext* context, ActorInfo* info) noexcept;

// Copies the parsing string, at most capacity bytes of it and no terminator, and gives the number
// of bytes copied. Doesn't touch the context.
std::uint32_t GetStateCallback(HostContext* context, ActorInfo* info, std::uint32_t capacity,
                               void* outBytes) noexcept;

// Installs an empty parsing string.
void DefaultStateCallback(HostContext* context, ActorInfo* info) noexcept;

}  // namespace NActor
