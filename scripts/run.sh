#!/usr/bin/env bash
# Sets up what is missing, builds everything and starts the workspace program.
set -euo pipefail
root="$(cd "$(dirname "$0")/.." && pwd)"
"$root/scripts/setup-deps.sh"
"$root/scripts/build.sh"
exe="${BUILD_DIR:-$root/build}/bin/vxworkspace"
if [ -x "$exe" ]; then
  exec "$exe" "$@"
fi
echo "Built the libraries, tests and benchmarks. The workspace program (vxworkspace) is not part of the tree yet."
