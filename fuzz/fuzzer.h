// What the two fuzzers share with each other and with the program that replays inputs.

#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

// Runs one input. The only function of a fuzzer.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

// Ends the program, which makes a finding of the input, unless held.
inline void Expect(bool held, const char* what)
{
    if (held) return;
    std::fprintf(stderr, "Not so: %s\n", what);
    std::abort();
}
