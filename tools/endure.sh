#!/bin/bash
# endure.sh FILTER: the tests of that name that work on the real windows for as long as the
# environment says (see tests/ui/EnduranceTest.cpp).
set -eu
cd "$(dirname "$0")/.."
export MELVORIN_SEED=${MELVORIN_SEED:-1}
# Room for what is prepared before and walked through behind the time asked for.
export MELVORIN_WINE_TIMEOUT=$((${MELVORIN_SOAK_SECONDS:-0} + 1800))
tools/with-display.sh --own bash -c '
    tools/wine-prefix.sh
    tools/wine.sh build/win-x64/ui_tests.exe --gtest_filter="$1"' - "$1"
