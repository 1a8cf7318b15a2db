#!/usr/bin/env bash
# Installs sparlane for Debian's system Python from this source tree: the
# shared library, headers and the Python package "sparlane" into /usr/local,
# the package into the directory /usr/bin/python3 searches there
# (/usr/local/lib/python3.X/dist-packages).  Everything needed comes from
# Debian's packages (apt-get, as root).  DESTDIR=<dir> stages the files
# below <dir> instead and leaves the system alone.
# Usage: [DESTDIR=dir] scripts/install-python.sh
set -euo pipefail
. "$(dirname "$0")/common.sh"
ensure_base_packages

prefix=/usr/local
# Where Debian's interpreter looks for packages installed by hand.
site="$("$SYSTEM_PYTHON" -c 'import sysconfig; print(sysconfig.get_path("platlib"))')"
case "$site" in
  "$prefix"/*) ;;
  *) echo "$SYSTEM_PYTHON installs packages to $site, not below $prefix" >&2; exit 1 ;;
esac
dir="$BUILD_ROOT/system-python"
cmake -S "$ROOT" -B "$dir" -G Ninja -DCMAKE_BUILD_TYPE=Release \
  -DCMAKE_INSTALL_PREFIX="$prefix" -DSPARLANE_BUILD_TESTS=OFF -DSPARLANE_BUILD_TOOLS=OFF \
  -DSPARLANE_PYTHON_REQUIRED=ON -DPython3_EXECUTABLE="$SYSTEM_PYTHON" \
  -DSPARLANE_PYTHON_INSTALL_DIR="$site" >/dev/null
cmake --build "$dir" -j "$JOBS"
cmake --install "$dir"

if [ -n "${DESTDIR:-}" ]; then
  echo "staged below $DESTDIR$prefix"
  exit 0
fi
ldconfig
# From another folder, so the source tree's package folder is not the one imported.
(cd / && "$SYSTEM_PYTHON" -c 'import sparlane; print("sparlane", sparlane.__version__, "installed:", sparlane.__file__)')
