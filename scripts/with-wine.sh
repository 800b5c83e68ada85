#!/usr/bin/env bash
# Runs a command with a private Wine prefix under the build folder, inside a private X display.
#   scripts/with-wine.sh [--screen WxHxD] COMMAND...
# The prefix is made once; Wine's services are started with their output on /dev/null first, so a
# caller that reads the command's output (ctest) is not left waiting on their pipes.
# A private PulseAudio server with a null sink runs beside it, so that Wine has wave devices and a mixer
# with real volume faders (the music tests set and read them); `pactl` reaches it through PULSE_SERVER.
set -uo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
screen=1024x768x24
if [ "${1:-}" = "--screen" ]; then screen=$2; shift 2; fi

export WINEPREFIX="${WINEPREFIX:-$root/build/wineprefix}"
export WINEDEBUG=-all
export WINEDLLOVERRIDES="winemenubuilder.exe=d"
export WINEARCH=win64
wine=$(command -v wine)
[ -x /usr/lib/wine/wine64 ] && wine=/usr/lib/wine/wine64
export TAVIREL_WINE="$wine"

# Starts the audio server in a folder of its own and waits until it answers; false when there is none.
start_audio() {
    command -v pulseaudio >/dev/null && command -v pactl >/dev/null || return 1
    audio_dir=$(mktemp -d "${TMPDIR:-/tmp}/tavirel-pulse.XXXXXX") || return 1
    export PULSE_RUNTIME_PATH="$audio_dir" PULSE_STATE_PATH="$audio_dir" PULSE_SERVER="unix:$audio_dir/native"
    pulseaudio -n --daemonize=no --exit-idle-time=-1 --disable-shm=yes --use-pid-file=no \
        -L "module-native-protocol-unix auth-anonymous=1 socket=$audio_dir/native" -L module-null-sink \
        </dev/null >"$audio_dir/server.log" 2>&1 &
    audio_pid=$!
    for _ in $(seq 100); do
        pactl info >/dev/null 2>&1 && return 0
        sleep 0.05
    done
    return 1
}

stop_audio() {
    [ -n "${audio_pid:-}" ] && kill "$audio_pid" 2>/dev/null && wait "$audio_pid" 2>/dev/null
    [ -n "${audio_dir:-}" ] && rm -rf "$audio_dir"
}

inner() {
    audio=""
    start_audio && audio=pulse
    if [ ! -f "$WINEPREFIX/system.reg" ]; then
        mkdir -p "$WINEPREFIX"
        "$wine" wineboot --init </dev/null >/dev/null 2>&1
        wineserver -w
        "$wine" reg add 'HKCU\Software\Wine\WineDbg' /v ShowCrashDialog /t REG_DWORD /d 0 /f </dev/null >/dev/null 2>&1
        wineserver -w
    fi
    wineserver -p
    # No server: an empty driver list keeps ALSA from printing on every sound.
    if [ "$(cat "$WINEPREFIX/.tavirel-audio" 2>/dev/null)" != "[$audio]" ]; then
        "$wine" reg add 'HKCU\Software\Wine\Drivers' /v Audio /t REG_SZ /d "$audio" /f </dev/null >/dev/null 2>&1
        echo "[$audio]" >"$WINEPREFIX/.tavirel-audio"
    fi
    "$wine" wineboot </dev/null >/dev/null 2>&1
    # The desktop process starts with the first window otherwise, holding the caller's pipes open.
    "$wine" explorer.exe /desktop </dev/null >/dev/null 2>&1 &
    "$@"
    status=$?
    wineserver -k 2>/dev/null
    wineserver -w 2>/dev/null
    stop_audio
    return $status
}
# xvfb-run is a POSIX shell script that drops exported bash functions, so the inner half re-enters us.
if [ "${TAVIREL_WINE_INNER:-}" = 1 ]; then
    inner "$@"
    exit $?
fi
export TAVIREL_WINE_INNER=1
exec xvfb-run -a -s "-screen 0 $screen -nolisten tcp" bash "${BASH_SOURCE[0]}" "$@"
