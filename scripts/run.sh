#!/usr/bin/env bash
# The main job: set up, build, and run the quickstart example.
set -euo pipefail
. "$(dirname "$0")/common.sh"
ensure_base_packages
dir="$BUILD_ROOT/release"
cmake -S "$ROOT" -B "$dir" -G Ninja -DCMAKE_BUILD_TYPE=Release -DSPARLANE_BUILD_TESTS=OFF >/dev/null
cmake --build "$dir" -j "$JOBS" --target sparlane-quickstart
"$dir/examples/sparlane-quickstart"
