#!/bin/bash
# make-pictures.sh [NAME...]: takes the pictures of the help anew, of every window of the program as
# it is built now, into data/help/pictures. With names only those are kept; the walk is the same.
# The program stands in a prefix of this script alone, so that no picture shows another path.
set -euo pipefail
. "$(dirname "$0")/wine-env.sh"
pictures=$root/data/help/pictures
driver=$root/build/win-x64/melvorin-driver.exe

if [ -z "${MELVORIN_PICTURES:-}" ]; then
    rm -rf "$root/build/wine-pictures"
    # The scripts about display and prefix are to see the same prefix.
    MELVORIN_PICTURES=1 MELVORIN_WINEPREFIX=$root/build/wine-pictures \
        exec "$root/tools/with-display.sh" --own --size 1024x700 "$0" "$@"
fi

"$root/tools/wine-prefix.sh"
home=$WINEPREFIX/drive_c/Melvorin
songs=$WINEPREFIX/drive_c/Songs
mkdir -p "$home" "$songs"
cp -r "$root/build/win-x64/"{Melvorin.exe,Melvorin.chm,Dbase,Fonts,Msnds,Song,Strings,Examples,Help} \
    "$home"

wanted=" $* "
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# ---- Steps --------------------------------------------------------------------------------------

program() { timeout 600 "$wine" 'C:\Melvorin\Melvorin.exe' "$@" 2>/dev/null & }
drive() { timeout 120 "$wine" "$driver" "$@" 2>"$work/driver" | tr -d '\r' ||
    { cat "$work/driver" >&2; exit 1; }; }
press() { timeout 60 xdotool key --delay 80 "$@"; }
# The screen, when nothing in it has moved for a moment (the cursor may blink).
still() { # FILE [GEOMETRY]
    local former=$work/former.png part=${2:-1024x700+0+0}
    for _ in $(seq 40); do
        timeout 30 import -window root -crop "$part" +repage "$1"
        if [ -e "$former" ] &&
            [ "$(compare -metric AE "$former" "$1" null: 2>&1 || true)" -le 60 ] 2>/dev/null; then
            break
        fi
        cp "$1" "$former"
        sleep 0.2
    done
    rm -f "$former"
}
keep() { # NAME GEOMETRY
    [[ $wanted == "  " || $wanted == *" $1 "* ]] || return 0
    still "$work/shot.png" "$2"
    convert "$work/shot.png" -strip +dither -colors 64 "PNG8:$pictures/$1.png"
}
window() { keep "$1" "$(drive place)"; } # NAME: the window in front
# Frames of a moving picture, each as long as it says (in hundredths of a second).
frame() { # FOLDER HUNDREDTHS GEOMETRY
    mkdir -p "$work/$1"
    still "$work/$1/$(printf %03d "$(find "$work/$1" -type f | wc -l)")-$2.png" "$3"
}
moving() { # NAME [OPTION...]: of the frames in the folder of that name
    local name=$1 picture frames=()
    shift
    [[ $wanted == "  " || $wanted == *" $name "* ]] || return 0
    for picture in "$work/$name"/*; do
        frames+=(-delay "$(basename "${picture##*-}" .png)" "$picture")
    done
    convert "${frames[@]}" "$@" +dither -colors 32 -layers optimize -loop 0 \
        "$pictures/$name.gif"
}

# ---- The walk -----------------------------------------------------------------------------------

in_front() { drive wait "$1 - Melvorin" wait-front "$1 - Melvorin"; }
menu() { # COUNT-OF-MENUS KEY...: a menu of the main window opened, and keys in it
    press alt
    drive wait-menu
    for _ in $(seq "$1"); do press Right; done
    press Down "${@:2}"
}
dialog() { # NAME COMMAND TITLE [STEP...]: its window, after these steps of the driver
    drive post "$2" wait-front "$3" "${@:4}"
    window "$1"
}
close_dialog() {
    press Escape
    in_front "$1"
}

cp "$home/Examples/"*.mvt "$songs"
song="Abc Song.mvt"
program "C:\\Songs\\$song"
in_front "$song"

# The key change, as a moving picture of the song and the menu.
part=620x330+0+0
frame key-change 150 $part
menu 4 Down Down Down Down Right Down
frame key-change 120 $part
press Return
in_front "$song"
frame key-change 180 $part
drive menu "Go Up a Half Step"
frame key-change 180 $part
moving key-change
drive menu "Undo" menu "Undo"

dialog find "Find and Replace" "Find and Replace"
close_dialog "$song"
dialog font "Font and Colors" "Fonte"
close_dialog "$song"
dialog tablature "Insert Tablature" "Insert Tablature" click 103
close_dialog "$song"
dialog tuner "Melvorin Guitar Tuner" "Melvorin Guitar Tuner"
close_dialog "$song"
dialog about "About Melvorin" "About Melvorin"
close_dialog "$song"

drive post "Dictionary"
drive wait-field ""
timeout 60 xdotool type --delay 40 "Am7"
press Return
keep main-window 1024x700+0+0
# "Expand Window"; away from it, no tip comes up.
timeout 60 xdotool mousemove 791 644 click 1 mousemove 400 690
sleep 1
keep dictionary 1024x700+0+0
# A change that nobody saves, and the end of the program without a warning.
drive menu "Go Up a Half Step"
timeout 30 "$wineserver" -k
wait || true

program
drive wait-front " Melvorin"
window recovery
press n
in_front "Chord Notation"

# A song as it is found on the web, on its way to a chart.
drive post "Create Chord Notation" wait-front " Create Chord Notation"
while IFS= read -r line; do
    timeout 60 xdotool type --delay 20 "$line"
    press Return
done <<'END'
{title: The Lantern}
[Verse 1]
      Am            C/G
Over the hill the lights go out,
[F]Somebody [G]sings us [Am]home.
e|--0--1--3--|
END
press ctrl+Home
window creator
press Escape
in_front "Chord Notation"
drive close wait-gone
wait

# A run with the rows of the page about this song.
song=Greensleeves.mvt
program "C:\\Songs\\$song"
in_front "$song"
drive post "Full Screen" wait-front "Full Screen"
number=0
rows=()
while IFS='|' read -r _ _ from to times _; do
    number=$((number + 1))
    # The ids of the panel's lists and boxes.
    rows+=(click $((300 + number)) choose $((199 + 2 * number))=$((from))
        choose $((200 + 2 * number))=$((to)) choose $((210 + number))=$((times)))
done < <(grep '^| [0-9]' "$root/data/help/example-2.md")
drive choose 101=4 "${rows[@]}"
window panel
keep on-stage 1024x700+0+0
# Larger letters, and a line each second: the first verse, its jump to the chorus, and, without the
# seconds in which the chorus stands still, the jump back to the second verse.
press ctrl+plus ctrl+plus ctrl+plus ctrl+plus ctrl+plus
drive wait-front "Full Screen" choose 101=1 click 108 wait-front " 0:00 "
mkdir "$work/on-stage"
for second in $(seq 100 128); do
    read -r _
    timeout 30 import -window root "$work/on-stage/$second-70.png"
done < <(timeout 200 "$wine" "$driver" film 2>/dev/null)
rm "$work/on-stage/1"{17,18,19,20,21,22,23}-70.png
moving on-stage -resize 60%
