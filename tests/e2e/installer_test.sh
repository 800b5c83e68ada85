#!/usr/bin/env bash
# The Windows setup in a fresh Wine prefix: a silent install puts the game, the Start-menu and desktop
# shortcuts and the uninstall entry where a player's Windows keeps them; the installed game reaches its
# main window; a saved game and the record table survive an install over it and a silent uninstall,
# which removes everything else; an uninstall asked to remove the player's files leaves no folder.
#   installer_test.sh BUILD_DIR GAME_FOLDER WIN32_BUILD_DIR WORK_DIR
# The setup is made here from BUILD_DIR's 64-bit game and WIN32_BUILD_DIR's 32-bit one (the 64-bit one
# again when there is no 32-bit build). It is built for 64-bit Windows because only 64-bit Wine runs on
# the build machines; the script and contents are those of the setup `make dist` makes.
set -uo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
root=$(cd "$here/../.." && pwd)
. "$here/e2e_lib.sh"
build=$1
assets=$2
win32=$3
work=$4
shots="$work/screenshots"
name=e2einstall
key='HKCU\Software\Microsoft\Windows\CurrentVersion\Uninstall\TavirelPuzzle'

[ -f "$assets/Tavirel.rf" ] || e2e_fail "no game folder at $assets (the native build makes it)"
version=$(sed -nE 's/^#define TAVIREL_VERSION_TEXT "(.*)"/\1/p' "$build/generated/app/version.h")
[ -n "$version" ] || e2e_fail "no version in $build/generated/app/version.h"
bin32=$win32
if [ ! -f "$win32/Tavirel.exe" ] || [ ! -f "$win32/about.exe" ]; then
    echo "no 32-bit build at $win32: the setup carries the 64-bit game in both places"
    bin32=$build
fi
rm -rf "$work"
mkdir -p "$work" "$shots"
setup="$work/Tavirel-Puzzle-Setup-$version.exe"
bash "$root/installer/build-setup.sh" --version "$version" --game "$assets" --bin32 "$bin32" --bin64 "$build" \
    --icon "$build/res/tavirel.ico" --stage "$work/stage" --out "$setup" --amd64 --compressor zlib ||
    e2e_fail "the setup was not built"
echo "built $(basename "$setup") ($(du -k "$setup" | cut -f1) KiB)"

# A prefix of our own, as a new player's Windows: nothing installed, nothing remembered. HOME points
# inside it too, so that Wine's desktop folder is not the real one of whoever runs the test.
export WINEPREFIX="$work/prefix"
export HOME="$work/home"
mkdir -p "$HOME"
wine=$TAVIREL_WINE
stop_wine() { wineserver -k 2>/dev/null; wineserver -w 2>/dev/null; }
trap stop_wine EXIT
# Wine's services inherit the first call's output: start them with theirs on /dev/null, before any
# call whose output is read.
start_wine() { "$wine" wineboot </dev/null >/dev/null 2>&1; }
"$wine" wineboot --init </dev/null >/dev/null 2>&1
wineserver -w
"$wine" reg add 'HKCU\Software\Wine\WineDbg' /v ShowCrashDialog /t REG_DWORD /d 0 /f </dev/null >/dev/null 2>&1
"$wine" reg add 'HKCU\Software\Wine\Drivers' /v Audio /t REG_SZ /d '' /f </dev/null >/dev/null 2>&1
start_wine

value() {  # the data of one value of the uninstall key, or nothing
    "$wine" reg query "$key" /v "$1" </dev/null 2>/dev/null | tr -d '\r' |
        sed -nE "s/^ +$1 +REG_[A-Z_]+ +(.*)$/\1/p"
}
run_setup() {  # the setup, silently, waiting for it to finish
    "$wine" "$setup" /S </dev/null >/dev/null 2>&1 || e2e_fail "the setup ($1) ended with status $?"
}
# Wine links the user's Desktop folder to $HOME: follow links.
shortcuts() { find -L "$WINEPREFIX/drive_c/users" -name 'Tavirel Puzzle.lnk' 2>/dev/null | LC_ALL=C sort; }

