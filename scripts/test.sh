#!/bin/sh
# Builds everything on a fresh machine and runs all tests: under the sanitizers, the benchmarks for
# an instant each, and then as people run them.
. "$(dirname "$0")/setup.sh"

need_build_packages
need_bench_packages
need_packages libgtest-dev locales

for preset in sanitize bench release; do
    echo "== $preset"
    cmake --preset "$preset" >/dev/null
    cmake --build --preset "$preset" -- --quiet
    ctest --preset "$preset" -j "$(nproc)" --progress
done
