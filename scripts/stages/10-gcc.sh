#!/usr/bin/env bash
# Release-style build with g++ and the whole suite through ctest, the C
# interface's tests and the Python package's pytest suite included.
set -euo pipefail
. "$(dirname "$0")/../common.sh"
dir="$BUILD_ROOT/gcc"
cmake -S "$ROOT" -B "$dir" -G Ninja -DCMAKE_CXX_COMPILER=g++ -DCMAKE_C_COMPILER=gcc \
  -DCMAKE_BUILD_TYPE=RelWithDebInfo -DSPARLANE_PYTHON_REQUIRED=ON \
  -DPython3_EXECUTABLE="$SYSTEM_PYTHON" >/dev/null
cmake --build "$dir" -j "$JOBS"
ctest --test-dir "$dir" --output-on-failure -j "$JOBS"
