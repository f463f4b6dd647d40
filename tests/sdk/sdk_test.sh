#!/usr/bin/env bash
# The SDK as an application programmer meets it, for one architecture:
#   sdk_test.sh ARCH SDK.zip SOURCE_DIR
# 1. unpacks the archive into an empty folder outside the project and checks its layout;
# 2. builds the SDK's example with find_package(MIRL CONFIG REQUIRED) and runs it under Wine;
# 3. compiles the README's examples exactly as printed, with the README's command line, and
#    runs the one that needs no window.
# Runs inside a Wine session (DISPLAY and WINEPREFIX set), as ctest does under make test.
set -uo pipefail
arch=$1
zip=$(readlink -f "$2")
src=$3
case "$arch" in
    i686) loader=win32 ;;
    x86_64) loader=win64 ;;
    *) echo "first argument is i686 or x86_64" >&2; exit 2 ;;
esac
run="$src/scripts/wine-run.sh $loader"
failures=0
fail() { echo "FAIL: $*"; failures=$((failures + 1)); }
winpath() { local p; p=$(readlink -f "$1"); echo "Z:${p//\//\\}"; }

if [ ! -f "$zip" ]; then
    # make test and make sdk write it once both architectures are built; a one-architecture run
    # (MIRL_ARCHES=i686) has none, and the test is skipped there.
    echo "SKIP: no SDK archive at $zip"
    exit 77
fi
work=$(mktemp -d /tmp/mirl-sdk-test.XXXXXX)
trap 'rm -rf "$work"' EXIT
cmake -E chdir "$work" cmake -E tar xf "$zip" || { echo "FAIL: the archive does not unpack"; exit 1; }
sdk=$(ls -d "$work"/MIRL-sdk-* 2>/dev/null | head -n 1)
[ -d "$sdk" ] || { echo "FAIL: the archive holds no MIRL-sdk-VERSION folder"; exit 1; }
version=${sdk##*/MIRL-sdk-}

# --- 1. layout
expected=(
    README.txt include/Mirl.h include/MirlWindow.h include/MirlButton.h include/atl/MirlAtl.h
    include/atl/MirlAtlWin.h include/Ostra.h
    lib/cmake/MIRL/MIRLConfig.cmake lib/cmake/MIRL/MIRLConfigVersion.cmake
    skins/sample.zip skins/sample/Skin.xml example/CMakeLists.txt example/Player.cpp
    i686/bin/MIRL.dll i686/bin/Ostra.dll i686/bin/libgcc_s_dw2-1.dll i686/bin/mirlview.exe
    i686/bin/mirllint.exe i686/lib/libMIRL.dll.a i686/lib/libOstra.dll.a
    x86_64/bin/MIRL.dll x86_64/bin/Ostra.dll x86_64/bin/mirlview.exe x86_64/bin/mirllint.exe
    x86_64/lib/libMIRL.dll.a x86_64/lib/libOstra.dll.a)
for f in "${expected[@]}"; do
    [ -f "$sdk/$f" ] || fail "the SDK lacks $f"
done
# Every header the chief header reaches is in the SDK: compiled with nothing but its folder.
for header in "$sdk"/include/*.h; do
    echo "#include <${header##*/}>" > "$work/one-header.cpp"
    "$arch-w64-mingw32-g++" -std=c++17 -fsyntax-only -I"$sdk/include" "$work/one-header.cpp" \
        || fail "include/${header##*/} does not compile on its own"
done
[ "$(grep -c . "$sdk/example/CMakeLists.txt")" -gt 0 ] || fail "the example's CMakeLists.txt is empty"

# --- 2. the example through the CMake package, outside the project's build tree
cp -r "$sdk/example" "$work/app"
if cmake -S "$work/app" -B "$work/app/build" -G Ninja \
        -DCMAKE_TOOLCHAIN_FILE="$src/cmake/$arch-w64-mingw32.cmake" \
        -DMIRL_DIR="$sdk/lib/cmake/MIRL" >"$work/configure.log" 2>&1 \
   && cmake --build "$work/app/build" >"$work/build.log" 2>&1; then
    out=$(cd "$work/app/build" && $run Player.exe "$(winpath "$sdk/skins/sample.zip")" --close-after 100 2>&1)
    code=$?
    [ "$code" -eq 0 ] || fail "Player.exe exited with $code: $out"
    [ "$(printf '%s' "$out" | tr -d '\r')" = "MIRL Player" ] || fail "Player.exe printed '$out', expected 'MIRL Player'"
    out=$(cd "$work/app/build" && $run Player.exe "$(winpath "$work/none.zip")" 2>&1)
    code=$?
    [ "$code" -eq 1 ] || fail "Player.exe on a missing skin exited with $code, expected 1: $out"
    case "$out" in *"the skin could not be loaded"*) ;; *) fail "Player.exe on a missing skin said '$out'" ;; esac
