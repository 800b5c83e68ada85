#!/usr/bin/env bash
# Installs Tavirel Puzzle for the current user, no root needed: the game folder in
# ~/.local/share/tavirel-puzzle/ with a launcher that plays it under Wine in a desktop the size of the
# screen, a menu entry and its icon. Saved games, records and the resume file already there are kept.
set -euo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
cd "$root"
bash scripts/game-folder.sh
game="$root/build/run/Tavirel"
icon_source="$root/build/run64/res/tavirel.ico"

data="${XDG_DATA_HOME:-$HOME/.local/share}"
dest="$data/tavirel-puzzle"
launcher="$dest/tavirel-puzzle"
entry="$data/applications/tavirel-puzzle.desktop"
icon="$data/icons/hicolor/256x256/apps/tavirel-puzzle.png"
mkdir -p "$dest" "$(dirname "$entry")" "$(dirname "$icon")"

# The previous version's program files go; the player's files and the Wine prefix (slow to make) stay.
find "$dest" -mindepth 1 -maxdepth 1 ! -name folder ! -name Records.qmr ! -name Resume.epf ! -name tavirel.ini \
    ! -name wine -exec rm -rf {} +
# build/run/Tavirel may hold what was played under `make run`; only the program's own files are copied.
for item in "$game"/*; do
    case "$(basename "$item")" in
        folder | Records.qmr | Resume.epf | tavirel.ini) ;;
        *) cp -r "$item" "$dest/" ;;
    esac
done
mkdir -p "$dest/folder"

cat >"$launcher" <<'EOF'
#!/usr/bin/env bash
# Starts Tavirel Puzzle under Wine in a Wine desktop the size of the screen; the first start quietly
# makes the game's own Wine prefix beside it.
here=$(cd "$(dirname "$(readlink -f "${BASH_SOURCE[0]}")")" && pwd)
export WINEPREFIX="$here/wine"
export WINEDEBUG=-all WINEDLLOVERRIDES="winemenubuilder.exe=d"
wine=$(command -v wine || true)
[ -x /usr/lib/wine/wine64 ] && wine=/usr/lib/wine/wine64
if [ -z "$wine" ]; then
    echo "tavirel-puzzle: Wine is needed to play (sudo apt-get install wine wine64)" >&2
    exit 1
fi
if [ ! -f "$WINEPREFIX/system.reg" ]; then
    # Without a display Wine makes the prefix without showing its progress window.
    DISPLAY= "$wine" wineboot --init </dev/null >/dev/null 2>&1
    wineserver -w
fi
size=$(xdpyinfo 2>/dev/null | awk '/dimensions:/ && !size {size = $2} END {print size}')
[ -n "$size" ] || size=$(xrandr 2>/dev/null | awk '/\*/ && !size {size = $1} END {print size}')
[[ "$size" =~ ^[0-9]+x[0-9]+$ ]] || size=1024x768
cd "$here"
exec "$wine" explorer "/desktop=Tavirel,$size" Tavirel.exe </dev/null >/dev/null 2>&1
EOF
chmod +x "$launcher"

# The largest picture of the game's icon, enlarged to the size menus ask for.
magick=$(command -v convert-im6.q16 || command -v convert)
largest=$(identify -format '%w %p\n' "$icon_source" | sort -n | tail -n 1 | cut -d' ' -f2)
"$magick" "${icon_source}[$largest]" -filter Mitchell -resize 256x256 "PNG32:$icon"

# The entry names the icon by its path, so no icon cache needs refreshing.
escape() { sed -e 's/[\\&|]/\\&/g' <<<"$1"; }
sed -e "s|@LAUNCHER@|$(escape "$launcher")|" -e "s|@ICON@|$(escape "$icon")|" \
    assets/tavirel-puzzle.desktop.in >"$entry"

echo "Tavirel Puzzle is installed in $dest"
echo "Start it from your desktop's menu (Games) or with: $launcher"
