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

# The server of Wine and its services run until a minute after the last program. If the program
# started them, they would hold its output open.
if /usr/lib/wine/wineserver64 -p60 </dev/null >/dev/null 2>&1; then
    /usr/lib/wine/wine64 wineboot </dev/null >/dev/null 2>&1
fi
exec /usr/lib/wine/wine64 "$@"
