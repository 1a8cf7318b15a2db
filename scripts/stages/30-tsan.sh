#!/usr/bin/env bash
# The query tests with clang++ and ThreadSanitizer: concurrent queries on one
# database and the lock-free counters must not race.  Only test_query is
# built; any report stops the program and fails the stage.
set -euo pipefail
. "$(dirname "$0")/../common.sh"
dir="$BUILD_ROOT/tsan"
cmake -S "$ROOT" -B "$dir" -G Ninja -DCMAKE_CXX_COMPILER=clang++ -DCMAKE_C_COMPILER=clang \
  -DCMAKE_BUILD_TYPE=RelWithDebInfo -DSPARLANE_SANITIZE=thread -DSPARLANE_BUILD_TOOLS=OFF \
  -DSPARLANE_PYTHON=OFF >/dev/null
cmake --build "$dir" -j "$JOBS" --target test_query
status=0
TSAN_OPTIONS="halt_on_error=1 second_deadlock_stack=1" "$dir/tests/test_query" || status=$?
if [ "$status" -ne 0 ]; then
  echo "test_query under ThreadSanitizer failed (exit $status)" >&2
  exit 1
fi
