#!/bin/sh
# Builds for Windows with MinGW and runs the tests under Wine: all test programs, those of sift
# against sift.exe, and a comparison of what sift.exe and the sift of this system print.
. "$(dirname "$0")/setup.sh"

need_build_packages
need_packages g++-mingw-w64-x86-64-posix googletest libgtest-dev locales pkgconf
install_options=--no-install-recommends need_packages wine64

echo "== build for Windows"
scripts/wine.sh wineboot >/dev/null 2>&1
cmake --preset windows >/dev/null
cmake --build --preset windows -- --quiet

echo "== the test programs under Wine"
ctest --preset windows -j "$(nproc)" --progress

echo "== the tests of sift with sift.exe"
# Not those at a terminal, which Wine draws in its own way, or with the commands of a shell.
test_sift_of windows 'Edits|ReadsTheFiles|ReportsOutput|ShowsItsProgress|TellsPeopleHow|WarnsOfWhat' \
    "$PWD/scripts/wine.sh" "$PWD/build/windows/bin/sift.exe"

echo "== the same bytes as on this system"
mkdir -p build/windows/compared
cd build/windows/compared
# same ARGUMENT...: runs both programs, with standard input from the file "in".
same() {
    ../sift "$@" <in >out 2>err || echo "exit status $?" >>out
    ../../release/bin/sift "$@" <in >expected_out 2>expected_err || echo "exit status $?" >>expected_out
    if ! cmp out expected_out || ! cmp err expected_err; then
        echo "sift.exe prints something else: sift $*" >&2
        exit 1
    fi
    compared=$((compared + 1))
}
compared=0
for pattern in ../../../examples/*.pattern; do
    cp "${pattern%.pattern}.input" in
    same --json --trace --misses -f "$pattern"
done
# Line ends, what Windows takes for the end of a text, and bytes that aren't ASCII.
printf 'T\303\244=23.5 CRLF\r\nT\303\244=-3 \032 \001\033\177\nno\r\nT\303\244=7 \344\377\200\n' >in
pattern="'Tä=' t:float=.# s:string=eol"
printf '%s' "$pattern" >pä.pattern
cp in pä.input
for options in --trace --csv --json --misses '-e \r'; do
    # shellcheck disable=SC2086  # an option and its value
    same $options -f pä.pattern pä.input - "$PWD/pä.input"
done
same "$pattern wrong" in
same "$pattern" /nowhere .
same --check "$pattern ph:float=#.#"

echo "== the editor"
mkdir -p "an editor"
printf '@echo off\r\necho n:i=# >%%1\r\n' >"an editor/edit.bat"
printf '7\r\n' >in
printf "'old'" >neü.pattern
EDITOR='"an editor\edit.bat"' ../sift --edit -f neü.pattern in >out
printf 'n=7\n' | cmp - out
printf 'n:i=# ' | cmp - neü.pattern

echo "Windows: all tests passed, and $compared runs printed the same bytes."
