#!/usr/bin/env bash
# Removes what `make install` put in place: the launcher, the menu entry, the icon, the game's Wine
# prefix and the program files. The player's saved games (folder/*.epf), Records.qmr, Resume.epf and
# tavirel.ini stay in ~/.local/share/tavirel-puzzle/.
set -euo pipefail
data="${XDG_DATA_HOME:-$HOME/.local/share}"
dest="$data/tavirel-puzzle"
rm -f "$data/applications/tavirel-puzzle.desktop" "$data/icons/hicolor/256x256/apps/tavirel-puzzle.png"
if [ ! -d "$dest" ]; then
    echo "Tavirel Puzzle is not installed in $dest"
    exit 0
fi
find "$dest" -mindepth 1 -maxdepth 1 ! -name folder ! -name Records.qmr ! -name Resume.epf ! -name tavirel.ini \
    -exec rm -rf {} +
[ -d "$dest/folder" ] && find "$dest/folder" -mindepth 1 ! -iname '*.epf' -exec rm -rf {} +
[ -d "$dest/folder" ] && rmdir --ignore-fail-on-non-empty "$dest/folder"
rmdir --ignore-fail-on-non-empty "$dest"
if [ -d "$dest" ]; then
    echo "Tavirel Puzzle is uninstalled. Your saved games, records and settings stay in $dest:"
    (cd "$dest" && find . -type f | sed 's|^\./|  |' | sort)
else
    echo "Tavirel Puzzle is uninstalled."
fi
