#!/usr/bin/env bash
# The start-up notices: a screen below 800 x 600 hears only about its size, an 8-bit screen only about
# its colours, and both speak English.
#   startup_notice_test.sh resolution|colour BUILD_DIR
set -uo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
. "$here/e2e_lib.sh"
kind=$1
build=$2
cd "$build" || e2e_fail "no build folder $build"

case "$kind" in
resolution)
    name=notice800x599
    e2e_desktop "$name" 800x599 Tavirel.exe
    sleep 1
    output=$("$TAVIREL_WINE" explorer "/desktop=$name,800x599" e2e_probe.exe notice 30 2>/dev/null)
    e2e_close_desktop "$name"
    expected="Tavirel Puzzle needs a minimal resolution of 800 x 600 to run. Please, adjust it and retry again."
    ;;
colour)
    # An 8-bit X screen of our own; the game and the probe share it through a desktop of its size.
    # A free display number, and the server awaited: a loaded machine can take seconds to start it.
    number=$((100 + RANDOM % 800))
    while [ -e "/tmp/.X$number-lock" ]; do number=$((number + 1)); done
    display=:$number
    Xvfb "$display" -screen 0 1024x768x8 -nolisten tcp >/dev/null 2>&1 &
    xvfb=$!
    for _ in $(seq 1 100); do
        xdpyinfo -display "$display" >/dev/null 2>&1 && break
        sleep 0.1
    done
    xdpyinfo -display "$display" >/dev/null 2>&1 || e2e_fail "the 8-bit X server did not start"
    export DISPLAY=$display
    name=notice8bit
    e2e_desktop "$name" 1024x768 Tavirel.exe
    sleep 1
    depth=$("$TAVIREL_WINE" explorer "/desktop=$name,1024x768" e2e_probe.exe screen 2>/dev/null)
    output=$("$TAVIREL_WINE" explorer "/desktop=$name,1024x768" e2e_probe.exe notice 30 2>/dev/null)
    e2e_close_desktop "$name"
    kill "$xvfb" 2>/dev/null
    echo "$depth"
    expected=" The configuration of the colors of your monitor is 8 bits or less. You need a minimum of the 16 bits to run Tavirel Puzzle."
    ;;
*) e2e_fail "unknown kind $kind" ;;
esac

echo "$output"
notice=$(grep '^NOTICE: ' <<<"$output" | sed 's/^NOTICE: //' | tr -d '\r')
[ "$notice" = "$expected" ] || e2e_fail "expected notice [$expected], got [$notice]"
# Only the notice: no main window and no clip window came up.
if grep -qE '^WINDOW: (CWNDBACK|CWNDVIDEO)' <<<"$output"; then e2e_fail "the game went on past the notice"; fi
echo "PASS"
