// How an instance is saved and restored. Its state is the bytes of its parsing string and nothing
// else, kept whether they compile or not.

#pragma once

#include <cstdint>

#include "host_call.h"
#include "parse_string.h"
#include "parser_data.h"
#include "record_watch.h"

namespace NActor {

// Makes parseString that of the watched record, which must exist: stores it, compiles it and
// rebuilds the outputs. Returns what RebuildOutputs returns. A string without bytes leaves none
// and an empty pattern, and the outputs as they are: false. Throws what the engine and the host
// throw, and std::bad_alloc; the string is then stored, and the pattern empty.
bool InstallParseString(const HostCall& call, const RecordWatch& watch, ParseString parseString);

// Installs size bytes as the parsing string of an instance that has a record. bytes: copied; not
// read if size is 0. Throws as InstallParseString does.
void SetState(const HostCall& call, const void* bytes, std::uint32_t size);

// Copies the parsing string, at most capacity bytes of it and no terminator. Returns the number of
// bytes copied.
std::uint32_t CopyState(const ParserData& record, std::uint32_t capacity, void* outBytes);

}  // namespace NActor
