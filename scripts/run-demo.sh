#!/usr/bin/env bash
# Builds the i686 library and the demo, and runs the demo on the bundled sample skin.
# Usage: run-demo.sh [language id]
# With a display (DISPLAY set) the sample player opens; without one, its pages are painted into
# build/player-library.png, player-playing.png, player-settings.png and player-menu.png (the
# play list's menu open) on a private virtual display, with the skin's other windows (build/demo.png,
# demo-library.png, demo-browse.png, settings.png), and the skin's summary is printed.
set -euo pipefail
cd "$(dirname "$0")/.."
language=${1:-1033}

bash scripts/setup.sh
cmake -S . -B build/i686 -G Ninja -DCMAKE_TOOLCHAIN_FILE=cmake/i686-w64-mingw32.cmake \
    -DCMAKE_BUILD_TYPE=RelWithDebInfo >/dev/null
cmake --build build/i686 --target Player PlayerDemo SkinSummary mirl_skins -j "$(nproc)" >/dev/null

run=$PWD/scripts/wine-run.sh
out=$PWD/build/demo.png
library=$PWD/build/demo-library.png
if [ -n "${DISPLAY:-}" ] && [ -z "${CI:-}" ]; then
    cd build/i686/bin
    exec "$run" win32 Player.exe --lang "$language"
fi

source scripts/wine-session.sh
wine_session_start
cd build/i686/bin
"$run" win32 SkinSummary.exe "" "$language"
builddir=${out%/demo.png}
"$run" win32 Player.exe --lang "$language" --pictures "Z:${builddir//\//\\}"
"$run" win32 PlayerDemo.exe --lang "$language" --png "Z:${out//\//\\}"
"$run" win32 PlayerDemo.exe --lang "$language" --window LibraryFrame --png "Z:${library//\//\\}"
browse=${out%demo.png}demo-browse.png
"$run" win32 PlayerDemo.exe --lang "$language" --window BrowseFrame --png "Z:${browse//\//\\}"
# The settings dialog: the system's own controls of a dialog, skinned in place.
settings=${out%demo.png}settings.png
"$run" win32 PlayerDemo.exe --lang "$language" --settings --png "Z:${settings//\//\\}"
