#!/usr/bin/env bash
# Builds the Windows cross build's dependencies into PREFIX:
#  - GoogleTest (with GoogleMock) from the sources Debian ships in its
#    googletest package (/usr/src/googletest);
#  - the LZ4 block library from Debian's lz4 source package, because Debian
#    has no mingw build of LZ4 and liblz4-dev ships no .c files.  The source
#    package comes through apt, with a private list of deb-src entries made
#    from the machine's own Debian sources, so the system's apt setup is left
#    alone;
#  - links to the header-only nlohmann-json and CLI11 (and their CMake
#    package files), so the cross build can use those two without seeing the
#    rest of the build host's /usr/include.
# A finished prefix is reused while the inputs are the same.
# Usage: scripts/mingw-deps.sh PREFIX
set -euo pipefail
. "$(dirname "$0")/common.sh"
prefix="$1"
work="$prefix.work"
toolchain="$ROOT/cmake/toolchain-mingw64.cmake"

version_of() { dpkg-query -W -f='${Version}' "$1" 2>/dev/null || echo none; }
key="gtest=$(version_of googletest) lz4=$(version_of liblz4-dev)"
key="$key toolchain=$(cat "$toolchain" "$ROOT/cmake/mingw-lz4/CMakeLists.txt" "$0" | md5sum | cut -c1-12)"
if [ -f "$prefix/.complete" ] && [ "$(cat "$prefix/.complete")" = "$key" ]; then
  exit 0
fi
rm -rf "$prefix" "$work"
mkdir -p "$prefix" "$work"

cross_cmake() {
  cmake -G Ninja -DCMAKE_TOOLCHAIN_FILE="$toolchain" -DCMAKE_BUILD_TYPE=Release \
    -DCMAKE_INSTALL_PREFIX="$prefix" "$@" >/dev/null
}

# GoogleTest.
cross_cmake -S /usr/src/googletest -B "$work/googletest" -DBUILD_GMOCK=ON -DINSTALL_GTEST=ON
cmake --build "$work/googletest" -j "$JOBS" >/dev/null
cmake --install "$work/googletest" >/dev/null

# LZ4 source package through a private apt state.
apt_dir="$work/apt"
mkdir -p "$apt_dir/parts" "$apt_dir/lists/partial" "$apt_dir/cache/archives/partial" "$work/lz4-src"
: > "$apt_dir/sources.list"
for f in /etc/apt/sources.list /etc/apt/sources.list.d/*.list; do
  [ -f "$f" ] && sed -n 's/^[[:space:]]*deb[[:space:]]/deb-src /p' "$f" >> "$apt_dir/sources.list"
done
for f in /etc/apt/sources.list.d/*.sources; do
  [ -f "$f" ] && sed 's/^Types:.*/Types: deb-src/' "$f" > "$apt_dir/parts/$(basename "$f")"
done
apt_opts=(-o Dir::Etc::SourceList="$apt_dir/sources.list" -o Dir::Etc::SourceParts="$apt_dir/parts"
          -o Dir::State::Lists="$apt_dir/lists" -o Dir::Cache="$apt_dir/cache"
          -o APT::Sandbox::User=root -qq)
apt-get "${apt_opts[@]}" update
(cd "$work/lz4-src" && apt-get "${apt_opts[@]}" source lz4 >/dev/null 2>&1)
lz4_lib="$(find "$work/lz4-src" -maxdepth 3 -path '*/lib/lz4.c' -printf '%h\n' | head -n 1)"
if [ -z "$lz4_lib" ]; then
  echo "mingw-deps: the lz4 source package could not be fetched or unpacked" >&2
  exit 1
fi
cross_cmake -S "$ROOT/cmake/mingw-lz4" -B "$work/lz4" -DLZ4_SOURCE_DIR="$lz4_lib"
cmake --build "$work/lz4" -j "$JOBS" >/dev/null
cmake --install "$work/lz4" >/dev/null

# Header-only libraries: only these two are made visible.
mkdir -p "$prefix/include" "$prefix/share/cmake"
for pair in nlohmann:nlohmann_json CLI:CLI11; do
  headers="${pair%%:*}" package="${pair##*:}"
  [ -d "/usr/include/$headers" ] && ln -sfn "/usr/include/$headers" "$prefix/include/$headers"
  [ -d "/usr/share/cmake/$package" ] && ln -sfn "/usr/share/cmake/$package" "$prefix/share/cmake/$package"
done

rm -rf "$work"
echo "$key" > "$prefix/.complete"
