// Counts what a program allocates: linking it replaces the global operator new.

#pragma once

#include <cstddef>

namespace NBench {

// How many blocks operator new has given out so far.
std::size_t AllocationCount();

}  // namespace NBench
