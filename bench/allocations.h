// Counts the allocations of a program. Linking this file replaces the global operator new.

#pragma once

#include <cstddef>

namespace NBench {

// Returns the number of blocks that operator new has allocated so far.
std::size_t AllocationCount();

}  // namespace NBench
