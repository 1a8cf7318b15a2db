#!/usr/bin/env bash
# sparlane.dll exports the Sparlane interface only (the C++ names and the C
# functions of sparlane.def, which an MSVC import library is made from) and
# needs nothing but system DLLs (the compiler runtime is linked in).
# Usage: dll_exports.sh OBJDUMP DLL DEF
set -euo pipefail
objdump="$1" dll="$2" def="$3"
dump="$("$objdump" -p "$dll")"

imports="$(sed -n 's/^[[:space:]]*DLL Name: //p' <<<"$dump" | tr 'A-Z' 'a-z' | sort -u)"
for name in $imports; do
  case "$name" in
    kernel32.dll|msvcrt.dll|ucrtbase.dll|api-ms-win-*.dll) ;;
    *) echo "sparlane.dll needs $name beside it" >&2; exit 1 ;;
  esac
done

exports="$(sed -n '/\[Ordinal\/Name Pointer\] Table/,/^$/p' <<<"$dump" | sed -n 's/^[[:space:]]*\[ *[0-9]*\] //p')"
count="$(grep -c . <<<"$exports" || true)"
if [ "$count" -lt 40 ]; then
  echo "only $count exports; the Database class and Testing functions are missing" >&2
  exit 1
fi
c_declared="$(sed -n 's/^[[:space:]]*\(sparlane_[a-z0-9_]*\)[[:space:]]*$/\1/p' "$def" | sort)"
c_exported="$(grep '^sparlane_' <<<"$exports" | sort || true)"
if [ "$c_declared" != "$c_exported" ]; then
  echo "C exports differ from $def (< def only, > DLL only):" >&2
  diff <(echo "$c_declared") <(echo "$c_exported") | grep '^[<>]' >&2
  exit 1
fi
foreign="$(grep -v -e '8Sparlane' -e '^sparlane_' <<<"$exports" || true)"
if [ -n "$foreign" ]; then
  echo "exports outside the Sparlane namespace:" >&2
  echo "$foreign" >&2
  exit 1
fi
for symbol in _ZN8Sparlane8Database14LoadFromBinaryERKNSt7__cxx1112basic_stringIcSt11char_traitsIcESaIcEEE \
              _ZN8Sparlane7Testing14CalculateCRC32EPKhy; do
  grep -qx "$symbol" <<<"$exports" || { echo "missing export $symbol" >&2; exit 1; }
done
echo "sparlane.dll: $count exports ($(grep -c . <<<"$c_exported") C functions), imports: $(tr '\n' ' ' <<<"$imports")"
