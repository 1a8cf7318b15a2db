#!/usr/bin/env bash
# The main job: set up, build the library, slb-tool and the sample database,
# then ask the sample for settings between two listed thicknesses.
# Usage: scripts/run.sh [material] [thickness_mm] [machine_model]
set -euo pipefail
. "$(dirname "$0")/common.sh"
ensure_base_packages
dir="$BUILD_ROOT/run"
cmake -S "$ROOT" -B "$dir" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo \
  -DSPARLANE_BUILD_TESTS=OFF -DSPARLANE_PYTHON=OFF >/dev/null
cmake --build "$dir" -j "$JOBS" --target slb-tool sample-data >/dev/null
material="${1:-Mild steel}"
thickness="${2:-8}"
machine="${3:-AIR-45A}"
"$dir/tools/slb-tool" range "$dir/data/sample.slb" --material "$material" --machine "$machine"
"$dir/tools/slb-tool" query "$dir/data/sample.slb" --material "$material" \
  --machine "$machine" --thickness "$thickness" --interpolate
