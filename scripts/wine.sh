#!/bin/sh
# Runs a program for Windows under Wine, without a display: scripts/wine.sh PROGRAM [ARGUMENT...]
# Stays in the current folder, since the arguments may name files there.
set -eu
build=$(cd "$(dirname "$0")/.." && pwd)/build
mkdir -p "$build"
export WINEPREFIX="$build/wine" WINEDEBUG=-all
# Without the dialogs that offer to install more of Wine, and without its debugger.
export WINEDLLOVERRIDES="mscoree,mshtml,winemenubuilder.exe,winedbg.exe="
unset DISPLAY

# The server of Wine and its services run until five minutes after the last program. If the program
# started them, they would hold its output open. The lock keeps a second program from running while
# they start; they don't inherit it.
{
    flock 9
    if /usr/lib/wine/wineserver64 -p300 9>&-; then
        /usr/lib/wine/wine64 wineboot 9>&- || echo "wineboot failed with status $?"
    fi
} 9>"$build/wine.lock" </dev/null >>"$build/wine.log" 2>&1
exec /usr/lib/wine/wine64 "$@"
