#!/usr/bin/env bash
# Builds Varnex and its Debian package build/varnex_<version>_<arch>.deb
# (CPack; the library dependencies come from dpkg-shlibdeps).
set -euo pipefail
here=$(cd "$(dirname "$0")/.." && pwd)
"$here/scripts/build.sh"
cd "$here/build"
cpack -G DEB >/dev/null
ls -1 "$here"/build/varnex_*.deb
