#!/usr/bin/env bash
# Printing through a real spooler. "cups": a private CUPS server on this machine's loopback, with a
# cups-pdf printer as its default, receives the photograph and the information print from the game's
# own code under Wine; each PDF is rendered and looked at pixel by pixel (banners, the photograph's
# place and colours, the caption, the lines of text). "no-printer": with no server to reach, both jobs
# must end silently. Runs inside scripts/with-wine.sh (an X display); Wine gets a prefix of its own
# here, so that no other Wine program of the run can hold the printer list of another moment.
#   print_test.sh cups|no-printer BUILD_DIR GAME_FOLDER PAGES_FOLDER
set -uo pipefail
mode=$1
build=$(cd "$2" && pwd)
assets=$(cd "$3" 2>/dev/null && pwd) || { echo "FAIL: no game folder at $3"; exit 1; }
pages=$4
work="$build/print-test-$mode"
probe_exe="$build/print_probe.exe"

fail() {
    echo "FAIL: $*"
    exit 1
}

cupsd_pid=""
watchdog_pid=""
wine_prefix="$build/print-wineprefix"
cleanup() {
    [ -n "$watchdog_pid" ] && kill "$watchdog_pid" 2>/dev/null
    if [ -n "$cupsd_pid" ]; then
        kill "$cupsd_pid" 2>/dev/null
        for _ in $(seq 1 50); do kill -0 "$cupsd_pid" 2>/dev/null || break; sleep 0.1; done
        kill -9 "$cupsd_pid" 2>/dev/null
    fi
    if [ -d "$wine_prefix" ]; then
        WINEPREFIX="$wine_prefix" wineserver -k 2>/dev/null
        WINEPREFIX="$wine_prefix" wineserver -w 2>/dev/null
    fi
}
trap cleanup EXIT

[ -n "${TAVIREL_WINE:-}" ] || fail "run me through scripts/with-wine.sh"
[ -f "$probe_exe" ] || fail "no $probe_exe (build the print_probe target)"
[ -f "$assets/Tavirel.rf" ] || fail "no game folder at $assets (the native build makes it)"
im=$(command -v convert-im6.q16 || command -v convert) || fail "ImageMagick's convert is missing"

# A game folder of our own: the pack and a few photographs, one of them turned on its side (tall),
# one without its caption.
rm -rf "$work"
mkdir -p "$work/game/Image" "$work/pdf"
ln -s "$assets/Tavirel.rf" "$work/game/Tavirel.rf"
cp "$assets/Image/Daisy11.bmp" "$assets/Image/Daisy11.txt" "$assets/Image/Meadow06.bmp" \
   "$assets/Image/Meadow06.txt" "$assets/Image/Storm09.bmp" "$work/game/Image/" || fail "photographs missing"
"$im" "$assets/Image/Daisy11.bmp" -rotate 90 -type TrueColor "BMP3:$work/game/Image/TallDaisy.bmp" ||
    fail "cannot make the tall photograph"
printf 'A yellow daisy, turned on its side to stand tall.' > "$work/game/Image/TallDaisy.txt"
game_windows="Z:$(echo "$work/game" | tr '/' '\\')"

# Wine in a prefix of its own, its services started with their output away from ours.
export WINEPREFIX="$wine_prefix"
if [ ! -f "$WINEPREFIX/system.reg" ]; then
    mkdir -p "$WINEPREFIX"
    "$TAVIREL_WINE" wineboot --init </dev/null >/dev/null 2>&1
    wineserver -w
    "$TAVIREL_WINE" reg add 'HKCU\Software\Wine\WineDbg' /v ShowCrashDialog /t REG_DWORD /d 0 /f \
        </dev/null >/dev/null 2>&1
    "$TAVIREL_WINE" reg add 'HKCU\Software\Wine\Drivers' /v Audio /t REG_SZ /d '' /f </dev/null >/dev/null 2>&1
    wineserver -w
fi
wineserver -p
# Should this script be killed before its own cleanup runs (a test timeout), its Wine server and its
# CUPS server go with it.
watch_script() {
    while kill -0 "$1" 2>/dev/null; do sleep 1; done
    [ -f "$work/cupsd.pid" ] && kill "$(cat "$work/cupsd.pid")" 2>/dev/null
    wineserver -k 2>/dev/null
}
watch_script $$ </dev/null >/dev/null 2>&1 &
watchdog_pid=$!
"$TAVIREL_WINE" wineboot </dev/null >/dev/null 2>&1
# The desktop process would otherwise start with the probe's first window and hold its output open.
"$TAVIREL_WINE" explorer.exe /desktop </dev/null >/dev/null 2>&1 &

