#!/usr/bin/env bash
# The playing screen at 800 x 600, 1024 x 768 and 1920 x 1080: the main screen and a started puzzle,
# each kept as a screenshot and read back by pixels, so that no bare black strip is left between the
# bars, the table and the side buttons.
#   screens_test.sh BUILD_DIR GAME_FOLDER SCREENSHOT_FOLDER
set -uo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
. "$here/e2e_lib.sh"
build=$1
assets=$2
shots=$3
game="$build/e2e-screens-game"
[ -f "$assets/Tavirel.rf" ] || e2e_fail "no game folder at $assets (the native build makes it)"
rm -rf "$game" "$shots"
mkdir -p "$game" "$shots"
im=$(command -v convert-im6.q16 || command -v convert)

# An X screen of our own as large as the largest desktop: a desktop larger than its X screen would be cut
# off in the screenshots. A free display number, and the server awaited.
number=$((100 + RANDOM % 800))
while [ -e "/tmp/.X$number-lock" ]; do number=$((number + 1)); done
Xvfb ":$number" -screen 0 1920x1080x24 -nolisten tcp >/dev/null 2>&1 &
xvfb=$!
trap 'kill "$xvfb" 2>/dev/null' EXIT
for _ in $(seq 1 100); do
    xdpyinfo -display ":$number" >/dev/null 2>&1 && break
    sleep 0.1
done
xdpyinfo -display ":$number" >/dev/null 2>&1 || e2e_fail "the X server for the large desktops did not start"
export DISPLAY=:$number

# The probe joins the desktop of the size under test.
probe() { "$TAVIREL_WINE" explorer "/desktop=$name,$size" e2e_probe.exe "$@" 2>/dev/null | tr -d '\r'; }

# The parts of the screen that no child covers, "x y width height" each, from the places the game gives
# its children: title bar 0..78, tools bar 25 wide on the left, options bar 25 tall at the foot, the table
# at (49, 78) of (W - 77) x (H - 128), the info button 40 x 40 at (W - 40, 80) and the six side buttons
# 50 x 46 from (W - 25, H / 2 - 112) down.
frame_areas() {
    local w=$1 h=$2 top=$(($2 / 2 - 112))
    echo "25 78 24 $((h - 128))"                      # between the tools bar and the table
    echo "25 $((h - 50)) $((w - 25)) 25"              # under the table
    echo "$((w - 28)) 78 28 2"                        # right of the table, above the info button
    echo "$((w - 28)) 120 28 $((top - 120))"          # between the info button and the side buttons
    echo "$((w - 28)) $top 3 276"                     # beside the side buttons
    echo "$((w - 28)) $((top + 276)) 28 $((h - 50 - top - 276))"  # below the side buttons
}

# check_frame SHOT W H: in each area, the darkest pixel's brightest channel; pure or near black fails.
# The first desktop on a fresh X screen can be slow to come, or lost while Wine's services still start:
# the game is started once more if its desktop has not appeared.
start_desktop() {
    for _ in 1 2 3; do
        e2e_desktop "$name" "$size" Tavirel.exe
        for _ in $(seq 1 150); do
            xdotool search --name "^$name - Wine desktop\$" >/dev/null 2>&1 && return 0
            sleep 0.1
        done
        echo "the desktop $name did not appear; starting the game again"
    done
    e2e_fail "the Wine desktop $name did not appear"
}

bad=0
check_frame() {
    local file="$shots/$1.png" x y aw ah darkest
    [ -s "$file" ] || { echo "FAIL: no screenshot $file"; bad=1; return; }
    while read -r x y aw ah; do
        darkest=$("$im" "$file" -crop "${aw}x${ah}+${x}+${y}" +repage -separate -evaluate-sequence max \
            -format '%[fx:int(minima*255+0.5)]' info: 2>/dev/null)
        if [ -z "$darkest" ] || [ "$darkest" -lt 16 ]; then
            echo "FAIL: $1: black in the frame area ${aw}x${ah}+${x}+${y} (darkest channel ${darkest:-none})"
            bad=1
        fi
    done < <(frame_areas "$2" "$3")
    echo "$1: frame areas checked"
}

for size in 800x600 1024x768 1920x1080; do
    w=${size%x*}
    h=${size#*x}
    name=e2escreens$w
    # A game folder per size: the game of the size before may still hold its pack open as it ends.
    mkdir -p "$game/$size"
    cp -r "$assets/." "$game/$size/"
    cp "$build/Tavirel.exe" "$build/e2e_probe.exe" "$game/$size/"
    cd "$game/$size" || e2e_fail "no game folder for $size"
    start_desktop
    probe wait CWNDVIDEO 10 >/dev/null
    for _ in 1 2 3; do
        click $((w / 2)) $((h / 2))   # a click ends the opening clip
        probe wait CWNDBACK 10 | grep -q FOUND && break
    done
    probe wait CWNDBACK 1 | grep -q FOUND || { shot "no-main-window-$size"; e2e_fail "no main window at $size"; }
    sleep 1
    shot "main-$size"
    check_frame "main-$size" "$w" "$h"

    open_new_puzzle "$size"
    sleep 0.5
    read -r _ left top _ _ < <(probe rect CWNDNEW | grep RECT) || e2e_fail "no new-puzzle panel at $size"
    click $((left + 160)) $((top + 151))   # the first picture
    click $((left + 418)) $((top + 26))    # the pieces tab
    sleep 0.8
    slide_to_end $((left + 375)) $((top + 205))
    click $((left + 271)) $((top + 260))   # start
    board=$(probe wait-board 90)
    grep -q "BOARD: [0-9]" <<<"$board" || e2e_fail "no puzzle was laid out at $size: $board"
    xdotool mousemove --window "$(desktop)" $((w / 2)) $((h / 3))   # off the bars, so no panel is out
    sleep 1
    shot "puzzle-$size"
    check_frame "puzzle-$size" "$w" "$h"
    e2e_close_desktop "$name"
done

echo "screenshots in $shots"
[ "$bad" = 0 ] || e2e_fail "black strips remain (screenshots in $shots)"
echo "PASS"
