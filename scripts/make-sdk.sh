#!/usr/bin/env bash
# Builds the library and the skin tools for i686 and x86_64 and writes the SDK archive
# build/MIRL-sdk-VERSION.zip (headers, import libraries, DLLs, tools, CMake package, sample
# skin, example application).
set -euo pipefail
cd "$(dirname "$0")/.."

bash scripts/setup.sh
source scripts/build.sh
for arch in i686 x86_64; do
    echo "== building $arch"
    mirl_build "$arch" "${MIRL_SDK_TARGETS[@]}"
done
zip=$(mirl_package_sdk)
echo "SDK: $zip"
