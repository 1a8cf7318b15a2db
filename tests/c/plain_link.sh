#!/usr/bin/env bash
# A C host needs nothing but the C compiler and -lsparlane: the example is
# compiled as C99 with the strict warnings, linked with -lsparlane alone and
# run on the sample database; neither it nor test_c depends on a C++ runtime.
# Usage: plain_link.sh CC INCLUDE_DIR LIB_DIR HOST.c SAMPLE.slb TEST_C [SANITIZERS]
set -euo pipefail
cc="$1" include="$2" libdir="$3" source="$4" sample="$5" test_c="$6" sanitize="${7:-}"
work="$(mktemp -d)"
trap 'rm -rf "$work"' EXIT

flags=()
# A sanitized library needs a sanitized host to load it.
if [ -n "$sanitize" ]; then
  flags=(-fsanitize="$sanitize" -fno-sanitize-recover=all)
  # The sanitizers' checks of C++ objects need their C++ part and libstdc++
  # in the program; clang adds them to a C link only on request.
  "$cc" --version | grep -q clang && flags+=(-fsanitize-link-c++-runtime -lstdc++)
fi
"$cc" -std=c99 -Wall -Wextra -Wpedantic -Werror "${flags[@]}" -I "$include" "$source" \
  -o "$work/host" -L "$libdir" -lsparlane
LD_LIBRARY_PATH="$libdir" "$work/host" "$sample" | tee "$work/out.txt"
grep -q 'mm/min' "$work/out.txt" || { echo "the host printed no settings" >&2; exit 1; }

for program in "$work/host" "$test_c"; do
  needed="$(readelf -d "$program" | sed -n 's/.*(NEEDED).*\[\(.*\)\]/\1/p')"
  grep -qx 'libsparlane.so.1' <<<"$needed" || { echo "$program does not use libsparlane" >&2; exit 1; }
  # (A sanitized program carries libstdc++ for the sanitizers themselves.)
  if [ -z "$sanitize" ] && grep -E 'libstdc\+\+|libc\+\+' <<<"$needed"; then
    echo "$program depends on a C++ runtime" >&2
    exit 1
  fi
done
echo "C hosts link with -lsparlane alone"
