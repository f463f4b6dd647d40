#!/usr/bin/env bash
# Builds the i686 library and the demo, and runs the demo on the bundled sample skin.
# Usage: run-demo.sh [language id]
set -euo pipefail
cd "$(dirname "$0")/.."

bash scripts/setup.sh
cmake -S . -B build/i686 -G Ninja -DCMAKE_TOOLCHAIN_FILE=cmake/i686-w64-mingw32.cmake \
    -DCMAKE_BUILD_TYPE=RelWithDebInfo >/dev/null
cmake --build build/i686 --target SkinSummary mirl_skins -j "$(nproc)" >/dev/null

source scripts/wine-session.sh
wine_session_start
cd build/i686/bin
../../../scripts/wine-run.sh win32 SkinSummary.exe "" "${1:-1033}"
