#include <benchmark/benchmark.h>

#include "registration.h"

int main(int argc, char** argv)
{
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
    NBench::RegisterBenchmarks();
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
