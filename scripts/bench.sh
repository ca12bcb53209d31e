#!/bin/sh
# Builds and runs the benchmarks, and prints their results as tables, with the goals. Each figure is
# the minimum of repetitions that alternate with those of the other benchmarks. It is no error if a
# goal isn't met.
. "$(dirname "$0")/setup.sh"

need_build_packages
need_bench_packages
need_packages mawk perl ripgrep

cmake --preset bench >/dev/null
cmake --build --preset bench -- --quiet
rm -f build/bench/*_bench.*.json

# measure PROGRAM REPETITIONS: writes the results of this round.
measure() {
    echo "Measuring, round $round: $1" >&2
    "build/bench/bin/$1" --benchmark_repetitions="$2" --benchmark_enable_random_interleaving=true \
        --benchmark_min_time=0.01 --benchmark_out="build/bench/$1.$round.json" >/dev/null
}
# In rounds, so that a disturbance of a minute doesn't reach all runs of a program.
for round in 1 2 3 4; do
    measure messages_bench 5
    measure shell_bench 5
    measure growth_bench 3
done
echo "Measuring: sift" >&2
python3 -B bench/sift_bench.py build/bench/bin 2000000 7 >build/bench/sift_bench.table

python3 -B bench/report.py build/bench
echo
cat build/bench/sift_bench.table
echo
python3 -B bench/curves.py build/bench
