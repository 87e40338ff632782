#!/usr/bin/env bash
# Installs what is missing, builds, and starts Varnex on the default profile.
# A user without a profile gets the demo profile, so every command can be tried.
set -euo pipefail
here=$(cd "$(dirname "$0")/.." && pwd)
"$here/scripts/build.sh"
bin="$here/build/bin"
if [ -x "$bin/varnex-store" ] && ! "$bin/varnex-store" exists >/dev/null 2>&1; then
  "$bin/varnex-store" demo
fi
if [ -z "${DISPLAY:-}" ] && [ -z "${WAYLAND_DISPLAY:-}" ]; then
  echo "Kein Bildschirm gefunden (DISPLAY ist leer): Varnex startet in einem virtuellen Bildschirm (Xvfb)." >&2
  exec xvfb-run -a -s "-screen 0 1280x800x24" "$bin/varnex"
fi
exec "$bin/varnex"
