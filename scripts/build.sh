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

# The SDK's parts, built for one architecture.
MIRL_SDK_TARGETS=(MIRL Ostra mirlview mirllint mirl_skins)

# Installs the i686 and x86_64 trees (both built) into build/sdk/MIRL-sdk-VERSION and zips that
# folder into build/MIRL-sdk-VERSION.zip. Prints the archive's path.
mirl_package_sdk() {
    local version name arch
    version=$(cat build/i686/mirl-version.txt)
    name=MIRL-sdk-$version
    rm -rf "build/sdk" "build/$name.zip"
    for arch in i686 x86_64; do
        cmake --install "build/$arch" --prefix "build/sdk/$name" --strip >/dev/null || return 1
    done
    (cd build/sdk && cmake -E tar cf "../$name.zip" --format=zip -- "$name") || return 1
    echo "build/$name.zip"
}
