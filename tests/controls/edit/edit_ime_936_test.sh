#!/usr/bin/env bash
# Runs the edit's input-method tests under code page 936:
#   edit_ime_936_test.sh win32|win64 PROGRAM SOURCE_DIR [GTEST_FILTER]
# The filter names the tests that run there (by default the edit's own Chinese tests).
# Wine takes its code page from the Unix locale of its server, and a prefix has one server, so
# this runs its own: in a side prefix that shares the test prefix's drive and copies its
# registry, with LC_ALL=zh_CN.UTF-8. Runs inside a Wine session (DISPLAY and the prefix set).
set -uo pipefail
loader=$1
program=$2
src=$3
filter=${4:-EditInputMethodChinese.*}
cache=${MIRL_CACHE:-$HOME/.cache/mirl}
prefix=${MIRL_WINEPREFIX:-${WINEPREFIX:-$cache/wineprefix}}
locales=$cache/locale
if [ ! -f "$locales/zh_CN.UTF-8/LC_CTYPE" ]; then
    mkdir -p "$locales"
    localedef -i zh_CN -f UTF-8 "$locales/zh_CN.UTF-8" >/dev/null 2>&1 || {
        echo "SKIP: no zh_CN.UTF-8 locale could be made (scripts/setup.sh makes it)"
        exit 77
    }
fi
[ -d "$prefix/drive_c" ] || { echo "FAIL: no test prefix at $prefix"; exit 1; }

side=$(mktemp -d /tmp/mirl-ime-936.XXXXXX)
ln -s "$prefix/drive_c" "$side/drive_c"
mkdir "$side/dosdevices"
ln -s ../drive_c "$side/dosdevices/c:"
ln -s / "$side/dosdevices/z:"
cp "$prefix"/*.reg "$side"/
[ -e "$prefix/.update-timestamp" ] && cp "$prefix/.update-timestamp" "$side"/

export WINEPREFIX=$side LOCPATH=$locales LC_ALL=zh_CN.UTF-8 WINEDEBUG=-all
export MIRL_WINEPREFIX=$side
wineserver -f -p >/dev/null 2>&1 &
server=$!
stop() {
    WINEPREFIX=$side timeout 20 wineserver -k >/dev/null 2>&1
    kill "$server" 2>/dev/null
    wait "$server" 2>/dev/null
    rm -rf "$side"
}
trap stop EXIT

# To a file, not through a pipe: the prefix's services, started by the first program, hold
# a copy of its output until the server ends.
log=$side/output.txt
timeout 90 "$src/scripts/wine-run.sh" "$loader" "$program" --gtest_brief=1 --gtest_filter="$filter" >"$log" 2>&1
status=$?
cat "$log"
# The tests skip themselves on another code page: under this locale none may.
if grep -q "SKIPPED" "$log"; then
    echo "FAIL: the side server did not run under code page 936"
    exit 1
fi
exit $status
