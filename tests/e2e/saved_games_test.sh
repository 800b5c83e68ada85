#!/usr/bin/env bash
# Saved games with the real Tavirel.exe in a 1024 x 768 Wine desktop, driven from outside with xdotool:
# a join and another drop, a piece put in box 1 and the box renamed, the game saved under a typed name
# through the title bar's save button, one more drop, a new puzzle (answering the leave question), the saved game
# opened again through the browser by double click and found exactly as it was; then one more drop, the
# game process killed, started again, the resume question answered yes and the game found as it was.
#   saved_games_test.sh BUILD_DIR GAME_FOLDER SCREENSHOT_FOLDER
set -uo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
. "$here/e2e_lib.sh"
build=$1
assets=$2
shots=$3
game="$build/e2e-saved-game"
e2e_game_folder "$build" "$assets" "$game" "$shots"
name=e2esave

# change_once: a join when the scatter allows one, else a loose piece moved into the empty upper half of
# the table (the scatter fills the lower half): either way the game changes by one drop.
moves=0
change_once() {
    join_once && return 0
    local plan
    plan=$(probe plan-loose)
    read -r _ loose < <(grep LOOSE <<<"$plan") || e2e_fail "no loose piece to move: $plan"
    read -r _ px py < <(grep PRESS <<<"$plan")
    moves=$((moves + 1))
    drag "$px" "$py" $((200 + 90 * moves)) 170
    echo "moved piece $loose"
}

# --- A first game: the fewest pieces of the first picture.
start_game
sleep 1
probe windows | grep -q 'WINDOW: CWNDMENSAJE' && e2e_fail "a question came up with no game left to resume"
fewest_pieces_game
join_once || e2e_fail "no piece pair to join in a fresh scatter"
change_once

# A loose piece into box 1 through its side button, then the box shown and renamed.
plan=$(probe plan-loose)
read -r _ loose < <(grep LOOSE <<<"$plan") || e2e_fail "no loose piece for the box: $plan"
read -r _ px py < <(grep PRESS <<<"$plan")
drag "$px" "$py" 1011 297
probe state | grep -q "^PIECE $loose 0 " || e2e_fail "piece $loose did not go into box 1"
click 1011 297   # the side button shows box 1
probe wait CWNDBOX 5 | grep -q FOUND || e2e_fail "box 1 did not show"
read -r _ bx by < <(probe child CWNDBOX 11@CQMCOMMAND | grep CENTRE) || e2e_fail "no rename button"
click "$bx" "$by"
probe wait CWNDMENSAJE 10 | grep -q FOUND || e2e_fail "the rename question did not come"
sleep 0.5
shot 01-rename-question
xdotool type --delay 60 "Sky pieces"
xdotool key Return
wait_gone CWNDMENSAJE
probe state | grep -q '^BOX 0 Sky pieces$' || e2e_fail "box 1 was not renamed: $(probe state | grep BOX)"
probe changed | grep -q 'CHANGED: 1' || e2e_fail "the game does not count as changed after the drops"
shot 02-before-saving

# --- Saved through the title bar's save button under a typed name.
saved_state=$(game_state)
saved_line=$(game_line)
click 298 38
probe wait CWNDFILE 10 | grep -q FOUND || e2e_fail "the save button did not open the browser"
sleep 0.5
xdotool type --delay 60 "Meadow one"
sleep 0.3
shot 03-browser-save
probe text CWNDFILE | grep -q 'TEXT: Meadow one' || e2e_fail "the name field holds: $(probe text CWNDFILE)"
xdotool key Return
wait_gone CWNDFILE
[ -s "$game/folder/Meadow one.epf" ] || e2e_fail "no folder/Meadow one.epf after saving"
probe changed | grep -q 'CHANGED: 0' || e2e_fail "the game still counts as changed after saving"

# One more drop changes the game, so a new puzzle asks first.
change_once
open_new_puzzle_after_question() {
    for attempt in 1 2 3; do
        click 80 36
        probe wait CWNDMENSAJE 5 | grep -q FOUND && return 0
        echo "new-puzzle press $attempt did not take"
    done
    e2e_fail "the leave question did not come"
}
open_new_puzzle_after_question
sleep 0.5
shot 04-leave-question
xdotool key Return
probe wait CWNDNEW 10 | grep -q FOUND || e2e_fail "the new-puzzle screen did not follow the yes"
read -r _ left top _ _ < <(probe rect CWNDNEW | grep RECT) || e2e_fail "no new-puzzle panel"
click $((left + 160)) $((top + 151))
click $((left + 271)) $((top + 260))
probe wait-board 90 | grep -q "BOARD: [0-9]" || e2e_fail "the second puzzle was not laid out"
[ "$(game_state)" != "$saved_state" ] || e2e_fail "the new puzzle looks like the saved one"

# --- Opened again through the browser by a double click on its slot.
click 206 38
probe wait CWNDFILE 10 | grep -q FOUND || e2e_fail "the open button did not open the browser"
sleep 0.5
shot 05-browser-open
open_first_saved_game
sleep 0.5
shot 06-opened
opened_state=$(game_state)
if [ "$opened_state" != "$saved_state" ]; then
    diff <(echo "$saved_state") <(echo "$opened_state") | head -n 20
    e2e_fail "the opened game differs from the saved one"
fi
[ "$(game_line)" = "$saved_line" ] || e2e_fail "grid, hints or finished differ: $(game_line) against $saved_line"
echo "the opened game matches the saved one: $(grep -c PIECE <<<"$opened_state") pieces and six boxes"

# --- One more drop, kept in the resume file; the game process killed in mid-game. The file is awaited
# from after the drop: a write of the running clock may have come just before it.
change_once
marker="$game/after-last-drop"
touch "$marker"
for _ in $(seq 1 250); do
    [ -n "$(find "$game/Resume.epf" -newer "$marker" 2>/dev/null)" ] && break
    sleep 0.1
done
[ -n "$(find "$game/Resume.epf" -newer "$marker" 2>/dev/null)" ] || e2e_fail "the resume file was not written after the drop"
killed_state=$(game_state)
killed_line=$(game_line)
shot 07-before-kill
for pid in $(pgrep -f 'Tavirel\.exe'); do
    grep -qa explorer "/proc/$pid/cmdline" 2>/dev/null || kill -9 "$pid" 2>/dev/null
done
wait_gone CWNDBACK

start_game
probe wait CWNDMENSAJE 20 | grep -q FOUND || e2e_fail "no resume question at the next start"
sleep 0.5
shot 08-resume-question
xdotool key Return
wait_gone CWNDMENSAJE
probe wait-board 60 | grep -q "BOARD: [0-9]" || e2e_fail "the resumed game was not laid out"
sleep 0.5
shot 09-resumed
resumed_state=$(game_state)
if [ "$resumed_state" != "$killed_state" ]; then
    diff <(echo "$killed_state") <(echo "$resumed_state") | head -n 20
    e2e_fail "the resumed game differs from the one killed"
fi
[ "$(game_line)" = "$killed_line" ] || e2e_fail "grid, hints or finished differ after resuming"
probe changed | grep -q 'CHANGED: 1' || e2e_fail "a resumed game should count as changed (it is in no saved file)"
e2e_close_desktop "$name"
echo "screenshots in $shots"
echo "PASS"
