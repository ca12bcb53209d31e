#!/bin/sh
# Fuzzes the engine and the shell for SECONDS each, 15 if none are given: scripts/fuzz.sh [SECONDS]
# What it finds on the way stays in build/fuzz/corpus and is where the next run starts. An input
# that ends a fuzzer is left in build/fuzz; mended, it goes to fuzz/regressions.
. "$(dirname "$0")/setup.sh"

need_build_packages
need_packages clang libclang-rt-dev

seconds=${1:-15}
cmake --preset fuzz >/dev/null
cmake --build --preset fuzz -- --quiet
export ASAN_OPTIONS=quarantine_size_mb=16:malloc_context_size=8

for name in engine shell; do
    corpus=build/fuzz/corpus/$name
    regressions=
    if [ -d "fuzz/regressions/$name" ]; then regressions=fuzz/regressions/$name; fi
    mkdir -p "$corpus"
    log=build/fuzz/$name.log
    # shellcheck disable=SC2086  # no argument where there are no regressions
    if ! build/fuzz/bin/fuzz_$name -max_total_time="$seconds" -timeout=10 -entropic=0 \
        -dict=fuzz/pattern.dict -artifact_prefix="build/fuzz/$name-" -print_final_stats=1 \
        "$corpus" "fuzz/corpus/$name" $regressions 2>"$log"; then
        cat "$log" >&2
        echo "The $name fuzzer has a finding." >&2
        exit 1
    fi
    runs=$(sed -n 's/^stat::number_of_executed_units: *//p' "$log")
    rate=$(sed -n 's/^stat::average_exec_per_sec: *//p' "$log")
    echo "$name: $runs inputs, $rate a second, no finding"
done
