#include <benchmark/benchmark.h>

#include <string_view>

#include "registration.h"

namespace {

// Removes the last argument if it is --instant, and returns whether it was.
bool TakeInstant(int& ioCount, char** arguments)
{
    const bool instant = ioCount > 1 && std::string_view(arguments[ioCount - 1]) == "--instant";
    if (instant) --ioCount;
    return instant;
}

}  // namespace

int main(int argc, char** argv)
{
    const bool instant = TakeInstant(argc, argv);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
    NBench::RegisterBenchmarks(instant);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
