// The function that each benchmark program defines for the common main.

#pragma once

namespace NBench {

// Registers the program's benchmarks with the library that runs them. instant: with few messages,
// for a run that only verifies that the benchmarks work.
void RegisterBenchmarks(bool instant);

}  // namespace NBench
