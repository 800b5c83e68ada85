#!/usr/bin/env bash
# The end of a game with the real Tavirel.exe in a 1024 x 768 Wine desktop, driven from outside with
# xdotool: a 2 x 2 puzzle finished by drops, the completion clip, the finished picture with its title,
# yes to the wallpaper question (the bitmap in the Windows folder and the desktop registry values), a
# typed name that Records.qmr then holds at rank 1 with the score the honour roll showed; then the honour
# roll opened from the tools panel shows the name, and its wipe button removes the file.
#   reward_test.sh BUILD_DIR GAME_FOLDER SCREENSHOT_FOLDER
set -uo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
. "$here/e2e_lib.sh"
build=$1
assets=$2
shots=$3
game="$build/e2e-reward-game"
e2e_game_folder "$build" "$assets" "$game" "$shots"
name=e2ereward
player="Ada Lovelace"
W=1024
H=768

u32() { od -An -tu4 -j "$2" -N4 "$1" | tr -d ' '; }
s32() { od -An -td4 -j "$2" -N4 "$1" | tr -d ' '; }
# The name of rank R in Records.qmr, up to its NUL.
record_name() { dd if=Records.qmr bs=1 skip=$((16 + 28 * $1)) count=24 2>/dev/null | tr '\0' '\n' | head -n 1; }
record_score() { s32 Records.qmr $((16 + 28 * $1 + 24)); }
press_return() { xdotool key Return; }

windows_dir="$WINEPREFIX/drive_c/windows"
rm -f "$windows_dir/Tavirel.bmp"
"$TAVIREL_WINE" reg delete 'HKCU\Control Panel\Desktop' /v Wallpaper /f >/dev/null 2>&1
rm -f Records.qmr

start_game
smallest_game reward
shot 01-small-puzzle
finish_by_drops || e2e_fail "the completion clip did not start ($(probe pair 0 1 | tr '\n' ' '))"
shot 02-completion-clip
read -r _ rows cols elapsed hints finished < <(probe state | grep '^GAME')
[ "$finished" = 1 ] || e2e_fail "the puzzle is not finished: $rows $cols $elapsed $hints $finished"
# The clock stopped with the last piece: the score is the one the honour roll must show.
n=$((rows * cols))
expected=$(( (n - hints) * 100 * n * 10 / (elapsed / 7 + 1) ))
echo "finished in $elapsed s with $hints hints: score $expected"

probe wait CWNDIMGPREV 30 | grep -q FOUND || e2e_fail "the finished picture did not show after the clip"
sleep 0.5
shot 03-finished-picture
# The title is written on the first paint in its warm colour, in the band above the picture.
im=$(command -v convert-im6.q16 || command -v convert)
title_pixels=$("$im" "$shots/03-finished-picture.png" -crop "${W}x70+0+$((H / 2 - 280))" +repage \
    -fill black +opaque 'rgb(216,146,100)' -fill white -opaque 'rgb(216,146,100)' -format '%[fx:int(mean*w*h)]' info:)
echo "title pixels: $title_pixels"
[ "${title_pixels:-0}" -gt 150 ] || e2e_fail "no title over the finished picture ($title_pixels pixels of its colour)"
click $(((W - 800) / 2 + 669 + 25)) $(((H - 600) / 2 + 496 + 25))   # the close button
wait_gone CWNDIMGPREV
probe wait CWNDMENSAJE 20 | grep -q FOUND || e2e_fail "no wallpaper question"
shot 04-wallpaper-question
press_return
for _ in $(seq 1 100); do [ -f "$windows_dir/Tavirel.bmp" ] && break; sleep 0.1; done
[ -f "$windows_dir/Tavirel.bmp" ] || e2e_fail "no wallpaper bitmap in the Windows folder"
size=$(stat -c %s "$windows_dir/Tavirel.bmp")
[ "$(head -c 2 "$windows_dir/Tavirel.bmp")" = BM ] || e2e_fail "the wallpaper is not a bitmap"
[ "$(u32 "$windows_dir/Tavirel.bmp" 2)" = "$size" ] || e2e_fail "the wallpaper's file size field is not its size"
[ "$(u32 "$windows_dir/Tavirel.bmp" 10)" = 54 ] || e2e_fail "the wallpaper's pixels do not start at 54"
ww=$(s32 "$windows_dir/Tavirel.bmp" 18)
wh=$(s32 "$windows_dir/Tavirel.bmp" 22)
echo "wallpaper $ww x $wh, $size bytes"
{ [ "$ww" = $W ] && [ "$wh" -le $H ]; } || { [ "$wh" = $H ] && [ "$ww" -le $W ]; } ||
    e2e_fail "the wallpaper is $ww x $wh, not fitted to the $W x $H screen"
