// Counts the allocations of the code under test, and makes them fail. Linking allocations.cpp
// replaces the allocation functions, so these tests are a program of their own.

#pragma once

namespace NAllocations {

inline long sLive = 0;                   // blocks that haven't been freed, of all code
inline int sAllocations = 0;             // of the actor, since the test has set it to 0
inline int sFailing = 0;                 // the number of the one that fails; 0: none
inline bool sCountsWithoutHost = false;  // while a test uses the engine itself

}  // namespace NAllocations
