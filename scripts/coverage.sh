#!/bin/sh
# Reports how many lines of the engine and the shell the tests reach, and which they don't reach.
. "$(dirname "$0")/setup.sh"

need_build_packages
need_packages libgtest-dev locales gcovr

cmake -S . -B build/coverage -G Ninja -DCMAKE_BUILD_TYPE=Debug \
    -DCMAKE_CXX_FLAGS="--coverage -O0" >/dev/null
cmake --build build/coverage -- --quiet
find build/coverage -name '*.gcda' -delete
ctest --test-dir build/coverage -j "$(nproc)" --output-on-failure >build/coverage/tests.log || {
    cat build/coverage/tests.log >&2
    exit 1
}
gcovr --root . --filter 'Common/Pattern/' --filter 'actor/' --exclude-throw-branches \
    --exclude-directories '.*CompilerId.*' build/coverage
