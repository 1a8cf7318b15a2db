#!/usr/bin/env bash
# The shared library carries SONAME libsparlane.so.1 and exports the public
# interface only: members of Sparlane::Database and the Sparlane::Testing
# functions.  Any other symbol of ours that leaks out is an error.
# Usage: exported_symbols.sh path/to/libsparlane.so
set -euo pipefail
lib="$1"

soname="$(readelf -d "$lib" | sed -n 's/.*(SONAME).*\[\(.*\)\].*/\1/p')"
if [ "$soname" != "libsparlane.so.1" ]; then
  echo "SONAME is '$soname', expected libsparlane.so.1" >&2
  exit 1
fi

symbols="$(nm -D --defined-only -C "$lib" | cut -d' ' -f3-)"
for required in 'Sparlane::Database::Database()' 'Sparlane::Database::Create()' \
                'Sparlane::Testing::CalculateCRC32(unsigned char const*, unsigned long)'; do
  if ! grep -qxF "$required" <<<"$symbols"; then
    echo "public symbol not exported: $required" >&2
    exit 1
  fi
done

# Every exported name that mentions the namespace must be a Database member
# or a Testing function (not a template or helper that merely uses our types).
leaks="$(grep 'Sparlane' <<<"$symbols" |
         grep -vE '^Sparlane::(Database::|Testing::[A-Za-z0-9_]+\()' || true)"
for internal in DatabaseImpl Database::Impl DatabaseAccess MappedFile QueryMetrics ResolveName \
                BuildNameIndexes RebuildMaterialIndex RebuildMachineIndex RebuildRecordIndexes; do
  leaks+=$'\n'"$(grep -F "$internal" <<<"$symbols" || true)"
done
leaks="$(sed '/^$/d' <<<"$leaks" | sort -u)"
if [ -n "$leaks" ]; then
  echo "internal symbols exported:" >&2
  echo "$leaks" >&2
  exit 1
fi
echo "exports ok: $(grep -c 'Sparlane::' <<<"$symbols") public symbols"
