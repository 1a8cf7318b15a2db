#!/usr/bin/env bash
# ImportFromSQLite in both configurations without a third full build: the
# default (gcc) build must refuse, and the sanitizer build, configured with
# ENABLE_SQLITE=ON, must carry and pass the import tests.
set -euo pipefail
. "$(dirname "$0")/../common.sh"
gcc_dir="$BUILD_ROOT/gcc"
asan_dir="$BUILD_ROOT/asan"
# Run on its own, the stage first makes the builds it checks.
[ -f "$gcc_dir/build.ninja" ] || bash "$ROOT/scripts/stages/10-gcc.sh"
[ -f "$asan_dir/build.ninja" ] || bash "$ROOT/scripts/stages/20-asan-ubsan.sh"

cache_value() { sed -n "s/^$2:[A-Z]*=//p" "$1/CMakeCache.txt"; }
fail() { echo "50-sqlite: $*" >&2; exit 1; }
[ "$(cache_value "$gcc_dir" ENABLE_SQLITE)" = OFF ] || fail "the gcc build has SQLite on"
[ "$(cache_value "$asan_dir" ENABLE_SQLITE)" = ON ] || fail "the asan build has SQLite off"

# Default build: the shared library does not link SQLite and refuses the
# import with the fixed message, seen through its public interface.
cmake --build "$gcc_dir" --target sparlane -j "$JOBS"
lib="$gcc_dir/libsparlane.so"
if readelf -d "$lib" | grep -q 'libsqlite3'; then fail "the default library links SQLite"; fi
probe="$gcc_dir/sqlite_refusal_probe"
g++ -std=c++17 -Wall -Wextra -Wpedantic -Werror -I "$ROOT/include" \
  "$ROOT/tests/sqlite/refusal_probe/main.cpp" -o "$probe" -L "$gcc_dir" -lsparlane \
  -Wl,-rpath,"$gcc_dir"
"$probe" "$gcc_dir/sqlite_refusal_probe_missing.db"

# SQLite build: the import tests are there and pass under the sanitizers.
cmake --build "$asan_dir" --target test_sqlite -j "$JOBS"
ASAN_OPTIONS=detect_leaks=1:abort_on_error=1 UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1 \
  ctest --test-dir "$asan_dir" -R '^sqlite$' --output-on-failure --no-tests=error
