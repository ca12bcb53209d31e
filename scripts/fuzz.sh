#!/bin/sh
# Fuzzes the engine, the explanations, the engine against its reference, the shell and the suggestions
# for SECONDS each. The default is 15.
# Usage: scripts/fuzz.sh [SECONDS]
# New inputs are kept in build/fuzz/corpus, and the next run starts from them. If a fuzzer finds a
# fault, it writes the input to build/fuzz. After you fix the fault, move the input to
# fuzz/regressions.
. "$(dirname "$0")/setup.sh"

need_build_packages
need_packages clang libclang-rt-dev

seconds=${1:-15}
cmake --preset fuzz >/dev/null
cmake --build --preset fuzz -- --quiet
export ASAN_OPTIONS=quarantine_size_mb=16:malloc_context_size=8

for name in engine explain reference shell suggest; do
    corpus=build/fuzz/corpus/$name
    regressions=
    if [ -d "fuzz/regressions/$name" ]; then regressions=fuzz/regressions/$name; fi
    mkdir -p "$corpus"
    log=build/fuzz/$name.log
    # shellcheck disable=SC2086  # no argument if there are no regressions
    if ! build/fuzz/bin/fuzz_$name -max_total_time="$seconds" -timeout=10 -entropic=0 \
        -dict=fuzz/pattern.dict -artifact_prefix="build/fuzz/$name-" -print_final_stats=1 \
        "$corpus" "fuzz/corpus/$name" $regressions 2>"$log"; then
        cat "$log" >&2
        echo "The $name fuzzer found a fault." >&2
        exit 1
    fi
    runs=$(sed -n 's/^stat::number_of_executed_units: *//p' "$log")
    rate=$(sed -n 's/^stat::average_exec_per_sec: *//p' "$log")
    echo "$name: $runs inputs, $rate per second, no fault found"
done
