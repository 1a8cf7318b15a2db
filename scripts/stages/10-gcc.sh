#!/usr/bin/env bash
# Release-style build with g++ and the whole suite through ctest.
set -euo pipefail
. "$(dirname "$0")/../common.sh"
dir="$BUILD_ROOT/gcc"
cmake -S "$ROOT" -B "$dir" -G Ninja -DCMAKE_CXX_COMPILER=g++ -DCMAKE_BUILD_TYPE=RelWithDebInfo >/dev/null
cmake --build "$dir" -j "$JOBS"
ctest --test-dir "$dir" --output-on-failure -j "$JOBS"
