#!/usr/bin/env bash
# The player's choices with the real Tavirel.exe in a 1024 x 768 Wine desktop, driven with xdotool: the
# music window from the tools panel (a track chosen and playing, the master slider dragged, closed), the
# cloth chooser from the options panel stepped to the fourth cloth, the language chooser set to Spanish
# (the title bar and the new-puzzle screen in Spanish); then a second start finds Spanish and the fourth
# cloth again.
#   choices_test.sh BUILD_DIR GAME_FOLDER SCREENSHOT_FOLDER
set -uo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
. "$here/e2e_lib.sh"
build=$1
assets=$2
shots=$3
game="$build/e2e-choices-game"
e2e_game_folder "$build" "$assets" "$game" "$shots"
name=e2echoices
H=768
im=$(command -v convert-im6.q16 || command -v convert)
cmp=$(command -v compare-im6.q16 || command -v compare)

ini_value() { tr -d '\r' <tavirel.ini 2>/dev/null | sed -n "s/^$1=//p"; }
answer() { probe ask "$@" | sed -n 's/^ANSWER: //p'; }
# Differing pixels between the same area of two screenshots.
area_difference() {  # shot-a shot-b geometry
    "$im" "$shots/$1.png" -crop "$3" +repage "$shots/.area-a.png"
    "$im" "$shots/$2.png" -crop "$3" +repage "$shots/.area-b.png"
    "$cmp" -metric AE -fuzz 3% "$shots/.area-a.png" "$shots/.area-b.png" null: 2>&1 | awk '{printf "%d\n", $1}'
    rm -f "$shots/.area-a.png" "$shots/.area-b.png"
}
# A panel slides out when the pointer comes to its bar; then its button at X, Y is pressed until the
# screen of CLASS shows (a press can be lost on a loaded machine).
press_panel_button() {  # bar-x bar-y panel-class x y class
    local w
    w=$(desktop)
    for attempt in 1 2 3; do
        xdotool mousemove --window "$w" 500 300
        sleep 0.2
        xdotool mousemove --window "$w" "$1" "$2"
        probe wait-child CWNDBACK "$3" 5 | grep -q FOUND || continue
        sleep 0.3
        click "$4" "$5"
        probe wait "$6" 5 | grep -q FOUND && return 0
        echo "press $attempt for $6 did not take"
    done
    e2e_fail "the panel button at $4, $5 did not open $6"
}
# The new-puzzle screen's pieces page (a picture picked first) must show its labels in Spanish.
pieces_page_in_spanish() {  # shot name
    local left top labels
    read -r _ left top _ _ < <(probe rect CWNDNEW | grep RECT) || e2e_fail "no new-puzzle panel"
    click $((left + 160)) $((top + 151))
    for _ in 1 2 3; do
        click $((left + 418)) $((top + 26))   # the pieces tab
        sleep 0.8
        labels=$(probe labels CWNDNEW)
        grep -q 'Filas' <<<"$labels" && break
    done
    shot "$1"
    grep -q 'Filas' <<<"$labels" && grep -q 'mero de piezas' <<<"$labels" ||
        e2e_fail "the new-puzzle screen is not in Spanish: $(tr '\n' ' ' <<<"$labels")"
}
# The title bar's words (its new-puzzle button): the clock beside it runs, so only the button counts.
title_area=200x70+0+4
# A stretch of bare table below the title bar, clear of the bars and the side tabs.
table_area=300x120+360+420

start_game
sleep 0.5
shot 00-first-start
[ -z "$(ini_value Idioma)" ] || e2e_fail "a fresh game folder already has a language"

# --- music: the tools panel's third button
press_panel_button 10 300 CWNDHerramientas 25 $((78 + 3 * ((H - 78) / 5) - 35 + 25)) CWNDMUSICA
read -r _ ox oy < <(probe client CWNDMUSICA 0 0 | grep AT) || e2e_fail "no music window"
sleep 0.3
shot 01-music-window
track_x=$((ox + 262 + 25))
track_y=$((oy + 104 + 25))
for _ in 1 2 3; do
    click "$track_x" "$track_y"
    [ "$(answer CWNDMUSICA CQMANIM "$track_x" "$track_y" 1338)" = 10 ] && break
done
[ "$(answer CWNDMUSICA CQMANIM "$track_x" "$track_y" 1338)" = 10 ] ||
    e2e_fail "track 1 did not start (its button does not show the playing look)"
