#!/bin/bash
# main-job.sh FOLDER [SONG]: the program's main job by the real program: opens a copy of a song in
# FOLDER, gives the menu command "Go Up a Half Step", saves, and closes. Leaves before.*, song.*
# (with the song's own extension) and melvorin.png there. Needs a display and the prefix.
set -eu
. "$(dirname "$0")/wine-env.sh"
folder=$1
song=${2:-$root/data/examples/House by the River.txt}
bin=${MELVORIN_WIN_BUILD:-$root/build/win-x64}

extension=${song##*.}
saved=$folder/song.$extension
mkdir -p "$folder"
cp "$song" "$folder/before.$extension"
cp "$song" "$saved"
windows_path() { printf 'Z:%s' "$(realpath "$1")" | tr / '\\'; }
drive() { timeout 120 "$wine" "$bin/melvorin-driver.exe" "$@"; }

timeout 300 "$wine" "$bin/Melvorin.exe" "$(windows_path "$saved")" &
program=$!
trap 'kill $program 2>/dev/null || true' EXIT
drive wait "song.$extension - Melvorin" menu "Go Up a Half Step" menu "Save"
timeout 30 import -window root "$folder/melvorin.png"
drive close wait-gone
wait $program
trap - EXIT
