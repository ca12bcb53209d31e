// What sift needs to know about the terminal.

#pragma once

#include <cstdio>

namespace NSystem {

// Returns true if a stream of the C library leads to a person at a terminal.
bool IsTerminal(std::FILE* stream);

// Returns true if the stream leads to a terminal that understands colour codes; on Windows,
// switches them on.
bool ShowsColours(std::FILE* stream);

}  // namespace NSystem
