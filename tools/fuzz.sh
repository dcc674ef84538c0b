#!/bin/bash
# fuzz.sh: feeds every fuzzer with invented texts for FUZZ_SECONDS (60 without it) under sanitizers.
# A text that breaks something is left in build/fuzz as crash-*.
set -eu
root=$(cd "$(dirname "$0")/.." && pwd)
cd "$root"
[ -e build/fuzz/build.ninja ] || cmake --preset fuzz >build/fuzz.configure.log
cmake --build --preset fuzz --target fuzz_Import fuzz_Normaliser
for subject in Import Normaliser; do
    mkdir -p "build/fuzz/corpus-$subject"
    echo "fuzzing: $subject"
    (cd build/fuzz && "./fuzz_$subject" -max_total_time="${FUZZ_SECONDS:-60}" -timeout=20 \
        -max_len=1000 -print_final_stats=1 -verbosity=0 \
        -dict="$root/fuzz/chords.dict" "corpus-$subject" "$root/tests/core/songs")
done