slider_x=$((ox + 69 + 18))
value=$(answer CWNDMUSICA CQMSLIDE "$slider_x" $((oy + 150)) 1346)
[ -n "$value" ] && [ "$value" != none ] || e2e_fail "no master slider"
echo "master volume at the start: $value"
thumb_y=$((oy + 100 + 136 - 136 * value / 99 + 10))
target_y=$((oy + 100 + 136 - 136 * 30 / 99 + 10))
drag "$slider_x" "$thumb_y" "$slider_x" "$target_y"
value=$(answer CWNDMUSICA CQMSLIDE "$slider_x" $((oy + 150)) 1346)
echo "master volume after the drag: $value"
[ "$value" -ge 26 ] && [ "$value" -le 33 ] || e2e_fail "the dragged master slider shows $value, not about 30"
shot 02-music-slider-dragged
click $((ox + 60)) $((oy + 256 + 20))   # close: the music goes on
wait_gone CWNDMUSICA

# --- the cloth: the options panel's button at its left end, three steps down to the fourth cloth
press_panel_button 500 760 CWNDOPCIONES 110 717 CWNDMOSAIC
read -r _ sx sy < <(probe child CWNDMOSAIC 103@CQMSROLL | grep CENTRE) || e2e_fail "no cloth selector"
lower_y=$((sy + 60))
for _ in $(seq 1 12); do
    position=$(answer CWNDMOSAIC CQMSROLL "$sx" "$sy" 1344)
    [ "$position" = -3 ] && break
    click "$sx" "$lower_y"
done
[ "$position" = -3 ] || e2e_fail "the selector did not come to the fourth cloth (position $position)"
sleep 0.5
shot 03-cloth-chooser-fourth
read -r _ cx cy < <(probe child CWNDMOSAIC 100 | grep CENTRE) || e2e_fail "no close button on the cloth chooser"
click "$cx" "$cy"
wait_gone CWNDMOSAIC
sleep 0.5
shot 04-table-in-the-fourth-cloth
[ "$(ini_value Tapete)" = 3 ] || e2e_fail "the fourth cloth was not remembered ($(ini_value Tapete))"
changed=$(area_difference 00-first-start 04-table-in-the-fourth-cloth "$table_area")
echo "table pixels changed by the cloth: $changed"
[ "${changed:-0}" -gt 20000 ] || e2e_fail "the table did not change its cloth ($changed pixels)"

# --- the language: the options panel's button at its right end, Español, OK
press_panel_button 500 760 CWNDOPCIONES 903 717 CWNDCAMBIOIDIOMA
read -r _ lx ly < <(probe client CWNDCAMBIOIDIOMA 0 0 | grep AT) || e2e_fail "no language chooser"
sleep 0.3
shot 05-language-chooser
click $((lx + 50 + 30)) $((ly + 60 + 12))
sleep 0.3
click $((lx + 60)) $((ly + 256 + 20))
wait_gone CWNDCAMBIOIDIOMA
[ "$(ini_value Idioma)" = 0 ] || e2e_fail "Spanish was not written to tavirel.ini ($(ini_value Idioma))"
sleep 0.5
shot 06-title-bar-in-spanish
changed=$(area_difference 00-first-start 06-title-bar-in-spanish "$title_area")
echo "title-bar pixels changed by the language: $changed"
[ "${changed:-0}" -gt 300 ] || e2e_fail "the title bar did not change language ($changed pixels)"
open_new_puzzle spanish
sleep 0.5
shot 07-new-puzzle-in-spanish
pieces_page_in_spanish 07-pieces-page-in-spanish
e2e_close_desktop "$name"

# --- a second start: Spanish and the fourth cloth again
start_game
sleep 0.5
shot 08-second-start
changed=$(area_difference 04-table-in-the-fourth-cloth 08-second-start "$table_area")
echo "table pixels unlike the chosen cloth after the restart: $changed"
[ "${changed:-99999}" -lt 2000 ] || e2e_fail "the second start lost the cloth ($changed pixels differ)"
changed=$(area_difference 06-title-bar-in-spanish 08-second-start "$title_area")
echo "title-bar pixels unlike the Spanish one after the restart: $changed"
[ "${changed:-99999}" -lt 200 ] || e2e_fail "the second start lost the language in the title bar ($changed)"
open_new_puzzle restarted
sleep 0.5
shot 09-new-puzzle-after-restart
pieces_page_in_spanish 09-pieces-page-after-restart
e2e_close_desktop "$name"
echo "screenshots in $shots"
echo "PASS"
