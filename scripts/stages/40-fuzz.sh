#!/usr/bin/env bash
# Builds the parameter-file fuzz target with clang and runs it for a fixed
# time from a freshly generated seed corpus; any crash, leak or sanitizer
# report fails the stage.
set -euo pipefail
. "$(dirname "$0")/../common.sh"
# libFuzzer and the sanitizer runtimes are not pulled in by clang itself.
"$ROOT/scripts/ensure-packages.sh" clang libclang-rt-dev
dir="$BUILD_ROOT/fuzz"
seconds="${SPARLANE_FUZZ_SECONDS:-60}"
cmake -S "$ROOT" -B "$dir" -G Ninja -DCMAKE_CXX_COMPILER=clang++ -DCMAKE_C_COMPILER=clang \
  -DCMAKE_BUILD_TYPE=RelWithDebInfo -DSPARLANE_BUILD_FUZZ=ON -DSPARLANE_BUILD_TESTS=OFF \
  -DSPARLANE_BUILD_TOOLS=OFF -DSPARLANE_PYTHON=OFF >/dev/null
cmake --build "$dir" -j "$JOBS" --target fuzz_file_parser make_seed_corpus
corpus="$dir/corpus"
seeds="$dir/seeds"
rm -rf "$seeds" && mkdir -p "$seeds" "$corpus"
"$dir/fuzz/make_seed_corpus" "$seeds"
artifacts="$dir/artifacts"
mkdir -p "$artifacts"
# The run's progress lines go to a log; the summary, or the finding, is shown.
log="$dir/fuzz.log"
if "$dir/fuzz/fuzz_file_parser" -max_total_time="$seconds" -max_len=65536 -rss_limit_mb=2048 \
    -print_final_stats=1 -artifact_prefix="$artifacts/" "$corpus" "$seeds" >"$log" 2>&1; then
  grep -E '^(#[0-9]+[[:space:]]+DONE|Done|stat::)' "$log"
else
  tail -n 60 "$log"
  exit 1
fi
