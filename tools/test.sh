#!/bin/bash
# test.sh: runs every test that was built. Native tests run with the sanitizers; the windows and
# the end-to-end runs share one private display and one Wine prefix.
set -eu
. "$(dirname "$0")/wine-env.sh"

ctest --test-dir "$root/build/native-asan" --output-on-failure --no-tests=error
/usr/bin/python3 -m unittest discover -s "$root/tests/tools"
"$root/tools/with-display.sh" --own bash -c '
    "$1/tools/wine-prefix.sh"
    ctest --test-dir "$1/build/win-x64" --output-on-failure --no-tests=error' - "$root"
