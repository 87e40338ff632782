#!/usr/bin/env bash
# Configures and builds Varnex into ./build (Release with debug information).
set -euo pipefail
here=$(cd "$(dirname "$0")/.." && pwd)
"$here/scripts/setup.sh"
cmake -S "$here" -B "$here/build" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo >/dev/null
cmake --build "$here/build" -j"$(nproc)"
