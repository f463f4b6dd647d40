#!/usr/bin/env bash
# Builds the i686 library and the demo, and runs the demo on the bundled sample skin.
# Usage: run-demo.sh [language id]
# With a display (DISPLAY set) the player window opens; without one, the window is painted
# into build/demo.png (the library window into build/demo-library.png, the browser window into
# build/demo-browse.png, its settings dialog into build/settings.png) on a private virtual display,
# and the skin's summary is printed.
set -euo pipefail
cd "$(dirname "$0")/.."
language=${1:-1033}

bash scripts/setup.sh
cmake -S . -B build/i686 -G Ninja -DCMAKE_TOOLCHAIN_FILE=cmake/i686-w64-mingw32.cmake \
    -DCMAKE_BUILD_TYPE=RelWithDebInfo >/dev/null
cmake --build build/i686 --target PlayerDemo SkinSummary mirl_skins -j "$(nproc)" >/dev/null

run=$PWD/scripts/wine-run.sh
out=$PWD/build/demo.png
library=$PWD/build/demo-library.png
if [ -n "${DISPLAY:-}" ] && [ -z "${CI:-}" ]; then
    cd build/i686/bin
    exec "$run" win32 PlayerDemo.exe --lang "$language"
fi

source scripts/wine-session.sh
wine_session_start
cd build/i686/bin
"$run" win32 SkinSummary.exe "" "$language"
"$run" win32 PlayerDemo.exe --lang "$language" --png "Z:${out//\//\\}"
"$run" win32 PlayerDemo.exe --lang "$language" --window LibraryFrame --png "Z:${library//\//\\}"
browse=${out%demo.png}demo-browse.png
"$run" win32 PlayerDemo.exe --lang "$language" --window BrowseFrame --png "Z:${browse//\//\\}"
# The settings dialog: the system's own controls of a dialog, skinned in place.
settings=${out%demo.png}settings.png
"$run" win32 PlayerDemo.exe --lang "$language" --settings --png "Z:${settings//\//\\}"
