// Shared by the fuzzers and by the program that replays inputs.

#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

// Runs one input. Each fuzzer defines this function.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

// Aborts the program if held is false, so that the fuzzer reports the input. what: the
// property that must hold.
inline void Expect(bool held, const char* what)
{
    if (held) return;
    std::fprintf(stderr, "Violated: %s\n", what);
    std::abort();
}