else
    cat "$work/configure.log" "$work/build.log" 2>/dev/null | tail -n 30
    fail "the example does not build with find_package(MIRL) for $arch"
fi
# A version the package does not satisfy is refused.
mkdir -p "$work/old"
cat > "$work/old/CMakeLists.txt" <<CMAKE
cmake_minimum_required(VERSION 3.20)
project(Old LANGUAGES CXX)
find_package(MIRL 99.0 CONFIG REQUIRED)
CMAKE
if cmake -S "$work/old" -B "$work/old/build" -G Ninja -DCMAKE_TOOLCHAIN_FILE="$src/cmake/$arch-w64-mingw32.cmake" \
        -DMIRL_DIR="$sdk/lib/cmake/MIRL" >"$work/old.log" 2>&1; then
    fail "find_package(MIRL 99.0) accepted version $version"
fi

# --- 3. the README's examples, as printed
readme="$src/README.md"
mkdir -p "$work/readme"
# Each ```cpp block starts with a comment naming its file: "// Name.cpp: ...".
awk -v dir="$work/readme" '
    /^```cpp$/ { inblock = 1; file = ""; next }
    /^```$/ && inblock { inblock = 0; close(file); next }
    inblock {
        if (file == "") {
            if (match($0, /^\/\/ [A-Za-z0-9_]+\.cpp/)) file = dir "/" substr($0, 4, RLENGTH - 3)
            else { print "a README cpp block does not start with // Name.cpp" > "/dev/stderr"; exit 1 }
        }
        print > file
    }' "$readme" || fail "the README's examples could not be read"
# The README's compile command for this architecture: the line that starts with the compiler,
# with its continuation lines.
command=$(awk -v cc="$arch-w64-mingw32-g++" '
    index($0, cc) == 1 { take = 1 }
    take { line = line $0 "\n"; if ($0 !~ /\\$/) { print line; exit } }' "$readme")
[ -n "$command" ] || fail "the README prints no $arch-w64-mingw32-g++ command"
cmake_block=$(awk '/^```cmake$/ { inblock = 1; next } /^```$/ && inblock { exit } inblock' "$readme")
[ "$cmake_block" = "$(cat "$src/examples/sdk/CMakeLists.txt")" ] \
    || fail "the README's CMake example is not examples/sdk/CMakeLists.txt"
examples=$(ls "$work/readme"/*.cpp 2>/dev/null)
[ -n "$examples" ] || fail "the README has no C++ example"
for example in $examples; do
    stem=$(basename "$example" .cpp)
    (cd "$work/readme" && SDK="$sdk" bash -c "${command//Player/$stem}") \
        || fail "README example $stem.cpp does not build with the README's command"
done
if [ -f "$work/readme/Elements.exe" ]; then
    cp "$sdk/$arch/bin/"*.dll "$work/readme/"
    out=$(cd "$work/readme" && $run Elements.exe "$(winpath "$sdk/skins/sample.zip")" 2>&1)
    code=$?
    [ "$code" -eq 0 ] && [ "$(printf '%s' "$out" | tr -d '\r')" = "Play" ] \
        || fail "Elements.exe on the sample skin: exit $code, printed '$out', expected 0 and 'Play'"
    out=$(cd "$work/readme" && $run Elements.exe "$(winpath "$work/none.zip")" 2>&1)
    code=$?
    [ "$code" -eq 1 ] || fail "Elements.exe on a missing skin exited with $code, expected 1 (MirlException code 1)"
else
    fail "the README has no Elements.cpp example"
fi

echo "sdk $version $arch: $failures failures"
[ "$failures" -eq 0 ]
