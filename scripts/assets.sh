#!/usr/bin/env bash
# Builds the ready-to-run game folder build/dist/Tavirel/: Tavirel.exe (32-bit, as shipped), the
# resource pack Tavirel.rf, Image\ with the default photographs and their captions, Video\, Music\,
# Help\, an empty folder\ for saved puzzles, and the credits. The contact sheet of the pack is written to
# build/assets-native/art/contact.png for review.
set -euo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
cd "$root"
bash scripts/install-deps.sh
jobs=$(nproc 2>/dev/null || echo 2)
dist="$root/build/dist/Tavirel"

echo "== artwork, photographs, clips, music and help pages"
cmake -S . -B build/assets-native -G Ninja -DCMAKE_BUILD_TYPE=Release -DTAVIREL_TESTS=OFF \
    -DTAVIREL_DIST_DIR="$dist" >/dev/null
cmake --build build/assets-native -j "$jobs" --target tavirel_assets

echo "== Tavirel.exe and about.exe"
cmake -S . -B build/assets-win32 -G Ninja -DCMAKE_TOOLCHAIN_FILE=cmake/mingw-w64-i686.cmake \
    -DCMAKE_BUILD_TYPE=Release -DTAVIREL_TESTS=OFF >/dev/null
cmake --build build/assets-win32 -j "$jobs" --target Tavirel about
cp build/assets-win32/Tavirel.exe build/assets-win32/about.exe "$dist/"

echo "== $dist"
ls "$dist"
echo "contact sheet: build/assets-native/art/contact.png"
