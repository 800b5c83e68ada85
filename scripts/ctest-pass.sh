#!/usr/bin/env bash
# One ctest pass in the current build folder, its output in LOG; when tests fail, they run once more on
# their own with the output in LOG's "-again" twin. Under Wine a process now and then dies before its
# test begins (a failure in 0.00 s with no output at all); a test that fails twice is a real failure.
#   ctest-pass.sh LOG CTEST-ARGUMENTS...
log=$1
shift
again="${log%.log}-again.log"
rm -f "$again"
ctest "$@" --output-on-failure --timeout 300 >"$log" 2>&1
if grep -qE 'tests passed, [1-9][0-9]* tests failed' "$log"; then
    ctest -j 1 --rerun-failed --output-on-failure --timeout 300 >"$again" 2>&1
fi
exit 0
