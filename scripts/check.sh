#!/bin/sh
# Static checks: format, scripts, the warnings of Clang, clang-tidy and cppcheck.
. "$(dirname "$0")/setup.sh"

need_build_packages
need_bench_packages
need_packages clang clang-format clang-tidy cppcheck shellcheck libgtest-dev locales

folders="Common actor standin tools web tests fuzz mutation"
if [ -d bench ]; then folders="$folders bench"; fi
# shellcheck disable=SC2086  # one word for each folder
sources=$(find $folders -name '*.cpp' -o -name '*.h' | sort)

echo "== format"
# shellcheck disable=SC2086
clang-format --dry-run -Werror $sources

echo "== scripts"
shellcheck -s sh -x -P SCRIPTDIR .ci/run scripts/*.sh packaging/*.sh

echo "== Clang's warnings"
cmake --preset clang >/dev/null
cmake --build --preset clang -- --quiet

echo "== clang-tidy"
# tidy FOLDER... -- OPTION...: runs clang-tidy on each source in the folders that is built on this
# system.
tidy() {
    tidied=
    while [ "$1" != -- ]; do tidied="$tidied $1"; shift; done
    shift
    # shellcheck disable=SC2086
    find $tidied -name '*.cpp' ! -name '*_windows.cpp' | sort |
        xargs -n 1 -P "$(nproc)" clang-tidy --quiet -p build/clang "$@" 2>/dev/null
}
tidy Common actor standin web --
# Without the analyzer, which takes minutes for the headers of the libraries that sift uses.
tidy tools -- '--checks=-clang-analyzer-*'

echo "== cppcheck"
# System headers aren't checked. The shell fetches a record again after each operation of the host,
# because the host may have disposed of it. cppcheck reports this as a redundant null check.
cppcheck --quiet --error-exitcode=1 --std=c++20 --language=c++ --inline-suppr -j "$(nproc)" \
    --enable=warning,performance,portability --suppress=missingIncludeSystem \
    --suppress=nullPointerRedundantCheck -I . \
    Common actor standin tools web
echo "All checks passed."
