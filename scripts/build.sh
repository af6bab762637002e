#!/usr/bin/env bash
# Configures (once) and builds the project into ./build with Ninja.
# BUILD_TYPE and SANITIZE (address/undefined build) may be set by the caller.
set -euo pipefail
root="$(cd "$(dirname "$0")/.." && pwd)"
build="${BUILD_DIR:-$root/build}"
type="${BUILD_TYPE:-RelWithDebInfo}"

export CCACHE_BASEDIR="$root"
export CCACHE_NOHASHDIR=1

if [ ! -f "$build/build.ninja" ]; then
  cmake -S "$root" -B "$build" -G Ninja \
    -DCMAKE_BUILD_TYPE="$type" \
    -DVX_SANITIZE="${SANITIZE:-OFF}"
fi
# Arguments are target names (or raw cmake --build options when they start with "-").
if [ $# -gt 0 ] && [ "${1#-}" = "$1" ]; then
  cmake --build "$build" -j "$(nproc)" --target "$@"
else
  cmake --build "$build" -j "$(nproc)" "$@"
fi
