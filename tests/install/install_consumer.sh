#!/usr/bin/env bash
# Installs the build tree into a temporary prefix, then builds and runs an
# outside program against it: through the CMake package, through pkg-config,
# as a C program with -lsparlane alone, and (when the build has the Python
# package) imports the package with PYTHONPATH set to its directory under the
# prefix.  Programs use the build's own compilers and sanitizer flags, since
# a sanitized library needs a sanitized program to load it.
# Usage: install_consumer.sh BUILD_DIR CONSUMER_SOURCE_DIR CXX SANITIZERS CC [PYTHON]
set -euo pipefail
build_dir="$1"
consumer_src="$2"
cxx="$3"
sanitize="${4:-}"
cc="$5"
python="${6:-}"

extra_flags=""
if [ -n "$sanitize" ]; then
  extra_flags="-fsanitize=$sanitize -fno-sanitize-recover=all -fno-omit-frame-pointer"
fi

work="$(mktemp -d)"
trap 'rm -rf "$work"' EXIT
prefix="$work/prefix"

cmake --install "$build_dir" --prefix "$prefix" >/dev/null

for f in include/sparlane/{sparlane,c,export,version,records,file_header,results,calculators,database,testing}.h; do
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
[ -f "$libdir/sparlane.def" ] || { echo "sparlane.def not installed" >&2; exit 1; }

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

echo "--- C host"
c_flags="$extra_flags"
# The sanitizers' checks of C++ objects need their C++ part and libstdc++ in
# the program; clang adds them to a C link only on request.
if [ -n "$sanitize" ] && "$cc" --version | grep -q clang; then
  c_flags="$c_flags -fsanitize-link-c++-runtime -lstdc++"
fi
# shellcheck disable=SC2086
"$cc" -std=c99 -Wall -Wextra -Wpedantic -Werror $c_flags -I "$prefix/include" \
  "$consumer_src/host.c" -o "$work/c-host" -L "$libdir" -lsparlane
LD_LIBRARY_PATH="$libdir" "$work/c-host"

if [ -n "$python" ]; then
  echo "--- Python package"
  init="$(find "$prefix" -path '*/sparlane/__init__.py' -print -quit)"
  [ -n "$init" ] || { echo "the Python package was not installed" >&2; exit 1; }
  site="$(dirname "$(dirname "$init")")"
  case "${site#"$prefix"/}" in
    lib/python3/dist-packages|lib/python3*/site-packages) ;;
    *) echo "the Python package went to $site" >&2; exit 1 ;;
  esac
  for f in __init__.pyi testing.pyi py.typed; do
    [ -f "$site/sparlane/$f" ] || { echo "not installed: $f" >&2; exit 1; }
  done
  # No LD_LIBRARY_PATH: the module finds the library relative to itself.
  PYTHONPATH="$site" "$python" -c '
import sparlane
with sparlane.Database() as db:
    db.create()
    db.add_machine("Vendor", "Model")
    db.add_material("Steel")
    db.add_parameter(sparlane.CuttingParameter(vendor_id=1, machine_model_id=1, material_id=1,
                                               thickness_mm=6.0, cut_speed_mm_min=3400.0,
                                               current_amps=65))
    assert db.statistics().parameter_count == 1
print("sparlane", sparlane.__version__, "from", sparlane.__file__)
'
fi
