# Shared by the scripts: the repository root, the build root and the base
# build dependencies.
ROOT="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
BUILD_ROOT="${SPARLANE_BUILD_ROOT:-$ROOT/build}"
JOBS="${JOBS:-$(nproc 2>/dev/null || echo 2)}"
BASE_PACKAGES=(build-essential g++ clang cmake ninja-build pkg-config liblz4-dev
               libgtest-dev libgmock-dev googletest libbenchmark-dev libsqlite3-dev
               nlohmann-json3-dev libcli11-dev libclang-rt-dev
               python3 python3-dev python3-pybind11 pybind11-dev python3-pytest)
# The Python package is built for Debian's interpreter (a python3 earlier on
# PATH, e.g. from pyenv, has none of Debian's Python packages).
SYSTEM_PYTHON=/usr/bin/python3
ensure_base_packages() { "$ROOT/scripts/ensure-packages.sh" "${BASE_PACKAGES[@]}"; }
