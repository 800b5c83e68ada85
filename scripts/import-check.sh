#!/usr/bin/env bash
# Checks that a shipped executable imports only DLLs every Windows has: the game is meant to run from
# its folder with nothing else installed, so a MinGW runtime DLL (libstdc++, libgcc, libwinpthread) or
# any other library in the import table is a failure. Prints the imports either way.
# Usage: import-check.sh OBJDUMP EXE
set -uo pipefail
objdump=$1
exe=$2

# The system DLLs the game and its About program use, and the usual system ones beside them.
allowed="kernel32.dll user32.dll gdi32.dll msvcrt.dll winmm.dll msvfw32.dll shell32.dll advapi32.dll
         ole32.dll oleaut32.dll comdlg32.dll comctl32.dll winspool.drv shlwapi.dll version.dll uxtheme.dll
         ntdll.dll ws2_32.dll imm32.dll"

if [ ! -f "$exe" ]; then
    echo "FAIL: $exe does not exist (build it first: the 32-bit game is built in build/win32)"
    exit 1
fi
if ! dump=$("$objdump" -p "$exe" 2>&1); then
    echo "$dump" | tail -n 5
    echo "FAIL: $objdump could not read $exe"
    exit 1
fi
mapfile -t dlls < <(sed -n -E 's/^[[:space:]]*DLL Name:[[:space:]]*(.*[^[:space:]])[[:space:]]*$/\1/p' <<<"$dump")
echo "$exe imports:"
printf '  %s\n' "${dlls[@]}"
# Every Windows program imports KERNEL32; none found means the table was not read.
bad=0
seen_kernel=0
for dll in "${dlls[@]}"; do
    lower=${dll,,}
    [ "$lower" = kernel32.dll ] && seen_kernel=1
    case "$lower" in
    api-ms-win-*.dll) continue ;;
    esac
    if ! tr -s ' \n' '\n\n' <<<"$allowed" | grep -Fxq -- "$lower"; then
        echo "FAIL: $exe imports $dll, which is not a system DLL"
        bad=1
    fi
done
if [ "$seen_kernel" = 0 ]; then
    echo "FAIL: no KERNEL32.dll among the imports of $exe: the import table was not read"
    exit 1
fi
[ "$bad" = 0 ] && echo "PASS: only system DLLs"
exit "$bad"
