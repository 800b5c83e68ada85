#!/usr/bin/env bash
# Installs from Debian's archive every package listed in scripts/deps/*.txt that is not yet installed.
# With everything present it only asks dpkg, which takes a moment.
set -euo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)

mapfile -t wanted < <(sed 's/#.*//' "$here"/deps/*.txt | tr -s ' \t' '\n\n' | sed '/^$/d' | sort -u)
missing=()
for package in "${wanted[@]}"; do
    dpkg-query -W -f='${Status}\n' "$package" 2>/dev/null | grep -q '^install ok installed$' || missing+=("$package")
done
((${#missing[@]} == 0)) && exit 0

echo "Installing: ${missing[*]}"
sudo=""
[ "$(id -u)" = 0 ] || sudo="sudo"
export DEBIAN_FRONTEND=noninteractive
# A list that fails to refresh (a mirror having a bad day) should not stop packages that can still come.
$sudo apt-get update -qq || echo "install-deps: apt-get update reported errors; trying the install anyway" >&2
$sudo apt-get install -y -qq --no-install-recommends "${missing[@]}"
