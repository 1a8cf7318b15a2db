#!/usr/bin/env bash
# Installs the named Debian packages that are missing (needs root for that).
# Usage: scripts/ensure-packages.sh pkg...
set -euo pipefail
missing=()
for pkg in "$@"; do
  if ! dpkg-query -W -f='${Status}' "$pkg" 2>/dev/null | grep -q 'install ok installed'; then
    missing+=("$pkg")
  fi
done
[ ${#missing[@]} -eq 0 ] && exit 0
if [ "$(id -u)" -ne 0 ]; then
  echo "missing packages: ${missing[*]} (run as root, or install them yourself)" >&2
  exit 1
fi
echo "installing: ${missing[*]}" >&2
# A stale list gives 404s; refresh it once per run of the scripts.
stamp=/tmp/sparlane-apt-updated
if [ ! -e "$stamp" ]; then
  apt-get update -qq && touch "$stamp"
fi
DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
