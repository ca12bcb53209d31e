#!/bin/sh
# Builds for Linux on other processors, and runs the tests under qemu: on s390x, which is big-endian,
# and on aarch64, unless others are named. Usage: scripts/foreign.sh [PRESET...]
. "$(dirname "$0")/setup.sh"

[ $# -gt 0 ] || set -- s390x aarch64
need_build_packages
need_packages googletest libgtest-dev locales pkgconf
for processor in "$@"; do need_packages "g++-$processor-linux-gnu"; done
install_options=--no-install-recommends need_packages qemu-user

for processor in "$@"; do
    echo "== $processor"
    cmake --preset "$processor" >/dev/null
    cmake --build --preset "$processor" -- --quiet
    ctest --preset "$processor" -j "$(nproc)" --progress
    echo "== the tests of sift on $processor"
    test_sift_of "$processor" none \
        "qemu-$processor" -L "/usr/$processor-linux-gnu" "$PWD/build/$processor/bin/sift"
done
echo "Other processors: all tests passed on $*."
