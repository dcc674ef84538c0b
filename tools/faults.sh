#!/bin/bash
# faults.sh: kills the real program MELVORIN_KILLS times (200 without it), takes its temporary folder
# and disk away, locks it out, and makes more changes than its history counts. MELVORIN_SEED chooses
# other moments.
set -eu
cd "$(dirname "$0")/.."
export MELVORIN_KILLS=${MELVORIN_KILLS:-200}
tools/with-display.sh --own bash -c '
    tools/wine-prefix.sh
    tests/e2e/run.py kills snapshots_run_out temporary_folder full_disk
    tools/wine.sh build/win-x64/ui_tests.exe --gtest_brief=1 --gtest_filter="Recovery.*:Save.*"'
