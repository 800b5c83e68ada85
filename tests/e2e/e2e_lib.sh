# Shared helpers of the end-to-end scripts. They run inside scripts/with-wine.sh (a private prefix and
# X display); each game gets its own Wine virtual desktop, closed again at the end of the test.

e2e_fail() { echo "FAIL: $*"; exit 1; }

# e2e_desktop NAME WxH PROGRAM [ARGS...]: starts PROGRAM in the virtual desktop NAME (made if new).
e2e_desktop() {
    local name=$1 size=$2
    shift 2
    "$TAVIREL_WINE" explorer "/desktop=$name,$size" "$@" </dev/null >/dev/null 2>&1 &
}

# e2e_close_desktop NAME: ends every program of that desktop by closing the desktop window itself.
e2e_close_desktop() {
    local window
    window=$(xdotool search --name "^$1 - Wine desktop\$" 2>/dev/null | head -n 1)
    [ -n "$window" ] && xdotool windowclose "$window" 2>/dev/null
    sleep 0.5
}
