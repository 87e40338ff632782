#!/usr/bin/env bash
# Installs the build into a temporary DESTDIR with prefix /usr and checks the
# tree, the desktop entry and the AppStream metainfo (each validator only when
# it is installed), and that the installed programs run from the read-only
# tree with their writable files in the user's data folder.
# Usage: check_install.sh BUILD_FOLDER
set -euo pipefail
build=$1
work=$(mktemp -d)
trap 'chmod -R u+w "$work"; rm -rf "$work"' EXIT
dest=$work/root
DESTDIR=$dest cmake --install "$build" --prefix /usr >/dev/null

failed=0
fail() { echo "FEHLER: $*" >&2; failed=1; }

usr=$dest/usr
for f in bin/varnex bin/varnex-store \
         share/varnex/VarnexPub.db share/varnex/Varnex.html \
         share/applications/de.nordquell.Varnex.desktop \
         share/icons/hicolor/scalable/apps/de.nordquell.Varnex.svg \
         share/metainfo/de.nordquell.Varnex.metainfo.xml \
         share/man/man1/varnex.1 share/man/man1/varnex-store.1 \
         share/man/de/man1/varnex.1 share/man/de/man1/varnex-store.1 \
         share/bash-completion/completions/varnex-store; do
  [ -f "$usr/$f" ] || fail "$f fehlt"
done
[ -z "$(find "$usr/bin" -type f ! -name 'varnex' ! -name 'varnex-store')" ] || fail "weitere Dateien in bin"
version=$(sed -n 's/^project(Varnex VERSION \([0-9.]*\).*/\1/p' "$(dirname "$0")/../../CMakeLists.txt")
grep -q "<release version=\"$version\"" "$usr/share/metainfo/de.nordquell.Varnex.metainfo.xml" \
  || fail "metainfo ohne Release $version"
grep -q "Varnex $version" "$usr/share/man/de/man1/varnex.1" || fail "Handbuchseite ohne Version $version"

if command -v desktop-file-validate >/dev/null; then
  desktop-file-validate "$usr/share/applications/de.nordquell.Varnex.desktop" || fail "desktop-file-validate"
else
  echo "desktop-file-validate fehlt: Prüfung übersprungen"
fi
if command -v appstreamcli >/dev/null; then
  appstreamcli validate --no-net "$usr/share/metainfo/de.nordquell.Varnex.metainfo.xml" >/dev/null \
    || { appstreamcli validate --no-net "$usr/share/metainfo/de.nordquell.Varnex.metainfo.xml"; fail "appstreamcli validate"; }
else
  echo "appstreamcli fehlt: Prüfung übersprungen"
fi
if command -v man >/dev/null; then
  for page in "$usr"/share/man/man1/*.1 "$usr"/share/man/de/man1/*.1; do
    [ -z "$(LANG=C.UTF-8 MANWIDTH=80 man --warnings -l "$page" 2>&1 >/dev/null)" ] || fail "Warnungen in $page"
  done
fi
bash -n "$usr/share/bash-completion/completions/varnex-store" || fail "Vervollständigung"

# The installed tree is read-only; the programs write below the user's folders.
chmod -R a-w "$dest"
export HOME=$work/home XDG_DATA_HOME=$work/home/data XDG_CONFIG_HOME=$work/home/config QT_QPA_PLATFORM=offscreen
mkdir -p "$HOME"
"$usr/bin/varnex-store" demo >/dev/null || fail "varnex-store demo"
"$usr/bin/varnex-store" list | grep -q Kontakte || fail "varnex-store list"
[ -d "$XDG_DATA_HOME/Nordquell/Varnex/Profil" ] || fail "Profil nicht im Datenordner des Benutzers"
rc=0
timeout 4 "$usr/bin/varnex" >/dev/null 2>&1 || rc=$?
[ "$rc" -eq 124 ] || fail "varnex endete mit $rc statt weiterzulaufen"
exit $failed
