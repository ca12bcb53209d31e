#!/bin/sh
# Holds the engine against its reference on every parsing string of up to PIECES pieces and every
# message of up to BYTES bytes, from the sets in fuzz/exhaustive.cpp. The default is 4 and 4, which
# takes about a minute.
# Usage: scripts/exhaustive.sh [PIECES BYTES]
. "$(dirname "$0")/setup.sh"

need_build_packages
need_packages libgtest-dev locales pkgconf

cmake --preset release >/dev/null
cmake --build --preset release --target exhaustive -- --quiet
build/release/bin/exhaustive "${1:-4}" "${2:-4}"