probe() { "$TAVIREL_WINE" "$probe_exe" "$@" 2>/dev/null | tr -d '\r'; }
value() { grep -m1 "^$1 " <<<"$2" | cut -d' ' -f2-; }

# A loopback port nobody listens on.
free_port() {
    local port
    for _ in $(seq 1 50); do
        port=$((20000 + RANDOM % 40000))
        (exec 3<>"/dev/tcp/127.0.0.1/$port") 2>/dev/null || { echo "$port"; return 0; }
    done
    return 1
}

if [ "$mode" = no-printer ]; then
    port=$(free_port) || fail "no free port"
    # libcups asks only this server, where nobody answers: no printer at all.
    export CUPS_SERVER="127.0.0.1:$port"
    out=$(probe photo "$game_windows" 'Image\Daisy11.bmp')
    echo "$out"
    [ "$(value caps "$out")" = none ] || fail "Wine found a printer with no server to reach"
    [ "$(value printed "$out")" = 0 ] || fail "the photograph job did not end without printing"
    [ "$(value lit "$out")" = 0 ] || fail "the wait window lit squares without a printer"
    [ "$(value other-windows "$out")" = 0 ] || fail "a window showed when printing failed"
    out=$(probe info "$game_windows")
    echo "$out"
    [ "$(value printed "$out")" = 0 ] || fail "the information job did not end without printing"
    [ "$(value other-windows "$out")" = 0 ] || fail "a window showed when printing failed"
    echo "PASS: both print jobs ended silently without a printer"
    exit 0
fi

[ "$mode" = cups ] || fail "unknown mode $mode"
for tool in cupsd lpadmin lpstat pdftoppm pdfinfo; do
    command -v "$tool" >/dev/null || fail "$tool is missing (Debian packages cups, cups-client, poppler-utils)"
done
ppd=/usr/share/ppd/cups-pdf/CUPS-PDF_opt.ppd
[ -f "$ppd" ] && [ -x /usr/lib/cups/backend/cups-pdf ] || fail "cups-pdf is missing (printer-driver-cups-pdf)"

# The private server: its own configuration, spool, state and logs under the build folder, listening
# on the loopback only, nothing shared or browsed.
cups="$work/cups"
mkdir -p "$cups/etc/ppd" "$cups/etc/ssl" "$cups/spool/tmp" "$cups/cache" "$cups/state" "$cups/log" \
         "$cups/pdf-spool"
write_config() {
    cat >"$cups/etc/cups-files.conf" <<EOF
ServerRoot $cups/etc
RequestRoot $cups/spool
TempDir $cups/spool/tmp
CacheDir $cups/cache
StateDir $cups/state
AccessLog $cups/log/access_log
ErrorLog $cups/log/error_log
PageLog $cups/log/page_log
SystemGroup root
EOF
    cat >"$cups/etc/cupsd.conf" <<EOF
LogLevel info
Listen 127.0.0.1:$1
Browsing No
DefaultShared No
WebInterface No
DefaultAuthType None
<Location />
  Order allow,deny
  Allow from 127.0.0.1
</Location>
<Policy default>
  <Limit All>
    Order deny,allow
    Allow from 127.0.0.1
  </Limit>
</Policy>
EOF
}
# cups-pdf reads its settings only from /etc/cups/cups-pdf.conf. The server runs in a mount namespace
# of its own where our settings stand in that file's place, so the PDFs come here and the machine's
# file is never touched. Where namespaces are not allowed, the PDFs go where the machine's settings say.
cat >"$cups/cups-pdf.conf" <<EOF
Out $work/pdf
AnonDirName $work/pdf
Spool $cups/pdf-spool
Log $cups/log
Grp root
EOF
pdf_folder="$work/pdf"
start_cupsd() {
    if unshare --mount --propagation private true 2>/dev/null && [ -f /etc/cups/cups-pdf.conf ]; then
        unshare --mount --propagation private sh -c \
            "mount --bind '$cups/cups-pdf.conf' /etc/cups/cups-pdf.conf && exec cupsd -f -c '$cups/etc/cupsd.conf' -s '$cups/etc/cups-files.conf'" \
            >"$cups/log/cupsd.out" 2>&1 &
    else
        pdf_folder=$(sed -n 's/^Out[[:space:]]*//p' /etc/cups/cups-pdf.conf | sed "s|\${HOME}|$HOME|")
        echo "no mount namespace here: the PDFs go to $pdf_folder"
        cupsd -f -c "$cups/etc/cupsd.conf" -s "$cups/etc/cups-files.conf" >"$cups/log/cupsd.out" 2>&1 &
    fi
    cupsd_pid=$!
}
for attempt in 1 2 3; do
    port=$(free_port) || fail "no free port"
    write_config "$port"
    start_cupsd
    for _ in $(seq 1 100); do
        lpstat -h "127.0.0.1:$port" -r 2>/dev/null | grep -q "is running" && break
        kill -0 "$cupsd_pid" 2>/dev/null || break
        sleep 0.1
    done
    lpstat -h "127.0.0.1:$port" -r 2>/dev/null | grep -q "is running" && break
    kill "$cupsd_pid" 2>/dev/null
    cupsd_pid=""
