#!/usr/bin/env bash
# Builds the fuzzer (i686) and runs it under Wine for a time budget: skin packages mutated at
# the ZIP and the XML level, and a message storm on every window class, in worker processes
# watched for crashes, hangs, heap corruption and growth.
#   scripts/run-fuzz.sh [SECONDS]        default 60
# MIRL_FUZZ_SEED picks the seed (default: a new one from the clock, printed so that it can be
# replayed); MIRL_FUZZ_JOBS the number of worker processes (default: one per processor).
# Failing inputs are saved in build/i686/fuzz-failures. Exits non-zero on any failure.
set -uo pipefail
cd "$(dirname "$0")/.."

bash scripts/setup.sh || exit 1

budget=${1:-60}
seed=${MIRL_FUZZ_SEED:-$(date +%s)}
arch=i686

echo "== building the fuzzer ($arch)"
source scripts/build.sh
mirl_build "$arch" mirl_fuzz mirl_fuzz_worker || exit 1

source scripts/wine-session.sh
wine_session_start

echo "== fuzzing for $budget s with seed $seed"
args=(--seconds "$budget" --seed "$seed")
[ -n "${MIRL_FUZZ_JOBS:-}" ] && args+=(--jobs "$MIRL_FUZZ_JOBS")
scripts/wine-run.sh win32 "build/$arch/bin/mirl_fuzz.exe" "${args[@]}"
status=$?

wine_session_stop
if [ "$status" -ne 0 ]; then
    echo "fuzz: failures found; inputs and replay commands in build/$arch/fuzz-failures"
fi
exit "$status"
