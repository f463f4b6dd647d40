# Sourced: configures and builds one architecture's tree under build/ARCH.
#   mirl_build ARCH [TARGET...]    every target when none is named; returns non-zero on failure
# MIRL_JOBS sets the parallel jobs (default: one per processor).
mirl_build() {
    local arch=$1
    shift
    local log="build-$arch-configure.log"
    cmake -S . -B "build/$arch" -G Ninja -DCMAKE_TOOLCHAIN_FILE="cmake/$arch-w64-mingw32.cmake" \
        -DCMAKE_BUILD_TYPE=RelWithDebInfo >"$log" 2>&1 \
        || { cat "$log"; rm -f "$log"; return 1; }
    rm -f "$log"
    local targets=()
    [ $# -gt 0 ] && targets=(--target "$@")
    cmake --build "build/$arch" -j "${MIRL_JOBS:-$(nproc)}" "${targets[@]}"
}
