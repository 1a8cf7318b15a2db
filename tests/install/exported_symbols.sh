#!/usr/bin/env bash
# The shared library carries SONAME libsparlane.so.1 and exports the public
# interface only: members of Sparlane::Database, the Sparlane::Testing
# functions and the C interface, which is exactly the functions listed in
# sparlane.def (made from sparlane/c.h).  Any other symbol of ours that leaks
# out is an error.
# Usage: exported_symbols.sh path/to/libsparlane.so path/to/sparlane.def
set -euo pipefail
lib="$1"
def="$2"

soname="$(readelf -d "$lib" | sed -n 's/.*(SONAME).*\[\(.*\)\].*/\1/p')"
if [ "$soname" != "libsparlane.so.1" ]; then
  echo "SONAME is '$soname', expected libsparlane.so.1" >&2
  exit 1
fi

symbols="$(nm -D --defined-only -C "$lib" | cut -d' ' -f3-)"
for required in 'Sparlane::Database::Database()' 'Sparlane::Database::Create()' \
                'Sparlane::Database::SortParameters()' \
                'Sparlane::Database::GetFileHeader() const' \
                'Sparlane::Database::GetParameters() const' \
                'Sparlane::Database::GetVendorId(std::__cxx11::basic_string<char, std::char_traits<char>, std::allocator<char> > const&) const' \
                'Sparlane::Database::Estimate(std::__cxx11::basic_string<char, std::char_traits<char>, std::allocator<char> > const&, float, std::__cxx11::basic_string<char, std::char_traits<char>, std::allocator<char> > const&) const' \
                'Sparlane::Testing::CalculateCRC32(unsigned char const*, unsigned long)' \
                'Sparlane::Testing::ExplainParameter[abi:cxx11](Sparlane::CuttingParameter const&)'; do
  if ! grep -qxF "$required" <<<"$symbols"; then
    echo "public symbol not exported: $required" >&2
    exit 1
  fi
done

# Every function declared in testing.h is exported (a definition that does
# not see its SPARLANE_API declaration would be hidden).
testing_header="$(dirname "$0")/../../include/sparlane/testing.h"
for name in $(sed -n 's/^SPARLANE_API .*[ *&]\([A-Za-z0-9_]*\)(.*/\1/p' "$testing_header"); do
  if ! grep -qE "^Sparlane::Testing::${name}(\[abi:[a-z0-9]+\])?\(" <<<"$symbols"; then
    echo "Testing function not exported: $name" >&2
    exit 1
  fi
done

# Symbols that are ours (named in the namespace, or type data of our types)
# must be Database members or Testing functions.  Standard-library template
# instantiations that merely take our types as arguments are vague-linkage
# artefacts of the compiler and are not counted.
ours="$(grep -E '^((typeinfo|typeinfo name|vtable|VTT|guard variable) for )?Sparlane::' \
        <<<"$symbols" || true)"
leaks="$(grep -vE '^Sparlane::(Database::(~?Database\(|[A-Z][A-Za-z0-9]*(\[abi:[A-Za-z0-9]+\])?\(|operator=\()|Testing::[A-Za-z0-9_]+(\[abi:[A-Za-z0-9]+\])?\()' \
         <<<"$ours" || true)"
for internal in Store Database::Impl DatabaseAccess LoadedFile MappedFile QueryMetrics NameTable \
                RecordIndexes PairIndex FirstBrokenRule SortByIndexKey; do
  leaks+=$'\n'"$(grep -F "$internal" <<<"$ours" || true)"
done
leaks="$(sed '/^$/d' <<<"$leaks" | sort -u)"
if [ -n "$leaks" ]; then
  echo "internal symbols exported:" >&2
  echo "$leaks" >&2
  exit 1
fi
# The C interface: every function of the header, and no other sparlane_ name.
c_declared="$(sed -n 's/^[[:space:]]*\(sparlane_[a-z0-9_]*\)[[:space:]]*$/\1/p' "$def" | sort)"
c_exported="$(nm -D --defined-only "$lib" | awk '{print $3}' | grep '^sparlane_' | sort || true)"
if [ "$(grep -c . <<<"$c_declared")" -lt 60 ]; then
  echo "$def lists too few C functions" >&2
  exit 1
fi
if [ "$c_declared" != "$c_exported" ]; then
  echo "C interface exports differ from the header (< header only, > library only):" >&2
  diff <(echo "$c_declared") <(echo "$c_exported") | grep '^[<>]' >&2
  exit 1
fi
echo "exports ok: $(grep -c . <<<"$ours") C++ symbols, $(grep -c . <<<"$c_exported") C functions"
