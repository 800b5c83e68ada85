#!/usr/bin/env bash
# The whole test run: install what is missing, build the three configurations, run the native tests
# and the Windows tests under Wine, and end with one line "N passed, M failed".
set -uo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
cd "$root"
bash scripts/install-deps.sh || { echo "0 passed, 1 failed"; exit 1; }

jobs=$(nproc 2>/dev/null || echo 2)
logs=build/logs
mkdir -p "$logs"
passed=0
failed=0

configure_and_build() {  # name, cmake arguments... (TARGETS="a b" limits what is built)
    local name=$1 targets=()
    shift
    for t in ${TARGETS:-}; do targets+=(--target "$t"); done
    echo "== building $name"
    if cmake -S . -B "build/$name" -G Ninja "$@" >"$logs/$name-configure.log" 2>&1 &&
        cmake --build "build/$name" -j "$jobs" "${targets[@]}" >"$logs/$name-build.log" 2>&1; then
        return 0
    fi
    tail -n 40 "$logs/$name-configure.log" "$logs/$name-build.log" 2>/dev/null
    echo "build of $name FAILED"
    failed=$((failed + 1))
    return 1
}

# Adds one ctest run's totals from its summary line ("97% tests passed, 1 tests failed out of 40").
count_ctest() {  # log file
    local line total bad
    line=$(grep -E 'tests passed, [0-9]+ tests failed out of [0-9]+' "$1" | tail -n 1)
    if [ -z "$line" ]; then
        echo "no test summary in $1"
        failed=$((failed + 1))
        return
    fi
    total=$(sed -E 's/.* out of ([0-9]+).*/\1/' <<<"$line")
    bad=$(sed -E 's/.* ([0-9]+) tests failed.*/\1/' <<<"$line")
    passed=$((passed + total - bad))
    failed=$((failed + bad))
}

# A pass whose failures ran once more: its total from the first log, its failures from the second.
count_rerun() {  # first log, second log
    local first second total bad name
    first=$(grep -E 'tests passed, [0-9]+ tests failed out of [0-9]+' "$1" | tail -n 1)
    second=$(grep -E 'tests passed, [0-9]+ tests failed out of [0-9]+' "$2" | tail -n 1)
    if [ -z "$first" ] || [ -z "$second" ]; then
        echo "no test summary in $1 or $2"
        failed=$((failed + 1))
        return
    fi
    total=$(sed -E 's/.* out of ([0-9]+).*/\1/' <<<"$first")
    bad=$(sed -E 's/.* ([0-9]+) tests failed.*/\1/' <<<"$second")
    passed=$((passed + total - bad))
    failed=$((failed + bad))
    # The tests that failed once and passed on their own.
    grep -E '^ *[0-9]+/[0-9]+ Test +#[0-9]+: .* Passed' "$2" | sed -E 's/.*Test +#[0-9]+: ([^ ]+).*/\1/' |
        while read -r name; do echo "passed only on the second run: $name"; done
}

if configure_and_build native -DCMAKE_BUILD_TYPE=Debug -DTAVIREL_SANITIZE=ON -DTAVIREL_BENCH=ON; then
    echo "== native tests"
    (cd build/native && ctest -j "$jobs" --output-on-failure --timeout 300) >"$logs/native-tests.log" 2>&1
    grep -E '(Failed|\*\*\*|tests passed)' "$logs/native-tests.log" | tail -n 20
    count_ctest "$logs/native-tests.log"
fi

# The portable core and its unit tests once more as 32-bit code (g++ -m32): every size and offset the
# file readers compute from file data, with the 4-byte size_t of the 32-bit game.
if TARGETS="unit_tests" configure_and_build native32 -DCMAKE_TOOLCHAIN_FILE=cmake/Native32.cmake \
    -DCMAKE_BUILD_TYPE=Debug -DTAVIREL_SANITIZE=ON -DTAVIREL_CORE_ONLY=ON; then
    echo "== native 32-bit tests"
    (cd build/native32 && ctest -j "$jobs" --output-on-failure --timeout 300) >"$logs/native32-tests.log" 2>&1
    grep -E '(Failed|\*\*\*|tests passed)' "$logs/native32-tests.log" | tail -n 20
    count_ctest "$logs/native32-tests.log"
fi

if CC=clang CXX=clang++ TARGETS="pack_fuzz bmp_fuzz saved_puzzle_fuzz puzzle_preview_fuzz records_fuzz" configure_and_build fuzz -DCMAKE_BUILD_TYPE=RelWithDebInfo -DTAVIREL_FUZZ=ON \
    -DTAVIREL_TESTS=OFF; then
    echo "== fuzzing the file readers"
    (cd build/fuzz && ctest -j "$jobs" --output-on-failure --timeout 600) >"$logs/fuzz-tests.log" 2>&1
    grep -E '(Failed|\*\*\*|tests passed)' "$logs/fuzz-tests.log" | tail -n 5
    count_ctest "$logs/fuzz-tests.log"
fi

configure_and_build win32 -DCMAKE_TOOLCHAIN_FILE=cmake/mingw-w64-i686.cmake -DCMAKE_BUILD_TYPE=Release \
    -DTAVIREL_TESTS=OFF

if configure_and_build win64 -DCMAKE_TOOLCHAIN_FILE=cmake/mingw-w64-x86_64.cmake -DCMAKE_BUILD_TYPE=Release; then
    echo "== Windows tests under Wine"
    # Tests whose suite starts with "Pointer" move the one real mouse pointer, "Foreground" ones ask which
    # window is in front (another test program could take it), and "E2E" tests run the
    # whole game: they run one at a time. The failures of a pass run once more (scripts/ctest-pass.sh); a
    # test that fails twice counts as failed, one that passes the second time is named.
    bash scripts/with-wine.sh bash -c "cd build/win64 &&
        bash '$root/scripts/ctest-pass.sh' '$root/$logs/wine-tests.log' -j $jobs -E '^(Pointer|Foreground|E2E)';
        bash '$root/scripts/ctest-pass.sh' '$root/$logs/wine-pointer-tests.log' -j 1 -R '^(Pointer|Foreground|E2E)'"
    for log in wine-tests wine-pointer-tests; do
        if grep -q 'No tests were found' "$logs/$log.log"; then continue; fi
        grep -E '(Failed|\*\*\*|tests passed)' "$logs/$log.log" | tail -n 20
        if [ -f "$logs/$log-again.log" ]; then
            echo "-- the failures of that pass, once more:"
            grep -E '(Failed|\*\*\*|tests passed)' "$logs/$log-again.log" | tail -n 20
            count_rerun "$logs/$log.log" "$logs/$log-again.log"
        else
            count_ctest "$logs/$log.log"
        fi
    done
fi

echo "$passed passed, $failed failed"
[ "$failed" -eq 0 ] && [ "$passed" -gt 0 ]
