// The terminal that the program runs in, if any.

#pragma once

#include <cstdio>

namespace NSystem {

// Lets standard output and standard error pass on bytes unchanged, and a console show them as
// UTF-8. The end of its life restores the console. Without it, output on Windows is converted.
// Ensures that no file which is opened later takes the place of a standard stream that is closed.
// There is at most one object at a time.
class OutputSetup {
  public:
    OutputSetup();
    OutputSetup(const OutputSetup&) = delete;
    OutputSetup& operator=(const OutputSetup&) = delete;
    ~OutputSetup();  // NOLINT(performance-trivially-destructible): only where there is no console
};

// Returns true if the stream is connected to a terminal.
bool IsTerminal(std::FILE* stream);

// Returns true if the stream is connected to a terminal that understands colour codes. On Windows,
// switches the terminal to understand them.
bool ShowsColours(std::FILE* stream);

// Returns the path under which the terminal can be read even if standard input is redirected.
const char* TerminalPath();

}  // namespace NSystem
