#!/usr/bin/env bash
# Installs the build tree into a temporary prefix, then builds and runs an
# outside program against it twice: through the CMake package and through
# pkg-config.  The consumer uses the build's own compiler and sanitizer flags,
# since a sanitized library needs a sanitized program to load it.
# Usage: install_consumer.sh BUILD_DIR CONSUMER_SOURCE_DIR CXX [SANITIZERS]
set -euo pipefail
build_dir="$1"
consumer_src="$2"
cxx="$3"
sanitize="${4:-}"

extra_flags=""
if [ -n "$sanitize" ]; then
  extra_flags="-fsanitize=$sanitize -fno-sanitize-recover=all -fno-omit-frame-pointer"
fi

work="$(mktemp -d)"
trap 'rm -rf "$work"' EXIT
prefix="$work/prefix"

cmake --install "$build_dir" --prefix "$prefix" >/dev/null

for f in include/sparlane/{sparlane,export,records,file_header,results,calculators,database,testing}.h; do
  [ -f "$prefix/$f" ] || { echo "not installed: $f" >&2; exit 1; }
done
# Each installed header compiles on its own, so a host may include any one.
for f in "$prefix"/include/sparlane/*.h; do
  echo "#include <sparlane/$(basename "$f")>" |
    "$cxx" -std=c++17 -Wall -Wextra -Wpedantic -Werror -fsyntax-only -I "$prefix/include" -x c++ - ||
    { echo "header does not compile on its own: $f" >&2; exit 1; }
done
lib="$(find "$prefix" -name 'libsparlane.so.1' -print -quit)"
[ -n "$lib" ] || { echo "libsparlane.so.1 not installed" >&2; exit 1; }
libdir="$(dirname "$lib")"
[ -e "$libdir/libsparlane.so" ] || { echo "libsparlane.so link not installed" >&2; exit 1; }

echo "--- CMake package"
cmake -S "$consumer_src" -B "$work/cmake-build" -DCMAKE_PREFIX_PATH="$prefix" \
  -DCMAKE_CXX_COMPILER="$cxx" -DCMAKE_CXX_FLAGS="$extra_flags" \
  -DCMAKE_EXE_LINKER_FLAGS="$extra_flags" >/dev/null
cmake --build "$work/cmake-build" >/dev/null
"$work/cmake-build/consumer"

echo "--- pkg-config"
pc="$(find "$prefix" -name sparlane.pc -print -quit)"
[ -n "$pc" ] || { echo "sparlane.pc not installed" >&2; exit 1; }
export PKG_CONFIG_PATH="$(dirname "$pc")"
# shellcheck disable=SC2046,SC2086
"$cxx" $extra_flags "$consumer_src/main.cpp" -o "$work/pc-consumer" \
  $(pkg-config --cflags --libs sparlane)
LD_LIBRARY_PATH="$libdir" "$work/pc-consumer"
