#!/bin/bash
# run.sh [SONG]: what `make run` does. With a display the program opens, with the song if one is
# named; without one it does its main job by itself and tells what came of it.
set -eu
. "$(dirname "$0")/wine-env.sh"
tools=$root/tools
song=${1:-}

if [ -n "$song" ] && [ ! -e "$song" ]; then
    echo "run: there is no file \"$song\"" >&2
    exit 1
fi
if [ -n "${DISPLAY:-}" ] && timeout 10 xdpyinfo >/dev/null 2>&1; then
    "$tools/wine-prefix.sh"
    arguments=()
    [ -z "$song" ] || arguments=("Z:$(realpath "$song" | tr / '\\')")
    exec "$wine" "$root/build/win-x64/Melvorin.exe" "${arguments[@]}"
fi

folder=$root/build/run
rm -rf "$folder"
echo "There is no display, so the program does its main job by itself."
"$tools/with-display.sh" --own bash -c \
    '"$1/wine-prefix.sh" && "$1/main-job.sh" "$2" ${3:+"$3"}' - "$tools" "$folder" "$song"
# A saved song is in the code page of Western Windows where its letters allow that.
show() { iconv -f UTF-8 "$1" 2>/dev/null || iconv -f CP1252 -t UTF-8 "$1"; }
echo
echo "--- before"
show "$folder"/before.*
echo
echo "--- after \"Go Up a Half Step\" and \"Save\""
show "$folder"/song.*
echo
echo "saved file: $(echo "$folder"/song.*)"
echo "screenshot: $folder/melvorin.png"
