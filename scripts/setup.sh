#!/usr/bin/env bash
# Installs from Debian's archive whatever the build needs and is missing.
set -euo pipefail
packages=(cmake ninja-build g++ qt6-base-dev qt6-base-dev-tools libqt6sql6-sqlite libgl-dev
          xvfb xauth libphonenumber-dev pkg-config libical-dev libgmime-3.0-dev libpst-dev
          radicale openssl python3-vobject python3-icalendar python3
          qt6-translations-l10n desktop-file-utils appstream dpkg-dev file)
missing=()
for p in "${packages[@]}"; do
  dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || missing+=("$p")
done
if [ ${#missing[@]} -gt 0 ]; then
  if [ "$(id -u)" -ne 0 ]; then
    echo "Varnex: diese Pakete fehlen: ${missing[*]}" >&2
    echo "Bitte als root ausführen (z. B. mit sudo), damit sie installiert werden können." >&2
    exit 1
  fi
  export DEBIAN_FRONTEND=noninteractive
  apt-get update -qq
  apt-get install -y -qq --no-install-recommends "${missing[@]}"
fi