echo "== silent install"
run_setup "first install"
location=$(value InstallLocation)
echo "installed in: $location"
case $location in
    *'\AppData\Local\Programs\Tavirel Puzzle') ;;
    *) e2e_fail "not installed in the per-user programs folder: '$location'" ;;
esac
inst=$("$wine" winepath -u "$location" </dev/null 2>/dev/null | tr -d '\r')
[ -d "$inst" ] || e2e_fail "the install folder $inst does not exist"
for f in Tavirel.exe about.exe Tavirel.rf Uninstall.exe Credits.txt Video/0.avi Music/Track1.wav Help/1/Index.htm; do
    [ -f "$inst/$f" ] || e2e_fail "$f was not installed"
done
[ -d "$inst/folder" ] || e2e_fail "folder\\ was not made"
want=$(cd "$assets/Image" && ls | LC_ALL=C sort | tr '\n' ' ')
have=$(cd "$inst/Image" && ls | LC_ALL=C sort | tr '\n' ' ')
[ -n "$want" ] && [ "$want" = "$have" ] || e2e_fail "Image\\ differs from the game folder's: '$have'"
cmp -s "$inst/Tavirel.rf" "$assets/Tavirel.rf" || e2e_fail "Tavirel.rf differs from the game folder's"
machine=$(x86_64-w64-mingw32-objdump -f "$inst/Tavirel.exe" | sed -nE 's/.*file format (.*)/\1/p')
echo "Tavirel.exe: $machine"
[ "$machine" = pei-x86-64 ] || e2e_fail "64-bit Windows got the '$machine' Tavirel.exe"
cmp -s "$inst/Tavirel.exe" "$build/Tavirel.exe" || e2e_fail "Tavirel.exe is not the 64-bit build's"
cmp -s "$inst/about.exe" "$build/about.exe" || e2e_fail "about.exe is not the 64-bit build's"

user_folder=${inst%/AppData/Local/Programs/Tavirel Puzzle}
[ -f "$user_folder/AppData/Roaming/Microsoft/Windows/Start Menu/Programs/Tavirel Puzzle.lnk" ] ||
    e2e_fail "no Start-menu shortcut: $(shortcuts)"
[ -f "$user_folder/Desktop/Tavirel Puzzle.lnk" ] || e2e_fail "no desktop shortcut: $(shortcuts)"
echo "shortcuts: Start menu and desktop"

[ "$(value DisplayName)" = "Tavirel Puzzle" ] || e2e_fail "DisplayName is '$(value DisplayName)'"
[ "$(value DisplayVersion)" = "$version" ] || e2e_fail "DisplayVersion is '$(value DisplayVersion)'"
[ -n "$(value Publisher)" ] || e2e_fail "no Publisher"
[ "$(value DisplayIcon)" = "$location\\Tavirel.exe,0" ] || e2e_fail "DisplayIcon is '$(value DisplayIcon)'"
[ "$(value UninstallString)" = "\"$location\\Uninstall.exe\"" ] ||
    e2e_fail "UninstallString is '$(value UninstallString)'"
[ "$(value QuietUninstallString)" = "\"$location\\Uninstall.exe\" /S" ] ||
    e2e_fail "QuietUninstallString is '$(value QuietUninstallString)'"
[ "$(value NoModify)" = 0x1 ] || e2e_fail "NoModify is '$(value NoModify)'"
[ "$(value NoRepair)" = 0x1 ] || e2e_fail "NoRepair is '$(value NoRepair)'"
size=$(value EstimatedSize)
[ -n "$size" ] && [ $((size)) -gt 10000 ] || e2e_fail "EstimatedSize is '$size' (KiB)"
echo "uninstall entry: $(value DisplayName) $(value DisplayVersion), $((size)) KiB, by $(value Publisher)"

