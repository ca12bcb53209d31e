// Included first in each source of the guarded tree. A guard there is
//   (NMutation::IsPlanted(17) ? (the fault) : (the code))
// so one build holds every fault, and the environment chooses the one that takes effect.
// WORD_SIFTER_FAULTS: the number of faults.
#pragma once

#include <cstdio>
#include <cstdlib>

namespace NMutation {

struct Faults {
    // WORD_SIFTER_FAULT: the fault that takes effect. WORD_SIFTER_REACHED: a file to which each
    // process appends the faults that it reached.
    Faults()
    {
        if (const char* const fault = std::getenv("WORD_SIFTER_FAULT")) mPlanted = std::atoi(fault);
        mReachedPath = std::getenv("WORD_SIFTER_REACHED");
    }
    ~Faults()
    {
        std::FILE* const file = mReachedPath != nullptr ? std::fopen(mReachedPath, "a") : nullptr;
        if (file == nullptr) return;
        for (int i = 0; i < WORD_SIFTER_FAULTS; ++i) {
            if (mReached[i]) std::fprintf(file, "%d\n", i);
        }
        std::fclose(file);
    }

    int mPlanted = -1;
    const char* mReachedPath = nullptr;
    bool mReached[WORD_SIFTER_FAULTS] = {};
};
inline Faults gFaults;

// Not constexpr: what the compiler calculates is the same for every fault.
[[gnu::always_inline, clang::no_sanitize("address", "undefined")]] inline bool IsPlanted(int fault)
{
    gFaults.mReached[fault] = true;
    return gFaults.mPlanted == fault;
}

}  // namespace NMutation
