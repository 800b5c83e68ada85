# Shared helpers of the end-to-end scripts. They run inside scripts/with-wine.sh (a private prefix and
# X display); each game gets its own Wine virtual desktop, closed again at the end of the test.

e2e_fail() { echo "FAIL: $*"; exit 1; }

# e2e_desktop NAME WxH PROGRAM [ARGS...]: starts PROGRAM in the virtual desktop NAME (made if new).
e2e_desktop() {
    local name=$1 size=$2
    shift 2
    "$TAVIREL_WINE" explorer "/desktop=$name,$size" "$@" </dev/null >/dev/null 2>&1 &
}

# e2e_game_folder BUILD ASSETS GAME SHOTS: a fresh game folder GAME (the built game and the probe with the
# native build's pack, pictures and clips) and an empty screenshot folder; enters GAME.
e2e_game_folder() {
    [ -f "$2/Tavirel.rf" ] || e2e_fail "no game folder at $2 (the native build makes it)"
    rm -rf "$3" "$4"
    mkdir -p "$3" "$4"
    cp -r "$2/." "$3/"
    cp "$1/Tavirel.exe" "$1/e2e_probe.exe" "$3/"
    cd "$3" || e2e_fail "no game folder"
}

# e2e_wait_desktop NAME: until the desktop's X window exists, so that a second program started in it (the
# probe) joins that desktop instead of racing to make it.
e2e_wait_desktop() {
    for _ in $(seq 1 200); do
        xdotool search --name "^$1 - Wine desktop\$" >/dev/null 2>&1 && return 0
        sleep 0.1
    done
    e2e_fail "the Wine desktop $1 did not appear"
}

# e2e_close_desktop NAME: ends every program of that desktop by closing the desktop window itself. A game
# held by one of its own windows (the finished picture, a question) outlives its desktop and would show
# in the next test's, so any game still running then is ended too; end-to-end tests run one at a time.
e2e_close_desktop() {
    local window pid
    window=$(xdotool search --name "^$1 - Wine desktop\$" 2>/dev/null | head -n 1)
    [ -n "$window" ] && xdotool windowclose "$window" 2>/dev/null
    sleep 0.5
    for pid in $(pgrep -f 'Tavirel\.exe'); do
        grep -qa explorer "/proc/$pid/cmdline" 2>/dev/null || kill -9 "$pid" 2>/dev/null
    done
}

# The game's helpers below act on the desktop $name and keep screenshots in $shots; the game folder is
# the current directory (the probe runs from there).
probe() { "$TAVIREL_WINE" explorer "/desktop=$name,1024x768" e2e_probe.exe "$@" 2>/dev/null | tr -d '\r'; }
shot() { import -window "$(xdotool search --name "^$name - Wine desktop\$" | head -n 1)" "$shots/$1.png"; }
desktop() { xdotool search --name "^$name - Wine desktop\$" | head -n 1; }
# Pointer moves are made relative to the desktop window; a click needs real movement before it.
click() {
    local w
    w=$(desktop)
    xdotool mousemove --window "$w" $(($1 + 7)) $(($2 + 7))
    sleep 0.1
    xdotool mousemove --window "$w" "$1" "$2"
    sleep 0.1
    xdotool click 1
    sleep 0.3
}

drag() {  # from x, y to x, y in steps, as a hand would
    local w=$(desktop) fx=$1 fy=$2 tx=$3 ty=$4
    xdotool mousemove --window "$w" $((fx + 5)) $((fy + 5))
    sleep 0.1
    xdotool mousemove --window "$w" "$fx" "$fy"
    sleep 0.2
    xdotool mousedown 1
    for step in 1 2 3 4 5 6 7 8 9 10; do
        xdotool mousemove --window "$w" $((fx + (tx - fx) * step / 10)) $((fy + (ty - fy) * step / 10))
        sleep 0.05
    done
    sleep 0.2
    xdotool mouseup 1
    sleep 0.8
}

# slide_to_end X Y: presses the slider button at X, Y until the slider's value rests at one of its ends.
# Clicks can be lost on a loaded machine, so the value is read back rather than the clicks counted.
slide_to_end() {
    local x=$1 y=$2 last="" now
    for _ in $(seq 1 40); do
        for _ in 1 2 3 4 5 6 7 8 9 10; do
            xdotool mousemove --window "$(desktop)" "$x" "$y" click 1
            sleep 0.05
        done
        sleep 0.3
        now=$(probe slider CWNDNEW "$x" "$y")
        read -r _ position minimum maximum <<<"$now"
        if [ "$now" = "$last" ] && { [ "$position" = "$minimum" ] || [ "$position" = "$maximum" ]; }; then
            echo "slider at $x, $y: $now"
            return 0
        fi
        last=$now
    done
    e2e_fail "the slider at $x, $y never came to rest at an end: $now"
}

# open_new_puzzle WHICH: the title bar's new-puzzle button until its screen shows. A press can be lost
# now and then under Wine (once in a dozen runs here); the screenshot of such a miss is kept.
open_new_puzzle() {
    for attempt in 1 2 3; do
        click 80 36
        probe wait CWNDNEW 5 | grep -q FOUND && return 0
        echo "new-puzzle press $attempt did not take"
        shot "missed-new-puzzle-$1-$attempt"
    done
    e2e_fail "the new-puzzle screen did not open ($1 game)"
}

# A game as the probe sees it: every piece (view, place, group, lit flag, depth) and the box names; and
# apart, the grid, hints and the finished flag (the play time runs on).
game_state() { probe state | grep -E '^(PIECE|BOX)'; }
game_line() { probe state | grep '^GAME' | awk '{print $2, $3, $5, $6}'; }

