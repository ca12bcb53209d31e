#!/bin/sh
# Builds everything on a fresh machine and runs all tests, with the named presets of
# CMakePresets.json in turn, "release" if none is named: scripts/test.sh [PRESET...]
. "$(dirname "$0")/setup.sh"

need_build_packages
need_packages libgtest-dev locales pkgconf

[ $# -gt 0 ] || set -- release
for preset in "$@"; do
    case $preset in
        bench) need_bench_packages ;;
        clang)
            need_packages clang
            need_bench_packages
            ;;
        libcxx) need_packages clang googletest libc++-dev libc++abi-dev libclang-rt-dev ;;
    esac
    echo "== $preset"
    cmake --preset "$preset" >/dev/null
    cmake --build --preset "$preset" -- --quiet
    ctest --preset "$preset" -j "$(nproc)" --progress
done
