#!/usr/bin/env bash
# One ctest pass in the current build folder, its output in LOG; when tests fail, they run once more on
# their own with the output in LOG's "-again" twin. Under Wine a process now and then dies before its
# test begins (a failure in 0.00 s with no output at all); a test that fails twice is a real failure.
#   ctest-pass.sh LOG CTEST-ARGUMENTS...
# The second run picks the failed tests by name: ctest's --rerun-failed goes by test number, and the
# numbers change between runs when the test lists are discovered afresh.
log=$1
shift
again="${log%.log}-again.log"
rm -f "$again"
ctest "$@" --output-on-failure --timeout 300 >"$log" 2>&1
if grep -qE 'tests passed, [1-9][0-9]* tests failed' "$log"; then
    names=$(sed -n '/The following tests FAILED:/,$p' "$log" | sed -nE 's/^[[:space:]]+[0-9]+ - (.+) \([^()]+\)[[:space:]]*$/\1/p' |
        sed -E 's/[][\\.^$*+?(){}|]/\\&/g' | paste -sd '|')
    if [ -n "$names" ]; then
        ctest -j 1 -R "^($names)\$" --output-on-failure --timeout 300 >"$again" 2>&1
    else
        # No names to be found: count the first run's failures as they stand.
        cp "$log" "$again"
    fi
fi
exit 0
