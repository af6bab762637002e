#!/bin/sh
# RunFuzzer.sh <fuzzer binary> <work dir> <seconds>: a short fuzzing run for ctest; exit code 77
# (skipped) when the fuzzer has not been built.
fuzzer="$1"; work="$2"; seconds="$3"
if [ ! -x "$fuzzer" ]; then
  echo "fuzzer not built (cmake --build <dir> --target fuzzers); skipped"
  exit 77
fi
mkdir -p "$work/corpus" "$work/seeds"
cd "$work" || exit 1
export VX_FUZZ_SEED_DIR="$work/seeds"
export QT_QPA_PLATFORM=offscreen
exec "$fuzzer" -max_total_time="$seconds" -rss_limit_mb=2048 -malloc_limit_mb=512 -timeout=10 -error_exitcode=2 \
  "$work/corpus" "$work/seeds"
