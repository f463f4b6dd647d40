#!/usr/bin/env bash
# Runs a Windows program of this project under Wine: wine-run.sh win32|win64 PROGRAM [ARGS...]
# Uses the project's prefix (made by scripts/setup.sh) and the DISPLAY the caller gives.
set -u
arch=$1; shift
case "$arch" in
    win32) loader=/usr/bin/wine ;;
    win64) loader=/usr/lib/wine/wine64 ;;
    *) echo "wine-run.sh: first argument is win32 or win64" >&2; exit 2 ;;
esac
export WINEPREFIX=${MIRL_WINEPREFIX:-${MIRL_CACHE:-$HOME/.cache/mirl}/wineprefix}
export WINEDEBUG=${WINEDEBUG:--all}
export WINEDLLOVERRIDES=${WINEDLLOVERRIDES:-mscoree,mshtml=}
# A program may start one of the prefix's long-lived processes (explorer.exe for the desktop,
# when the one before has just ended) which inherits its standard handles. With a pipe there
# (ctest's), the reader would wait for that process too, long after the program has ended: the
# output goes through files then, copied out once the program has ended.
if [ -t 1 ]; then
    exec "$loader" "$@"
fi
out=$(mktemp) || exit 1
err=$(mktemp) || exit 1
"$loader" "$@" >"$out" 2>"$err"
status=$?
cat "$out"
cat "$err" >&2
rm -f "$out" "$err"
exit "$status"
