#!/bin/sh
# Builds everything and runs all tests: with the sanitizers, each benchmark for an instant, and the
# optimized build.
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