# join_once: a loose piece laid beside a true neighbour; they must join. Prints "NOPLAN" and returns 1
# when the scatter leaves no uncovered loose piece a place beside a neighbour.
join_once() {
    local plan
    for _ in 1 2 3; do
        plan=$(probe plan-join)
        grep -q PAIR <<<"$plan" && break
        sleep 1
    done
    read -r _ moved anchor < <(grep PAIR <<<"$plan") || { echo "$plan"; return 1; }
    read -r _ px py < <(grep PRESS <<<"$plan")
    read -r _ rx ry < <(grep RELEASE <<<"$plan")
    drag "$px" "$py" "$rx" "$ry"
    read -r _ ga gb < <(probe pair "$moved" "$anchor" | grep GROUPS)
    [ "$ga" != 0 ] && [ "$ga" = "$gb" ] || e2e_fail "pieces $moved and $anchor did not join (groups $ga $gb)"
    echo "joined $moved and $anchor"
}

# wait_gone CLASS: until no visible top-level window of that class is left.
wait_gone() {
    for _ in $(seq 1 100); do
        probe windows | grep -q "WINDOW: $1\$" || return 0
        sleep 0.1
    done
    e2e_fail "$1 did not close"
}

# start_game: Tavirel.exe in the 1024 x 768 desktop $name, past its opening clip to the main window.
start_game() {
    e2e_desktop "$name" 1024x768 Tavirel.exe
    e2e_wait_desktop "$name"
    probe wait CWNDVIDEO 20 >/dev/null
    click 512 384   # a click ends the opening clip
    probe wait CWNDBACK 20 | grep -q FOUND || e2e_fail "no main window"
}


# fewest_pieces_game: a new puzzle of the first picture with the fewest pieces, laid out on the table.
fewest_pieces_game() {
    local left top board
    open_new_puzzle first
    read -r _ left top _ _ < <(probe rect CWNDNEW | grep RECT) || e2e_fail "no new-puzzle panel"
    click $((left + 160)) $((top + 151))
    click $((left + 418)) $((top + 26))   # the pieces tab
    sleep 0.8
    slide_to_end $((left + 375)) $((top + 205))
    click $((left + 271)) $((top + 260))
    board=$(probe wait-board 90)
    grep -q "BOARD: [0-9]" <<<"$board" || e2e_fail "the puzzle was not laid out: $board"
}

# open_first_saved_game: a double click on the browser's first slot opens that game; the browser goes.
open_first_saved_game() {
    local sx sy w
    read -r _ sx sy < <(probe child CWNDFILE 300@CWNDPREVFILE | grep CENTRE) || e2e_fail "no first slot"
    w=$(desktop)
    xdotool mousemove --window "$w" $((sx + 9)) $((sy + 9))
    sleep 0.1
    xdotool mousemove --window "$w" "$sx" "$sy"
    sleep 0.2
    xdotool click --repeat 2 --delay 80 1
    wait_gone CWNDFILE
}

# smallest_game WHICH: a new puzzle of the first picture at the smallest size with the fewest pieces,
# which is 2 x 2, laid out on the table.
smallest_game() {
    local left top board rows cols
    open_new_puzzle "$1"
    sleep 0.5
    read -r _ left top _ _ < <(probe rect CWNDNEW | grep RECT) || e2e_fail "no new-puzzle panel"
    click $((left + 160)) $((top + 151))
    click $((left + 292)) $((top + 26))   # the size tab
    sleep 0.8
    slide_to_end $((left + 375)) $((top + 205))
    [ -n "${shots:-}" ] && shot "smallest-size-$1"
    click $((left + 418)) $((top + 26))   # a new size starts from the most pieces: back to the fewest
    sleep 0.8
    slide_to_end $((left + 375)) $((top + 205))
    click $((left + 271)) $((top + 260))
    board=$(probe wait-board 90)
    echo "$board"
    read -r _ rows cols <<<"$board"
    [ "$rows" = 2 ] && [ "$cols" = 2 ] || e2e_fail "the smallest size did not give 2 x 2 pieces: $board"
}

# finish_by_drops: every piece dragged beside the ones laid before, in the empty upper half of the table,
# until the completion clip shows. The clip lasts three seconds; a watcher started first sees it however
# slow the drags are. Returns 1 when the clip never showed.
finish_by_drops() {
    local plan moved px py rx ry anchor=-1 watcher found=1
    probe wait CWNDVIDEO 240 >clip-watch.txt &
    watcher=$!
    for _ in $(seq 1 12); do
        plan=$(probe plan-place "$anchor" 300 150)
        grep -q DONE <<<"$plan" && break
        read -r _ moved _ < <(grep PAIR <<<"$plan") || break
        read -r _ px py < <(grep PRESS <<<"$plan")
        read -r _ rx ry < <(grep RELEASE <<<"$plan")
        echo "laying piece $moved beside $anchor"
        drag "$px" "$py" "$rx" "$ry"
        [ "$anchor" = -1 ] && anchor=$moved
        grep -q FOUND clip-watch.txt && break
    done
    for _ in $(seq 1 150); do
        grep -q FOUND clip-watch.txt && break
        kill -0 "$watcher" 2>/dev/null || break
        sleep 0.1
    done
    kill "$watcher" 2>/dev/null
    wait "$watcher" 2>/dev/null
    grep -q FOUND clip-watch.txt && found=0
    return $found
}
