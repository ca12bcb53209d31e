# Sets WORD_SIFTER_HAS_TAIL_CALLS if the compiler, with the flags in force, turns the call at the end of
# a function like the engine's step functions into a jump. A million such calls otherwise overflow the
# stack.
include(CheckCXXSourceRuns)
include(CMakePushCheckState)

if((CMAKE_CROSSCOMPILING AND NOT CMAKE_CROSSCOMPILING_EMULATOR) OR MSVC OR
    WORD_SIFTER_SANITIZE OR
    NOT CMAKE_CXX_COMPILER_ID MATCHES "GNU|Clang")
    set(WORD_SIFTER_HAS_TAIL_CALLS OFF)
    return()
endif()
cmake_push_check_state(RESET)
set(CMAKE_REQUIRED_FLAGS -foptimize-sibling-calls)
set(CMAKE_TRY_COMPILE_CONFIGURATION ${CMAKE_BUILD_TYPE})
check_cxx_source_runs("
    #include <cstring>
    #include <string>
    struct Step {
        const char* (*mRun)(const Step*, const char*, const char*, std::string*);
        int mSize;
    };
    struct Run { const char* mEnd; long mValue; int mDigits; };
    __attribute__((always_inline)) inline bool Begin(const char*& ioCurrent, const char* end)
    {
        while (ioCurrent != end && *ioCurrent == 32) ++ioCurrent;
        return ioCurrent != end;
    }
    static Run Take(const char* data, const char* end, int size)
    {
        Run run{data, 0, 0};
        for (; run.mEnd != end && run.mDigits < size; ++run.mEnd, ++run.mDigits)
            run.mValue = run.mValue * 10 + *run.mEnd;
        return run;
    }
    static const char* RunStep(const Step* step, const char* current, const char* end,
                               std::string* values)
    {
        if (!Begin(current, end)) return nullptr;
        const Run run = Take(current, end, step->mSize);
        if (run.mValue == 7) values->assign(current, run.mEnd);
        return step->mRun(step, run.mEnd, end, values);
    }
    int main(int count, char**)
    {
        static char text[2000001];
        std::memset(text, 32 + count, 2000000);
        const Step step{RunStep, count};
        std::string value;
        return RunStep(&step, text, text + 2000000, &value) == nullptr ? 0 : 1;
    }" WORD_SIFTER_HAS_TAIL_CALLS)
cmake_pop_check_state()
