#!/usr/bin/env bash
# Makes the release files in build/dist/: Tavirel-Puzzle-Setup-<version>.exe (the Windows setup, which
# installs the 64-bit game on 64-bit Windows and the 32-bit game on 32-bit Windows) and
# Tavirel-Puzzle-<version>-win32.zip (the 32-bit game folder as it runs, for playing without installing).
# build/dist/Tavirel/ is the game folder itself; the build trees stay beside it under build/.
set -euo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
cd "$root"
bash scripts/install-deps.sh
jobs=$(nproc 2>/dev/null || echo 2)
version=$(sed -nE 's/^project\(Tavirel VERSION ([0-9]+\.[0-9]+\.[0-9]+).*/\1/p' CMakeLists.txt)
[ -n "$version" ] || { echo "dist: no version in CMakeLists.txt's project() line" >&2; exit 1; }
out="$root/build/dist"
game="$out/Tavirel"
stage="$root/build/dist-stage"
logs="$root/build/logs"
mkdir -p "$out" "$logs"

step() {  # log name, command...: runs quietly, shows the log's end when it fails
    local log="$logs/dist-$1.log"
    shift
    if ! "$@" >"$log" 2>&1; then
        tail -n 40 "$log"
        echo "dist: failed, the whole log is $log" >&2
        exit 1
    fi
}
build() {  # tree, targets, cmake arguments...
    local tree=$1 targets=$2
    shift 2
    step "$tree-configure" cmake -S . -B "build/$tree" -G Ninja -DCMAKE_BUILD_TYPE=Release -DTAVIREL_TESTS=OFF "$@"
    step "$tree-build" cmake --build "build/$tree" -j "$jobs" --target $targets
}

echo "Making Tavirel Puzzle $version for Windows"
echo "== the game folder: artwork, photographs, clips, music and help pages"
build assets-native tavirel_assets -DTAVIREL_DIST_DIR="$game"
echo "== the 32-bit game"
build assets-win32 "Tavirel about" -DCMAKE_TOOLCHAIN_FILE=cmake/mingw-w64-i686.cmake
echo "== the 64-bit game"
build assets-win64 "Tavirel about" -DCMAKE_TOOLCHAIN_FILE=cmake/mingw-w64-x86_64.cmake
for pair in "assets-win32 pei-i386" "assets-win64 pei-x86-64"; do
    read -r tree format <<<"$pair"
    for exe in Tavirel.exe about.exe; do
        objdump=x86_64-w64-mingw32-objdump
        "$objdump" -f "build/$tree/$exe" | grep -q "file format $format" ||
            { echo "dist: build/$tree/$exe is not $format" >&2; exit 1; }
    done
done
cp build/assets-win32/Tavirel.exe build/assets-win32/about.exe "$game/"

echo "== the portable zip"
zip_name="Tavirel-Puzzle-$version-win32.zip"
rm -rf "$stage/zip"
mkdir -p "$stage/zip/Tavirel Puzzle"
cp -r "$game/." "$stage/zip/Tavirel Puzzle/"
# Only what we ship: nothing a game played in this folder may have written.
rm -f "$stage/zip/Tavirel Puzzle/"{Records.qmr,Resume.epf,tavirel.ini,Tavirel.ini} "$stage/zip/Tavirel Puzzle/folder/"*
find "$stage/zip" -name '*.tmp' -delete
rm -f "$out/$zip_name"
(cd "$stage/zip" && step zip zip -r -9 -X "$out/$zip_name" "Tavirel Puzzle")

echo "== the setup"
setup_name="Tavirel-Puzzle-Setup-$version.exe"
step setup bash installer/build-setup.sh --version "$version" --game "$game" --bin32 build/assets-win32 \
    --bin64 build/assets-win64 --icon build/assets-win64/res/tavirel.ico --stage "$stage/setup" --out "$out/$setup_name"

echo "Done:"
echo "  build/dist/$setup_name ($(du -h "$out/$setup_name" | cut -f1))"
echo "  build/dist/$zip_name ($(du -h "$out/$zip_name" | cut -f1))"
