#!/bin/bash
# test.sh: runs every test that was built, and the linter. Native tests run with the sanitizers. The
# windows and the end-to-end runs, which mostly wait, run beside each other, each on a private display
# and in a Wine prefix of its own; the linter has what they leave of the machine.
set -eu
. "$(dirname "$0")/wine-env.sh"
# Samples are in the code page that goes with this.
export LC_ALL=C.UTF-8

ctest --test-dir "$root/build/native-asan" --output-on-failure --no-tests=error
/usr/bin/python3 -m unittest discover -s "$root/tests/tools"

on_display() { # COMMAND...: where everything is ready for Wine
    "$root/tools/with-display.sh" --own bash -c '"$0" && "$@"' "$root/tools/wine-prefix.sh" "$@"
}
runs=$(mktemp)
MELVORIN_NATIVE_BUILD=$root/build/native-asan MELVORIN_WINEPREFIX=$root/build/wine-runs \
    on_display timeout 900 "$root/tests/e2e/run.py" >"$runs" 2>&1 &
runs_process=$!
lint=$(mktemp)
nice "$root/tools/lint.py" --lately >"$lint" 2>&1 &
lint_process=$!
result=0
on_display ctest --test-dir "$root/build/win-x64" --output-on-failure --no-tests=error || result=1
wait $runs_process || result=1
wait $lint_process || { result=1; cat "$lint"; }
cat "$runs"
rm -f "$runs" "$lint"
exit $result
