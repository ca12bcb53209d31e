// The function that each benchmark program defines for the common main.

#pragma once

namespace NBench {

// Registers the program's benchmarks with the library that runs them.
void RegisterBenchmarks();

}  // namespace NBench
