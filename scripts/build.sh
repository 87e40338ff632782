#!/usr/bin/env bash
# Configures and builds Varnex into ./build (Release with debug information).
set -euo pipefail
here=$(cd "$(dirname "$0")/.." && pwd)
"$here/scripts/setup.sh"
launcher=()
# Rebuilds of other checkouts reuse objects already compiled here.
command -v ccache >/dev/null && launcher=(-DCMAKE_CXX_COMPILER_LAUNCHER=ccache -DCMAKE_C_COMPILER_LAUNCHER=ccache)
cmake -S "$here" -B "$here/build" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo "${launcher[@]}" >/dev/null
cmake --build "$here/build" -j"$(nproc)"
