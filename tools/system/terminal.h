// The terminal that the program runs in, if any.

#pragma once

#include <cstdio>

namespace NSystem {

// Returns true if the stream is connected to a terminal.
bool IsTerminal(std::FILE* stream);

// Returns true if the stream is connected to a terminal that understands colour codes. On Windows,
// switches the terminal to understand them.
bool ShowsColours(std::FILE* stream);

// Returns the path under which the terminal can be read even if standard input is redirected.
const char* TerminalPath();

}  // namespace NSystem
