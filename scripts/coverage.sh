#!/bin/sh
# Reports how many lines of the engine and the shell the tests reach, and which they don't reach.
# Usage: scripts/coverage.sh [--corpora]
# --corpora: reports the lines and branches of the plug-in, the explanations and the suggestions that
# the stored inputs of the fuzzers reach alone.
. "$(dirname "$0")/setup.sh"

need_build_packages
need_packages libgtest-dev locales gcovr

cmake -S . -B build/coverage -G Ninja -DCMAKE_BUILD_TYPE=Debug \
    -DCMAKE_CXX_FLAGS="--coverage -O0" >/dev/null
cmake --build build/coverage -- --quiet
find build/coverage -name '*.gcda' -delete
case ${1-} in
    '') tests=. measured=Common/Pattern/ options= ;;
    --corpora) tests='^Replay\.' measured=Common/ options=--print-summary ;;
    *) echo "Usage: scripts/coverage.sh [--corpora]" >&2; exit 2 ;;
esac
ctest --test-dir build/coverage -j "$(nproc)" --output-on-failure -R "$tests" \
    >build/coverage/tests.log || {
    cat build/coverage/tests.log >&2
    exit 1
}
# shellcheck disable=SC2086  # no argument if there are no options
gcovr --root . --filter "$measured" --filter 'actor/' --exclude-throw-branches \
    --exclude-directories '.*CompilerId.*' $options build/coverage
