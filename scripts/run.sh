#!/usr/bin/env bash
# Builds the game folder and starts Tavirel Puzzle under Wine, in a Wine desktop the size of your
# display. With no display at all it plays in a virtual one, saves screenshots into build/screenshots
# and says where. SHOTS=docs (make run SHOTS=docs) takes the screenshots even with a display and also
# puts the README's pictures into docs/.
set -euo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
cd "$root"
bash scripts/game-folder.sh
game="$root/build/run/Tavirel"

export WINEPREFIX="$root/build/run-prefix"
export WINEDEBUG=-all WINEDLLOVERRIDES="winemenubuilder.exe=d"
wine=$(command -v wine)
[ -x /usr/lib/wine/wine64 ] && wine=/usr/lib/wine/wine64
if [ ! -f "$WINEPREFIX/system.reg" ]; then
    "$wine" wineboot --init </dev/null >/dev/null 2>&1
    wineserver -w
fi

if [ -z "${SHOTS:-}" ] && [ -n "${DISPLAY:-}" ] && xdpyinfo >/dev/null 2>&1; then
    # awk reads to the end: an early exit would kill xdpyinfo by a closed pipe, and pipefail with it.
    size=$(xdpyinfo | awk '/dimensions:/ && !size {size = $2} END {print size}')
    echo "Starting Tavirel Puzzle in a $size Wine desktop."
    cd "$game"
    exec "$wine" explorer "/desktop=Tavirel,$size" Tavirel.exe
fi

# The screenshots are taken in a copy of the folder with nothing saved, so that no resume question or
# earlier saved game shows, and the player's own folder is left as it was.
shots="$root/build/screenshots"
scratch="$root/build/run/screenshot-game"
rm -rf "$shots" "$scratch"
mkdir -p "$shots" "$scratch"
cp -r "$game/." "$scratch/"
rm -rf "$scratch/Resume.epf" "$scratch/Records.qmr" "$scratch/folder"
mkdir -p "$scratch/folder"
echo "Playing in a virtual display and taking screenshots."
xvfb-run -a -s "-screen 0 1024x768x24 -nolisten tcp" bash -c '
    cd "$1"
    shots=$3
    "$2" explorer /desktop=Tavirel,1024x768 Tavirel.exe </dev/null >/dev/null 2>&1 &
    sleep 8
    window=$(xdotool search --name "Tavirel - Wine desktop" | head -n 1)
    shot() { import -window "$window" "$shots/$1.png"; }
    click() { xdotool mousemove --window "$window" $(($1 + 6)) $(($2 + 6)); sleep 0.1;
              xdotool mousemove --window "$window" "$1" "$2"; sleep 0.1; xdotool click 1; sleep 0.5; }
    shot start
    drag() { xdotool mousemove --window "$window" $(($1 + 5)) $(($2 + 5)); sleep 0.1;
             xdotool mousemove --window "$window" "$1" "$2"; sleep 0.2; xdotool mousedown 1
             for step in 1 2 3 4 5 6 7 8; do
                 xdotool mousemove --window "$window" $(($1 + ($3 - $1) * step / 8)) $(($2 + ($4 - $2) * step / 8))
                 sleep 0.05
             done
             sleep 0.2; xdotool mouseup 1; sleep 0.6; }
    # New puzzle, the third picture, start: the panel stands centred, 640 x 300.
    click 80 36
    sleep 1
    click $((192 + 382)) $((234 + 151))
    sleep 1
    shot new-puzzle
    click $((192 + 271)) $((234 + 260))
    sleep 3
    # A few pieces taken out of the heap, as a player would begin.
    drag 200 560 180 160
    drag 330 600 300 170
    drag 470 540 440 150
    drag 610 620 600 180
    drag 760 560 760 160
    drag 880 600 900 190
    shot puzzle
    # Saved under a name, then the saved games shown by Open.
    click 298 38
    sleep 1.5
    xdotool type --delay 60 "Dunes"
    xdotool key Return
    sleep 2
    click 206 38
    sleep 2
    shot saved-games
    xdotool key Escape
    sleep 0.5
    wineserver -k
' run "$scratch" "$wine" "$shots"
echo "Start screen: $shots/start.png"
echo "The new-puzzle screen: $shots/new-puzzle.png"
echo "A started puzzle: $shots/puzzle.png"
echo "The saved games: $shots/saved-games.png"

if [ "${SHOTS:-}" = docs ]; then
    # The README's pictures, in 256 colours so that each stays well under 300 KB.
    magick=$(command -v convert-im6.q16 || command -v convert)
    mkdir -p "$root/docs"
    for name in start puzzle saved-games; do
        "$magick" "$shots/$name.png" -dither None -colors 256 "PNG8:$root/docs/$name.png"
        echo "docs/$name.png: $(($(stat -c %s "$root/docs/$name.png") / 1024)) KB"
    done
fi
