#!/usr/bin/env bash
# Cross-builds sparlane.dll, slb-tool.exe and the test suite for 64-bit
# Windows with mingw-w64 and runs every test program under wine, in a
# throwaway wine prefix inside the build directory: among them the C
# interface's test program, a C host that loads a file at a non-ASCII path,
# and the C example linked through the MSVC-format import library.
# Benchmarks, fuzz targets and the Python package are not cross-built.
set -euo pipefail
. "$(dirname "$0")/../common.sh"
# llvm brings llvm-dlltool, which makes the MSVC-format sparlane.lib.
"$ROOT/scripts/ensure-packages.sh" g++-mingw-w64-x86-64 wine wine64 googletest dpkg-dev llvm

dir="$BUILD_ROOT/mingw"
prefix="${SPARLANE_MINGW_PREFIX:-$BUILD_ROOT/mingw-deps}"
started=$(date +%s)
"$ROOT/scripts/mingw-deps.sh" "$prefix"
echo "windows: dependencies ready ($(( $(date +%s) - started )) s)"

export WINEPREFIX="$BUILD_ROOT/wineprefix"
export WINEDEBUG=-all
export WINEARCH=win64
export WINELOADER=/usr/lib/wine/wine64
export WINEDLLOVERRIDES="mscoree,mshtml="  # no Mono or Gecko installer prompts
# One wine server for the whole run instead of one per test program.
stop_wineserver() { wineserver -k >/dev/null 2>&1 || true; }
trap stop_wineserver EXIT
# Started before anything else runs, or it would be a short-lived one.
wineserver -p || true
"$WINELOADER" wineboot -i >/dev/null 2>&1
echo "windows: wine ready ($(( $(date +%s) - started )) s)"

# Optimised without debug information: mingw debug sections make the links
# slow and the objects large, and nothing here is debugged in place.
cmake -S "$ROOT" -B "$dir" -G Ninja \
  -DCMAKE_TOOLCHAIN_FILE="$ROOT/cmake/toolchain-mingw64.cmake" \
  -DSPARLANE_MINGW_PREFIX="$prefix" \
  -DCMAKE_BUILD_TYPE=Release -DCMAKE_CXX_FLAGS_RELEASE="-O2 -DNDEBUG" \
  -DSPARLANE_BUILD_BENCH=OFF -DSPARLANE_BUILD_FUZZ=OFF >/dev/null
cmake --build "$dir" -j "$JOBS"
echo "windows: cross build done ($(( $(date +%s) - started )) s)"

# One program at a time: wine has lost its server connection with several
# programs starting at once.  A program that fails is run once more, and a
# hung one is stopped, so wine trouble cannot wedge or flake the run; a real
# failure fails both times.
ctest --test-dir "$dir" --output-on-failure -j 1 --timeout 600 --repeat until-pass:2
echo "windows: tests done ($(( $(date +%s) - started )) s)"
