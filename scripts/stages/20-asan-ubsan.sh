#!/usr/bin/env bash
# The suite again with clang++, AddressSanitizer and UndefinedBehaviorSanitizer;
# any report aborts the test program and fails the stage.  Configured with
# SQLite so the real import is tested here (the gcc stage keeps the refusal).
# The Python package is built and tested once, in the gcc stage.
set -euo pipefail
. "$(dirname "$0")/../common.sh"
dir="$BUILD_ROOT/asan"
cmake -S "$ROOT" -B "$dir" -G Ninja -DCMAKE_CXX_COMPILER=clang++ -DCMAKE_C_COMPILER=clang \
  -DCMAKE_BUILD_TYPE=Debug -DSPARLANE_SANITIZE=address,undefined -DENABLE_SQLITE=ON \
  -DSPARLANE_PYTHON=OFF >/dev/null
cmake --build "$dir" -j "$JOBS"
ASAN_OPTIONS=detect_leaks=1:abort_on_error=1 UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1 \
  ctest --test-dir "$dir" --output-on-failure -j "$JOBS"