echo "== the installed game starts"
(cd "$inst" && e2e_desktop "$name" 1024x768 Tavirel.exe)
e2e_wait_desktop "$name"
cd "$build" || e2e_fail "no build folder"
sleep 2
click 512 384   # a click ends the opening clip
probe wait CWNDBACK 30 | grep -q FOUND || { shot no-main-window; e2e_fail "the installed game showed no main window"; }
sleep 1
shot installed-main-screen
e2e_close_desktop "$name"
# Nothing of the game may still run when the setup replaces its files.
stop_wine
start_wine

echo "== install over it keeps the player's files"
mkdir -p "$work/player"
head -c 4000 /dev/urandom >"$work/player/Mine.epf"
head -c 296 /dev/urandom >"$work/player/Records.qmr"
cp "$work/player/Mine.epf" "$inst/folder/Mine.epf"
cp "$work/player/Records.qmr" "$inst/Records.qmr"
run_setup "install over the first"
cmp -s "$inst/folder/Mine.epf" "$work/player/Mine.epf" || e2e_fail "the saved game changed in the install over"
cmp -s "$inst/Records.qmr" "$work/player/Records.qmr" || e2e_fail "Records.qmr changed in the install over"
[ -f "$inst/Tavirel.exe" ] && [ -f "$inst/Uninstall.exe" ] || e2e_fail "the install over lost program files"

# An NSIS uninstaller runs from a copy of itself and returns at once: wait for its work to be done.
uninstall() {  # options...
    "$wine" "$inst/Uninstall.exe" "$@" </dev/null >/dev/null 2>&1
    for _ in $(seq 1 120); do
        [ -z "$(value DisplayName)" ] && [ ! -e "$inst/Uninstall.exe" ] && return 0
        sleep 0.5
    done
    e2e_fail "the uninstaller ($*) did not finish"
}

echo "== silent uninstall keeps them"
uninstall /S
sleep 1
for f in Tavirel.exe about.exe Tavirel.rf Uninstall.exe Credits.txt Image Video Music Help; do
    [ ! -e "$inst/$f" ] || e2e_fail "$f is still there after the uninstall"
done
[ -z "$(shortcuts)" ] || e2e_fail "shortcuts left after the uninstall: $(shortcuts)"
"$wine" reg query "$key" </dev/null >/dev/null 2>&1 && e2e_fail "the uninstall key is still there"
cmp -s "$inst/folder/Mine.epf" "$work/player/Mine.epf" || e2e_fail "the uninstall did not keep the saved game"
cmp -s "$inst/Records.qmr" "$work/player/Records.qmr" || e2e_fail "the uninstall did not keep Records.qmr"
left=$(cd "$inst" && find . -mindepth 1 | LC_ALL=C sort | tr '\n' ' ')
echo "left in the install folder: $left"
# The game, started above, wrote its settings beside itself: a player's file, kept like the others.
grep -q "AppPath=" "$inst/tavirel.ini" 2>/dev/null || e2e_fail "the game did not keep its settings beside itself"
[ "$left" = "./Records.qmr ./folder ./folder/Mine.epf ./tavirel.ini " ] ||
    e2e_fail "the uninstall left more or less: $left"

echo "== uninstall asked to remove the player's files"
run_setup "install after the uninstall"
cmp -s "$inst/folder/Mine.epf" "$work/player/Mine.epf" || e2e_fail "the new install changed the kept saved game"
uninstall /S /REMOVEDATA
sleep 1
[ ! -e "$inst" ] || e2e_fail "the install folder is still there: $(cd "$inst" && find . | tr '\n' ' ')"

# The prefix is large; a failed run keeps it for a look.
stop_wine
trap - EXIT
rm -rf "$WINEPREFIX" "$work/stage"
echo "PASS"
