#!/usr/bin/env bash
# Builds the benchmark (i686) with the skins it generates, and runs it under Wine in three rounds
# (--rounds N for another count): one table of the median ratio of ours to a baseline that does
# the same work with the platform alone, its spread over the rounds,
# and whether the target is met.
#   scripts/run-bench.sh [ARGUMENTS OF mirl_bench.exe...]   e.g. --repetitions 9, --only lookup
# Exits non-zero if the benchmark could not run; a missed target is reported, not a failure.
set -uo pipefail
cd "$(dirname "$0")/.."

bash scripts/setup.sh || exit 1

arch=i686

echo "== building the benchmark ($arch)"
source scripts/build.sh
mirl_build "$arch" mirl_bench || exit 1

source scripts/wine-session.sh
wine_session_start

echo "== measuring (i686 under Wine, $(nproc) processors)"
scripts/wine-run.sh win32 "build/$arch/bin/mirl_bench.exe" "$@"
status=$?

wine_session_stop
exit "$status"
