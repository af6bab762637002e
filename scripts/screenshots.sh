#!/usr/bin/env bash
# Renews the README's pictures with the program's own --screenshot option (a fresh user in a
# temporary data folder, the default seed, offscreen).
set -euo pipefail
root="$(cd "$(dirname "$0")/.." && pwd)"
"$root/scripts/build.sh" vxworkspace
exe="${BUILD_DIR:-$root/build}/bin/vxworkspace"
out="$root/docs/screenshots"
data="$(mktemp -d)"
trap 'rm -rf "$data"' EXIT
mkdir -p "$out"
export QT_QPA_PLATFORM=offscreen
"$exe" --data-dir "$data" --user 1 --screenshot "$out/gallery.png"
"$exe" --data-dir "$data" --user 1 --screenshot "$out/day-trading.png" --layout 日内交易
"$exe" --data-dir "$data" --user 1 --theme dark --screenshot "$out/options-dark.png" --layout 期权交易
echo "Wrote $out/gallery.png, day-trading.png and options-dark.png"
