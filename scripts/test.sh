#!/usr/bin/env bash
# Sets up what is missing, builds everything and runs every test (headless).
set -euo pipefail
root="$(cd "$(dirname "$0")/.." && pwd)"
"$root/scripts/setup-deps.sh"
"$root/scripts/build.sh"
# The libFuzzer targets need clang; their ctest entry runs the fuzzer briefly when built.
if command -v clang++ >/dev/null 2>&1; then
  "$root/scripts/build.sh" fuzzers
fi
cd "${BUILD_DIR:-$root/build}"
export QT_QPA_PLATFORM=offscreen
ctest --output-on-failure -j "$(nproc)" --timeout 600
