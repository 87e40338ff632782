#!/usr/bin/env bash
# Installs what is missing, builds, and runs every test.
set -euo pipefail
here=$(cd "$(dirname "$0")/.." && pwd)
"$here/scripts/build.sh"
cd "$here/build"
QT_QPA_PLATFORM=offscreen ctest --output-on-failure -j"$(nproc)"
