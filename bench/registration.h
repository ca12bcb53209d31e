// What the main of all benchmark programs asks of each.

#pragma once

namespace NBench {

// Registers the program's benchmarks with the library that runs them.
void RegisterBenchmarks();

}  // namespace NBench
