#!/usr/bin/env bash
# Checks the resources Windows reads from a shipped executable before running it: exactly one
# application manifest (asking for no elevation), the version resource with the project's version and
# the file's own name, and the game's icon. Prints what it found.
# Usage: resource-check.sh OBJDUMP EXE VERSION FILENAME
set -uo pipefail
objdump=$1
exe=$2
version=$3
filename=$4

if [ ! -f "$exe" ]; then
    echo "FAIL: $exe does not exist (build it first: the 32-bit game is built in build/win32)"
    exit 1
fi
if ! dump=$("$objdump" -p "$exe" 2>&1); then
    echo "FAIL: $objdump could not read $exe"
    exit 1
fi
# The resource types and how many of each, from the top level of the .rsrc directory tree.
types=$(sed -n '/The .rsrc Resource Directory section/,$p' <<<"$dump" |
    sed -n -E '/^[0-9a-f]+   Entry: ID: 0x0*([0-9a-f]+),/{s//\1/;s/ .*//;h;n;s/.*IDs: ([0-9]+).*/\1/;H;x;s/\n/ /;p}')
echo "$exe resource types (hex id, count):"
sed 's/^/  /' <<<"$types"
bad=0
count_of() { awk -v t="$1" '$1 == t { print $2 }' <<<"$types"; }
manifests=$(count_of 18)  # RT_MANIFEST
if [ "$manifests" != 1 ]; then
    echo "FAIL: expected one manifest resource, found ${manifests:-none}"
    bad=1
fi
[ -n "$(count_of 10)" ] || { echo "FAIL: no version resource"; bad=1; }  # RT_VERSION
[ -n "$(count_of e)" ] || { echo "FAIL: no icon"; bad=1; }  # RT_GROUP_ICON
if ! grep -aq 'requestedExecutionLevel level="asInvoker"' "$exe"; then
    echo "FAIL: the manifest does not ask to run as the invoking user"
    bad=1
fi
# The version strings are UTF-16: each name is followed by its value.
text=$(strings -el "$exe")
value_of() { awk -v k="$1" 'found { print; exit } $0 == k { found = 1 }' <<<"$text"; }
for pair in "FileVersion=$version" "ProductVersion=$version" "OriginalFilename=$filename" \
    "ProductName=Tavirel Puzzle" "CompanyName=Tavirel Puzzle team"; do
    key=${pair%%=*}
    want=${pair#*=}
    got=$(value_of "$key")
    echo "  $key: $got"
    if [ "$got" != "$want" ]; then
        echo "FAIL: $key is \"$got\", expected \"$want\""
        bad=1
    fi
done
[ "$bad" = 0 ] && echo "PASS: manifest, version $version and icon"
exit "$bad"
