#!/bin/sh
# Replaces the found inputs in fuzz/corpus by those in FOLDER that reach the most code, at most 130 for
# each fuzzer. Inputs that were written by hand, which have names, stay.
# Usage: scripts/minimize.sh [FOLDER]
# FOLDER contains a folder for each fuzzer. The default is build/fuzz/corpus, to which scripts/fuzz.sh
# writes what it finds. No fuzzer may run there now.
. "$(dirname "$0")/setup.sh"

need_build_packages
need_packages clang libclang-rt-dev

folder=${1:-build/fuzz/corpus}
most=130
hash='????????????????????????????????????????'  # name of an input that a fuzzer wrote
cmake --preset fuzz >/dev/null
cmake --build --preset fuzz -- --quiet
for name in engine explain reference shell suggest; do
    kept=fuzz/corpus/$name
    merged=build/fuzz/merged/$name
    rm -rf "$merged"
    mkdir -p "$kept" "$merged"
    # The merge adds to the first folder what reaches more than the inputs there.
    find "$kept" -type f ! -name "$hash" -exec cp {} "$merged" \;
    build/fuzz/bin/fuzz_$name -set_cover_merge=1 -use_counters=0 -max_len=400 "$merged" "$kept" \
        "$folder/$name" 2>"build/fuzz/merged/$name.log"
    find "$kept" -type f -name "$hash" -delete
    # It writes the input that adds the most first.
    find "$merged" -type f -name "$hash" -printf '%T@ %p\n' | sort -n | head -n "$most" |
        while read -r _ file; do cp "$file" "$kept"; done
    echo "$name: $(find "$kept" -type f | wc -l) inputs"
done
