#!/usr/bin/env bash
# The whole test suite: every stage in scripts/stages, in name order.  Each
# stage builds in its own directory under build/ and fails the run on any
# failure or sanitizer report.
set -euo pipefail
. "$(dirname "$0")/common.sh"
ensure_base_packages
status=0
for stage in "$ROOT"/scripts/stages/*.sh; do
  name="$(basename "$stage" .sh)"
  echo "=== stage $name ==="
  start=$(date +%s)
  if bash "$stage"; then
    echo "=== stage $name passed ($(( $(date +%s) - start )) s) ==="
  else
    echo "=== stage $name FAILED ($(( $(date +%s) - start )) s) ==="
    status=1
  fi
done
if [ $status -eq 0 ]; then echo "all stages passed"; else echo "some stages failed"; fi
exit $status
