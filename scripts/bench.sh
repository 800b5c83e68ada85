#!/usr/bin/env bash
# The benchmarks: a native Release build in build/bench (no tests) and its benchmark program; then the
# frame time of a drag in the real board window, under Wine in a 1920 x 1080 desktop with the largest
# puzzle, and the opening of the saved-puzzle browser on 1,000 saved games. Extra arguments go to the
# native program, e.g. `bash scripts/bench.sh --benchmark_filter=Compose`.
set -euo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
cd "$root"
bash scripts/install-deps.sh
cmake -S . -B build/bench -G Ninja -DCMAKE_BUILD_TYPE=Release -DTAVIREL_BENCH=ON >/dev/null
cmake --build build/bench --target tavirel_bench tavirel_assets
build/bench/tavirel_bench "$@"

echo "== drag frame time under Wine, 1920 x 1080"
cmake -S . -B build/bench64 -G Ninja -DCMAKE_TOOLCHAIN_FILE=cmake/mingw-w64-x86_64.cmake \
    -DCMAKE_BUILD_TYPE=Release >/dev/null
cmake --build build/bench64 --target drag_frame_bench >/dev/null
pack="Z:$(sed 's|/|\\|g' <<<"$root/build/bench/dist/Tavirel/Tavirel.rf")"
WINEPREFIX="$root/build/bench-prefix" bash scripts/with-wine.sh --screen 1920x1080x24 bash -c \
    "cd build/bench64 && \"\$TAVIREL_WINE\" explorer /desktop=bench,1920x1080 drag_frame_bench.exe '$pack' 400 | tr -d '\r'"

echo "== opening the saved-puzzle browser on 1,000 saved games under Wine, 800 x 600"
cmake --build build/bench64 --target browser_open_bench >/dev/null
folder="$root/build/bench-browser"
rm -rf "$folder"
mkdir -p "$folder"
cp -r build/bench/dist/Tavirel/Image "$folder/"
folderWin="Z:$(sed 's|/|\\|g' <<<"$folder")\\"
WINEPREFIX="$root/build/bench-prefix" bash scripts/with-wine.sh --screen 800x600x24 bash -c \
    "cd build/bench64 && \"\$TAVIREL_WINE\" explorer /desktop=bench,800x600 browser_open_bench.exe '$pack' '$folderWin' 1000 | tr -d '\r'"
