#!/bin/sh
# Builds and runs the benchmarks, and prints their results as tables.
. "$(dirname "$0")/setup.sh"

need_build_packages
need_bench_packages
need_packages python3

cmake --preset bench >/dev/null
cmake --build --preset bench -- --quiet

# measure PROGRAM REPETITIONS: writes the results to build/bench/PROGRAM.json.
measure() {
    echo "Measuring: $1" >&2
    "build/bench/bin/$1" --benchmark_repetitions="$2" --benchmark_enable_random_interleaving=true \
        --benchmark_min_time=0.01 --benchmark_report_aggregates_only=true \
        --benchmark_out="build/bench/$1.json" >/dev/null
}
measure messages_bench 15
measure shell_bench 9
measure growth_bench 5
python3 bench/report.py build/bench
echo
python3 bench/curves.py build/bench/growth_bench.json build/bench/growth.svg
