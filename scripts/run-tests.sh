#!/usr/bin/env bash
# Builds the library and its tests for i686 and x86_64, and runs every test under Wine:
# one Xvfb display and one persistent wineserver for the whole run, both stopped at the end.
# Ends with a line "N passed, N failed" over both architectures; exits non-zero on any failure.
set -uo pipefail
cd "$(dirname "$0")/.."

bash scripts/setup.sh || exit 1

source scripts/build.sh
ARCHES=${MIRL_ARCHES:-"i686 x86_64"}
JOBS=${MIRL_JOBS:-$(nproc)}

for arch in $ARCHES; do
    echo "== building $arch"
    mirl_build "$arch" || exit 1
done

# The SDK archive needs both architectures; its test unpacks it and builds against it.
rm -f build/MIRL-sdk-*.zip
if [[ " $ARCHES " == *" i686 "* && " $ARCHES " == *" x86_64 "* ]]; then
    echo "== packaging the SDK"
    mirl_package_sdk || { echo "the SDK could not be packaged"; exit 1; }
fi

source scripts/wine-session.sh
wine_session_start

passed=0
failed=0
for arch in $ARCHES; do
    echo "== testing $arch"
    log=$(mktemp)
    ctest --test-dir "build/$arch" --output-on-failure -j "$JOBS" 2>&1 | tee "$log"
    total=$(sed -n 's/.*tests passed, \([0-9]*\) tests failed out of \([0-9]*\).*/\2/p' "$log" | tail -n 1)
    bad=$(sed -n 's/.*tests passed, \([0-9]*\) tests failed out of \([0-9]*\).*/\1/p' "$log" | tail -n 1)
    if [ -z "$total" ]; then
        echo "ctest printed no summary for $arch"
        failed=$((failed + 1))
    else
        passed=$((passed + total - bad))
        failed=$((failed + bad))
    fi
    rm -f "$log"
done

wine_session_stop
echo "total: $passed passed, $failed failed"
[ "$failed" -eq 0 ]
