#!/usr/bin/env bash
# Runs a command with a private Wine prefix under the build folder, inside a private X display.
#   scripts/with-wine.sh [--screen WxHxD] COMMAND...
# The prefix is made once; Wine's services are started with their output on /dev/null first, so a
# caller that reads the command's output (ctest) is not left waiting on their pipes.
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

inner() {
    if [ ! -f "$WINEPREFIX/system.reg" ]; then
        mkdir -p "$WINEPREFIX"
        "$wine" wineboot --init </dev/null >/dev/null 2>&1
        wineserver -w
        "$wine" reg add 'HKCU\Software\Wine\WineDbg' /v ShowCrashDialog /t REG_DWORD /d 0 /f </dev/null >/dev/null 2>&1
        "$wine" reg add 'HKCU\Software\Wine\Drivers' /v Audio /t REG_SZ /d '' /f </dev/null >/dev/null 2>&1
        wineserver -w
    fi
    wineserver -p
    "$wine" wineboot </dev/null >/dev/null 2>&1
    # The desktop process starts with the first window otherwise, holding the caller's pipes open.
    "$wine" explorer.exe /desktop </dev/null >/dev/null 2>&1 &
    "$@"
    status=$?
    wineserver -k 2>/dev/null
    wineserver -w 2>/dev/null
    return $status
}
# xvfb-run is a POSIX shell script that drops exported bash functions, so the inner half re-enters us.
if [ "${TAVIREL_WINE_INNER:-}" = 1 ]; then
    inner "$@"
    exit $?
fi
export TAVIREL_WINE_INNER=1
exec xvfb-run -a -s "-screen 0 $screen -nolisten tcp" bash "${BASH_SOURCE[0]}" "$@"
