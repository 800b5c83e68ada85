#!/usr/bin/env bash
# Makes the game folder that `make run` plays and `make install` copies, build/run/Tavirel/: the artwork,
# pictures, clips, music and help of the ready-to-run folder with a 64-bit build of Tavirel.exe and about.exe
# (only 64-bit Wine can be had here). Saved games, records and the resume file already in it are kept.
# The game's icon is left at build/run64/res/tavirel.ico.
set -euo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
cd "$root"
jobs=$(nproc 2>/dev/null || echo 2)
mkdir -p build/logs
log=build/logs/game-folder.log

# The builds talk a lot; their words are kept in the log and shown only when something fails.
quietly() {
    "$@" >>"$log" 2>&1 && return 0
    tail -n 30 "$log"
    echo "game-folder: '$*' failed; the whole story is in $log" >&2
    exit 1
}
: >"$log"
echo "Building the game folder (this takes a while the first time)."
quietly bash scripts/assets.sh
quietly cmake -S . -B build/run64 -G Ninja -DCMAKE_TOOLCHAIN_FILE=cmake/mingw-w64-x86_64.cmake \
    -DCMAKE_BUILD_TYPE=Release -DTAVIREL_TESTS=OFF
quietly cmake --build build/run64 -j "$jobs" --target Tavirel about

game="$root/build/run/Tavirel"
mkdir -p "$game"
# Everything but what the player made goes, so that a file dropped from the game does not linger.
find "$game" -mindepth 1 -maxdepth 1 ! -name folder ! -name Records.qmr ! -name Resume.epf ! -name tavirel.ini \
    -exec rm -rf {} +
[ -d "$game/folder" ] && find "$game/folder" -mindepth 1 ! -iname '*.epf' -exec rm -rf {} +
cp -r build/dist/Tavirel/. "$game/"
cp build/run64/Tavirel.exe build/run64/about.exe "$game/"
