// Requests to end the program: Ctrl-C, and the signals with which a system ends programs.

#pragma once

#include <chrono>
#include <optional>

namespace NSystem {

// From now on, the first request doesn't end the program but is remembered, so that the program can
// end its run properly. A second one ends it at once, as does output that nobody reads any more,
// but the serial line is restored even then. Requests that the program was started to ignore stay
// ignored. To be called once.
void CatchInterruptions();

// Returns the number of the signal that was the first request; 0 if there was none. On Windows, the
// signal is SIGINT.
int Interruption();

// Waits until the file can be read from or has ended, or until the timeout or a request. Returns
// true in the first case. file: a descriptor of the C library. timeout: none: no limit.
bool WaitForBytes(int file, std::optional<std::chrono::milliseconds> timeout);

}  // namespace NSystem
