#!/usr/bin/env bash
# Sets up what is missing, builds everything and starts the workspace program. Arguments go to
# the program (./scripts/run.sh --help lists them). Without a display it runs on a virtual one.
set -euo pipefail
root="$(cd "$(dirname "$0")/.." && pwd)"
"$root/scripts/setup-deps.sh"
"$root/scripts/build.sh"
exe="${BUILD_DIR:-$root/build}/bin/vxworkspace"
if [ -z "${DISPLAY:-}" ] && [ -z "${WAYLAND_DISPLAY:-}" ] && [ -z "${QT_QPA_PLATFORM:-}" ]; then
  echo "No display found: starting vxworkspace on a virtual screen (Xvfb, 1280x800)."
  exec xvfb-run -a -s "-screen 0 1280x800x24" "$exe" "$@"
fi
exec "$exe" "$@"
