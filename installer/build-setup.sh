#!/usr/bin/env bash
# Stages the game and makes the Windows setup with makensis (used by `make dist` and the installer test).
#   build-setup.sh --version X.Y.Z --game DIR --bin32 DIR --bin64 DIR --icon FILE --stage DIR --out FILE
#                  [--amd64] [--compressor zlib|lzma]
# game: the game folder as it runs (pack, Image\, Video\, Music\, Help\, folder\, credits); any Tavirel.exe,
# about.exe or player files in it are left out. bin32/bin64: the folders holding each build's Tavirel.exe
# and about.exe. The file lists the uninstaller removes are made here from the same staged folder as the
# setup's contents, so the two cannot drift apart.
set -euo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
version="" game="" bin32="" bin64="" icon="" stage="" out="" amd64=0 compressor=""
while [ $# -gt 0 ]; do
    case $1 in
        --version) version=$2; shift 2 ;;
        --game) game=$2; shift 2 ;;
        --bin32) bin32=$2; shift 2 ;;
        --bin64) bin64=$2; shift 2 ;;
        --icon) icon=$2; shift 2 ;;
        --stage) stage=$2; shift 2 ;;
        --out) out=$2; shift 2 ;;
        --amd64) amd64=1; shift ;;
        --compressor) compressor=$2; shift 2 ;;
        *) echo "build-setup: unknown argument $1" >&2; exit 2 ;;
    esac
done
for need in version game bin32 bin64 icon stage out; do
    [ -n "${!need}" ] || { echo "build-setup: --$need is missing" >&2; exit 2; }
done
[[ $version =~ ^[0-9]+\.[0-9]+\.[0-9]+$ ]] || { echo "build-setup: version '$version' is not x.y.z" >&2; exit 2; }
[ -f "$game/Tavirel.rf" ] || { echo "build-setup: no game folder at $game" >&2; exit 1; }
for f in "$bin32/Tavirel.exe" "$bin32/about.exe" "$bin64/Tavirel.exe" "$bin64/about.exe" "$icon"; do
    [ -f "$f" ] || { echo "build-setup: $f is missing" >&2; exit 1; }
done
command -v makensis >/dev/null || { echo "build-setup: makensis is missing (Debian package nsis)" >&2; exit 1; }

rm -rf "$stage"
mkdir -p "$stage/bin32" "$stage/bin64" "$stage/game"
cp "$bin32/Tavirel.exe" "$bin32/about.exe" "$stage/bin32/"
cp "$bin64/Tavirel.exe" "$bin64/about.exe" "$stage/bin64/"
cp "$icon" "$stage/tavirel.ico"
cp -r "$game/." "$stage/game/"
# The executables come from bin32/bin64; what a player made in a played-in folder is theirs, not ours.
rm -f "$stage/game/Tavirel.exe" "$stage/game/about.exe" "$stage/game/Uninstall.exe" "$stage/game/Records.qmr" \
    "$stage/game/Resume.epf" "$stage/game/tavirel.ini" "$stage/game/Tavirel.ini" "$stage/game/folder/"*.epf
find "$stage/game" -name '*.tmp' -delete
mkdir -p "$stage/game/folder"

# NSIS strings: "$" is written "$$"; the Windows side of each path uses backslashes.
nsis_path() { sed -e 's/\$/$$/g' -e 's#/#\\#g' <<<"$1"; }
(
    cd "$stage/game"
    {
        echo "; Made by build-setup.sh from the staged game folder: what the setup installs."
        find . -mindepth 1 -type d | sed 's#^\./##' | LC_ALL=C sort | while read -r dir; do
            echo "CreateDirectory \"\$INSTDIR\\$(nsis_path "$dir")\""
        done
        find . -type f | sed 's#^\./##' | LC_ALL=C sort | while read -r file; do
            parent=$(dirname "$file")
            if [ "$parent" = . ]; then
                echo "SetOutPath \"\$INSTDIR\""
            else
                echo "SetOutPath \"\$INSTDIR\\$(nsis_path "$parent")\""
            fi
            echo "File \"$(sed 's/\$/$$/g' <<<"$stage/game/$file")\""
        done
    } >"$stage/install-files.nsh"
    {
        echo "; Made by build-setup.sh from the staged game folder: what the uninstaller removes."
        find . -type f | sed 's#^\./##' | LC_ALL=C sort | while read -r file; do
            echo "Delete \"\$INSTDIR\\$(nsis_path "$file")\""
        done
        # Deepest folders first; RMDir without /r leaves a folder that still holds something.
        find . -mindepth 1 -type d | sed 's#^\./##' | awk -F/ '{ print NF "\t" $0 }' | sort -k1,1nr -k2 |
            cut -f2- | while read -r dir; do
            echo "RMDir \"\$INSTDIR\\$(nsis_path "$dir")\""
        done
    } >"$stage/uninstall-files.nsh"
)

defines=(-DVERSION="$version" -DSTAGE="$stage" -DICON="$stage/tavirel.ico" -DOUTFILE="$out")
[ "$amd64" = 1 ] && defines+=(-DTARGET_AMD64)
[ -n "$compressor" ] && defines+=(-DCOMPRESSOR="$compressor")
mkdir -p "$(dirname "$out")"
if ! makensis -V2 -INPUTCHARSET UTF8 "${defines[@]}" "$here/tavirel.nsi" >"$stage/makensis.log" 2>&1; then
    cat "$stage/makensis.log" >&2
    echo "build-setup: makensis failed" >&2
    exit 1
fi