reg=$("$TAVIREL_WINE" reg query 'HKCU\Control Panel\Desktop' 2>/dev/null | tr -d '\r')
grep -Eiq 'Wallpaper[[:space:]]+REG_SZ[[:space:]]+C:\\windows\\Tavirel.bmp' <<<"$reg" ||
    e2e_fail "the desktop's Wallpaper value is not the new bitmap: $(grep -i wallpaper <<<"$reg")"
grep -Eq 'TileWallpaper[[:space:]]+REG_SZ[[:space:]]+0$' <<<"$reg" ||
    e2e_fail "TileWallpaper is not \"0\": $(grep -i TileWallpaper <<<"$reg")"

probe wait CWNDHONOR 20 | grep -q FOUND || e2e_fail "the honour roll did not open for a first record"
probe wait CWNDMENSAJE 20 | grep -q FOUND || e2e_fail "no name question"
sleep 0.3
xdotool type --delay 60 "$player"
for _ in $(seq 1 30); do
    probe text CWNDMENSAJE | grep -q "TEXT: $player\$" && break
    sleep 0.2
done
probe text CWNDMENSAJE | grep -q "TEXT: $player\$" || e2e_fail "the name did not reach the name field"
shot 05-name-typed
press_return
wait_gone CWNDMENSAJE
for _ in $(seq 1 50); do [ -f Records.qmr ] && break; sleep 0.1; done
[ "$(stat -c %s Records.qmr 2>/dev/null)" = 296 ] || e2e_fail "Records.qmr was not written whole"
[ "$(record_name 0)" = "$player" ] || e2e_fail "rank 1 holds \"$(record_name 0)\", not the typed name"
[ "$(record_score 0)" = "$expected" ] || e2e_fail "rank 1 holds score $(record_score 0), not $expected"
[ "$(record_name 1)" = "-----------------------" ] || e2e_fail "rank 2 is not empty: $(record_name 1)"
labels=$(probe labels CWNDHONOR)
grep -q "^LABEL .* $player\$" <<<"$labels" || e2e_fail "the honour roll does not show the name: $labels"
grep -q "^LABEL .* $expected\$" <<<"$labels" || e2e_fail "the honour roll does not show the score $expected"
sleep 0.3
shot 06-honour-roll-with-the-record
close_x=$((W * 8640652 / 10000000 + 25))
wipe_x=$((W * 7421866 / 10000000 + 25))
button_y=$((H * 8354218 / 10000000 + 25))
click "$close_x" "$button_y"
wait_gone CWNDHONOR
shot 07-back-at-the-table

# The tools panel slides out at the left edge; its fourth button opens the honour roll.
w=$(desktop)
for attempt in 1 2 3; do
    xdotool mousemove --window "$w" 300 300
    sleep 0.2
    xdotool mousemove --window "$w" 10 300
    probe wait-child CWNDBACK CWNDHerramientas 5 | grep -q FOUND || continue
    sleep 0.3
    click 25 $((78 + 4 * ((H - 78) / 5) - 35 + 25))
    probe wait CWNDHONOR 5 | grep -q FOUND && break
    echo "honour-roll press $attempt did not take"
done
probe wait CWNDHONOR 5 | grep -q FOUND || e2e_fail "the tools panel's honour-roll button opened nothing"
grep -q "^LABEL .* $player\$" <<<"$(probe labels CWNDHONOR)" || e2e_fail "the reopened honour roll lost the name"
sleep 0.3
shot 08-honour-roll-from-the-tools
click "$wipe_x" "$button_y"
for _ in $(seq 1 30); do [ -f Records.qmr ] || break; sleep 0.1; done
[ -f Records.qmr ] && e2e_fail "the wipe button left Records.qmr"
labels=$(probe labels CWNDHONOR)
grep -q "^LABEL .* $player\$" <<<"$labels" && e2e_fail "the wiped honour roll still shows the name"
[ "$(grep -c -- '-----------------------$' <<<"$labels")" = 10 ] || e2e_fail "the wiped roll does not show ten empty rows"
sleep 0.3
shot 09-honour-roll-wiped
click "$close_x" "$button_y"
wait_gone CWNDHONOR
e2e_close_desktop "$name"
echo "screenshots in $shots"
echo "PASS"