done
[ -n "$cupsd_pid" ] || { cat "$cups/log/cupsd.out" "$cups/log/error_log" 2>/dev/null; fail "cupsd did not start"; }
echo "$cupsd_pid" >"$work/cupsd.pid"
echo "cupsd $cupsd_pid on 127.0.0.1:$port"
export CUPS_SERVER="127.0.0.1:$port"
lpadmin -p TavirelPDF -v cups-pdf:/ -P "$ppd" -E 2>/dev/null || fail "lpadmin could not add the PDF printer"
lpadmin -d TavirelPDF || fail "lpadmin could not make the PDF printer the default"
lpstat -d

caps=$(probe caps)
echo "$caps"
read -r -a numbers <<<"$(value caps "$caps")"
[ "${#numbers[@]}" = 6 ] || fail "Wine sees no default printer through CUPS"

rm -rf "$pages"
mkdir -p "$pages"
bad=0
# print_job NAME EXPECTED_PAGES PROBE_ARGS...: one job, its new PDF awaited (60 s at most) until whole,
# taken into the work folder and rendered. PDFs that were there before the job are left alone.
print_job() {
    local name=$1 want=$2 out pdf="" size previous="" count before
    shift 2
    mkdir -p "$pdf_folder"
    before=$(find "$pdf_folder" -maxdepth 1 -name '*.pdf' | sort)
    out=$(probe "$@")
    job_output=$out
    echo "$out" | sed "s/^/  $name: /"
    [ "$(value printed "$out")" = 1 ] || { echo "FAIL: $name: the job reports nothing printed"; bad=1; return 1; }
    for _ in $(seq 1 300); do
        pdf=$(find "$pdf_folder" -maxdepth 1 -name '*.pdf' | sort | comm -13 <(echo "$before") - | head -n 1)
        if [ -n "$pdf" ] && pdfinfo "$pdf" >/dev/null 2>&1; then
            size=$(stat -c %s "$pdf")
            [ "$size" = "$previous" ] && break
            previous=$size
        fi
        sleep 0.2
    done
    if [ -z "$pdf" ] || ! pdfinfo "$pdf" >/dev/null 2>&1; then
        echo "FAIL: $name: no PDF came out of the printer"
        tail -n 20 "$cups/log/error_log" 2>/dev/null
        bad=1
        return 1
    fi
    mv "$pdf" "$work/$name.pdf"
    count=$(pdfinfo "$work/$name.pdf" | sed -n 's/^Pages:[[:space:]]*//p')
    [ "$count" = "$want" ] || { echo "FAIL: $name: $count pages, $want expected"; bad=1; }
    pdftoppm -r 100 -png "$work/$name.pdf" "$pages/$name"
    pdftoppm -r 100 "$work/$name.pdf" "$work/$name"
    return 0
}

# check NAME PROBE_ARGS...: the pixel checker's verdict on one rendered page.
check() {
    local name=$1 out
    shift
    out=$(probe "$@")
    echo "$out" | sed "s/^/  $name: /"
    grep -q '^result: ok' <<<"$out" || { echo "FAIL: $name: the page does not look right"; bad=1; }
}

for photo in Daisy11 Meadow06 Storm09 TallDaisy; do
    if print_job "$photo" 1 photo "$game_windows" "Image\\$photo.bmp"; then
        [ "$(value lit "$job_output")" = 5 ] || { echo "FAIL: $photo: the wait window did not light five squares"; bad=1; }
        ppm=$(ls "$work/$photo"*.ppm | head -n 1)
        check "$photo" check-photo "$game_windows" "Image\\$photo.bmp" "Z:$(echo "$ppm" | tr '/' '\\')" \
            "${numbers[@]}"
    fi
done
if print_job information 2 info "$game_windows"; then
    for page in 1 2; do
        ppm=$(ls "$work/information-"*"$page.ppm" | head -n 1)
        check "information page $page" check-info "$game_windows" "Z:$(echo "$ppm" | tr '/' '\\')" $((page - 1)) \
            "${numbers[@]}"
    done
fi

echo "rendered pages: $pages"
[ "$bad" = 0 ] || fail "some printed pages are wrong (see above)"
echo "PASS: both print jobs printed through CUPS and their pages look right"
