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
exec "$loader" "$@"
