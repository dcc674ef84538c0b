#!/bin/bash
# fuzz.sh [SUBJECT...]: feeds the fuzzers of these subjects, or all of them, with inventions for
# FUZZ_SECONDS (60 without it) each, two at a time, under sanitizers. An input that breaks something
# is left in build/fuzz as crash-*; a line per subject tells how it went.
set -eu
root=$(cd "$(dirname "$0")/.." && pwd)
cd "$root"
[ -e build/fuzz/build.ninja ] || cmake --preset fuzz >build/fuzz.configure.log
cmake --build --preset fuzz --target fuzzers
[ $# -gt 0 ] || set -- Import Normaliser Transposer Tabs Key RichText Journal Recent Arguments Criterion
fuzz() {
    local subject=$1 songs=
    case $subject in
        Import | Normaliser | Transposer | Tabs | Key) songs=$root/tests/core/songs ;;
    esac
    cd "$root/build/fuzz"
    mkdir -p "corpus-$subject"
    export MELVORIN_SEED_FILE=corpus-$subject/seed
    # shellcheck disable=SC2086 # no folder where there are no songs
    if "./fuzz_$subject" -max_total_time="${FUZZ_SECONDS:-60}" -timeout=20 -max_len=1000 \
        -print_final_stats=1 -verbosity=0 -artifact_prefix="crash-$subject-" \
        -dict="$root/fuzz/words.dict" "corpus-$subject" $songs >"$subject.log" 2>&1; then
        echo "$subject: nothing found in $(awk '/number_of_executed_units/ { print $2 }' "$subject.log") inputs"
    else
        echo "$subject: FAILED, see build/fuzz/$subject.log"
        return 1
    fi
}
export -f fuzz
export root
printf '%s\n' "$@" | xargs -P 2 -I {} bash -c 'fuzz {}'
