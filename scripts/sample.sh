#!/bin/sh
# Builds the plug-in and sift, and runs them over sample messages.
. "$(dirname "$0")/setup.sh"

need_build_packages
cmake -S . -B build/sample -G Ninja -DCMAKE_BUILD_TYPE=Release -DWORD_SIFTER_TESTS=OFF \
    -DWORD_SIFTER_WEB=OFF >/dev/null
cmake --build build/sample -- --quiet

# show PATTERN-FILE INPUT-FILE: prints the command and its result.
show() {
    echo
    echo "\$ sift -f $1 $2"
    build/sample/bin/sift -f "$1" "$2"
}
show examples/nmea-any.pattern examples/nmea-any.input
show examples/nmea-gga.pattern examples/nmea-gga.input
show examples/sensor.pattern examples/sensor.input
