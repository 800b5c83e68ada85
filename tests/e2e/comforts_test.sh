#!/usr/bin/env bash
# Undo, redo, the keys and gathering the edges with the real Tavirel.exe in a 1024 x 768 Wine desktop,
# driven from outside with xdotool: two joins by drags, Ctrl+Z twice (both undone, every piece as it
# was), Ctrl+Y once (the first join back), E (exactly the loose edge pieces of the table in box 1, the box
# shown), then Ctrl+S saves under a typed name and Ctrl+O opens that game again as it was.
#   comforts_test.sh BUILD_DIR GAME_FOLDER SCREENSHOT_FOLDER
set -uo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
. "$here/e2e_lib.sh"
build=$1
assets=$2
shots=$3
game="$build/e2e-comforts-game"
e2e_game_folder "$build" "$assets" "$game" "$shots"
name=e2ecomfort

# until_state EXPECTED WHAT: the game's pieces as EXPECTED, waiting for the key to have been handled.
until_state() {
    local now=""
    for _ in $(seq 1 30); do
        now=$(game_state)
        [ "$now" = "$1" ] && return 0
        sleep 0.2
    done
    diff <(echo "$1") <(echo "$now") | head -n 20
    e2e_fail "$2"
}

# The loose edge pieces lying on the table (view 6): row 0 or the last, column 0 or the last, group 0.
loose_edges() {
    probe state | awk '/^GAME/ {rows = $2; cols = $3}
        /^PIECE/ && $3 == 6 && $6 == 0 {
            r = int($2 / cols); c = $2 % cols
            if (r == 0 || r == rows - 1 || c == 0 || c == cols - 1) print $2
        }' | sort -n
}
in_box_one() { probe state | awk '/^PIECE/ && $3 == 0 {print $2}' | sort -n; }

start_game
fewest_pieces_game
click 600 200   # the table has the keyboard
before_joins=$(game_state)
join_once || e2e_fail "no piece pair to join in a fresh scatter"
after_first=$(game_state)
join_once || e2e_fail "no second pair to join"
after_second=$(game_state)
shot 01-two-joins

xdotool key ctrl+z
until_state "$after_first" "Ctrl+Z did not undo the second join"
xdotool key ctrl+z
until_state "$before_joins" "a second Ctrl+Z did not undo the first join"
shot 02-both-undone
echo "both joins undone"
xdotool key ctrl+y
until_state "$after_first" "Ctrl+Y did not redo the first join"
echo "the first join redone"
[ "$after_second" != "$after_first" ] || e2e_fail "the second join changed nothing"

edges=$(loose_edges)
[ -n "$edges" ] || e2e_fail "no loose edge piece on the table to gather"
xdotool key e
for _ in $(seq 1 30); do
    [ "$(in_box_one)" = "$edges" ] && break
    sleep 0.2
done
if [ "$(in_box_one)" != "$edges" ]; then
    echo "expected in box 1: $(echo $edges)"
    echo "found in box 1: $(echo $(in_box_one))"
    e2e_fail "E did not gather exactly the loose edge pieces into box 1"
fi
[ -z "$(loose_edges)" ] || e2e_fail "loose edge pieces are left on the table: $(echo $(loose_edges))"
probe wait CWNDBOX 5 | grep -q FOUND || e2e_fail "box 1 was not shown"
sleep 0.5
shot 03-edges-gathered
echo "gathered $(echo "$edges" | wc -l) edge pieces into box 1"

# Save with Ctrl+S under a typed name; the box has the keyboard now, which is as good.
gathered=$(game_state)
gathered_line=$(game_line)
for attempt in 1 2 3; do
    xdotool key ctrl+s
    probe wait CWNDFILE 5 | grep -q FOUND && break
    [ "$attempt" = 3 ] && e2e_fail "Ctrl+S did not open the browser"
done
sleep 0.5
xdotool type --delay 60 "Keys game"
sleep 0.3
shot 04-saving
xdotool key Return
wait_gone CWNDFILE
[ -s "$game/folder/Keys game.epf" ] || e2e_fail "no folder/Keys game.epf after Ctrl+S"

# One more move, undone again, so the game is as saved but has changed since: Ctrl+O asks first.
xdotool key ctrl+z
until_state "$after_first" "Ctrl+Z did not undo the gathering"
xdotool key ctrl+o
probe wait CWNDMENSAJE 10 | grep -q FOUND || e2e_fail "Ctrl+O on a changed game did not ask first"
xdotool key Return
probe wait CWNDFILE 10 | grep -q FOUND || e2e_fail "Ctrl+O did not open the browser after the yes"
sleep 0.5
shot 05-opening
open_first_saved_game
until_state "$gathered" "the game opened with Ctrl+O differs from the one saved with Ctrl+S"
[ "$(game_line)" = "$gathered_line" ] || e2e_fail "grid, hints or finished differ after opening"
sleep 0.5
shot 06-opened
echo "the game opened with Ctrl+O is the one saved with Ctrl+S"
e2e_close_desktop "$name"
echo "screenshots in $shots"
echo "PASS"
