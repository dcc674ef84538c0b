#!/bin/bash
# run.sh: whole runs of the real Melvorin.exe with a real keyboard, files and registry. Needs a
# private display and the Wine prefix (tools/with-display.sh --own, tools/wine-prefix.sh).
# MELVORIN_WIN_BUILD and MELVORIN_NATIVE_BUILD name other build folders; with arguments only the
# cases of those names run.
# shellcheck disable=SC1003,SC2012,SC2317 # the cases are called by name; our file names are plain
set -u
# Names in any script on command lines and disk.
export LC_ALL=C.UTF-8
# shellcheck source=tools/wine-env.sh
. "$(dirname "$0")/../../tools/wine-env.sh"
win=${MELVORIN_WIN_BUILD:-$root/build/win-x64}
native=${MELVORIN_NATIVE_BUILD:-$root/build/native}
[ -n "${DISPLAY:-}" ] || { echo "e2e: no display; use with-display.sh" >&2; exit 1; }
for needed in "$win/Melvorin.exe" "$win/melvorin-driver.exe" "$native/melvorin-cli"; do
    [ -e "$needed" ] || { echo "e2e: $needed is not built" >&2; exit 1; }
done

work=$(mktemp -d)
disk=$work/disk # the small disk of the full-disk case
cleanup() {
    ! mountpoint -q "$disk" || umount "$disk"
    rm -rf "$work"
}
trap cleanup EXIT

# ---- Steps. Each ends its case where it fails. -------------------------------------------------

fail() {
    printf 'FAILED  %s: %s\n' "$case_name" "$*"
    exit 1
}
expect() { # WHAT EXPECTED ACTUAL
    [ "$2" = "$3" ] || fail "$1: expected \"$2\", found \"$3\""
}
expect_same() { # WHAT EXPECTED-FILE ACTUAL-FILE
    cmp "$2" "$3" >"$work/cmp" 2>&1 || fail "$1: $(cat "$work/cmp")"
}

wine_tool() { timeout 60 "$wine" "$@" 2>/dev/null; }
windows_path() { printf 'Z:%s' "$(realpath -ms "$1")" | tr / '\\'; }

program=
start() { # ARGUMENT...: the program, up to now in the background
    timeout 300 "$wine" "${exe:-$win/Melvorin.exe}" "$@" 2>/dev/null &
    program=$!
}
drive() {
    local answer
    answer=$(timeout 120 "$wine" "$win/melvorin-driver.exe" "$@" 2>"$work/driver") ||
        fail "$(cat "$work/driver")"
    printf '%s' "$answer" | tr -d '\r'
}
# Menus and dialogs take one key at a time; nobody types faster than this.
press() { timeout 60 xdotool key --delay 60 "$@" || fail "xdotool cannot press $*"; }
enter() { timeout 60 xdotool type --delay 30 "$1" || fail "xdotool cannot type $1"; }
# Goes on typing on a keyboard of this layout: a letter that a keyboard does not have would get a
# key only while it is down, and a busy program may look too late.
typed=
enter_on() { # LAYOUT TEXT
    timeout 60 setxkbmap "$1" || fail "there is no keyboard $1"
    enter "$2"
    typed+=$2
    drive wait-text "$typed"
}
new_line() {
    press Return
    typed+=$'\n'
    drive wait-text "$typed"
}
# Until the program has come to its end by itself, and well.
ended() {
    drive wait-gone
    wait "$program"
    expect "exit code" 0 $?
    program=
}
title() { drive wait "$1" wait-front "$1"; }
# Without a window manager a closing file dialog may leave the keyboard with nobody, whatever
# program it belongs to; a click gets it back.
title_after_file_dialog() {
    drive wait-no-window " Save As" wait "$1"
    timeout 60 xdotool mousemove 640 700 click 1 || fail "xdotool cannot click"
    drive wait-front "$1"
}

# Until a message box like this pattern is in front, behind others maybe.
await_message() {
    local shown
    for _ in $(seq 100); do
        shown=$(drive wait-front " Melvorin" message)
        # shellcheck disable=SC2053 # a pattern
        [[ $shown != $1 ]] || return 0
    done
    fail "the message is $shown"
}

snapshots() { find "$WINEPREFIX/drive_c" -iname 'bb*.tmp' | sort; }
paths_value() { # NAME: what the settings store holds
    wine_tool reg query 'HKCU\Software\Melvorin\Paths' /v "$1" | tr -d '\r' |
        sed -n "s/^ *$1 *REG_SZ *//p"
}
forget_paths() { wine_tool reg delete 'HKCU\Software\Melvorin\Paths' /f >/dev/null; }
paths_known() { wine_tool reg query 'HKCU\Software\Melvorin\Paths' >/dev/null; }

# ---- Cases -------------------------------------------------------------------------------------

# Every example, and a song in another script, goes up by the real program exactly as the batch tool
# takes it there.
main_job() {
    local song folder
    printf 'Am      E7/G#\r\nСнег идёт и тает,\r\nDm   B°\r\nКапель поёт.\r\n' >"$work/Снег.txt"
    for song in "$root"/data/examples/*.txt "$work/Снег.txt"; do
        folder=$work/job/$(basename "$song" .txt)
        "$root/tools/main-job.sh" "$folder" "$song" || fail "main-job.sh on $song"
        # Both keep the encoding and the line ends of the file.
        "$native/melvorin-cli" transpose --up --sharps "$song" >"$folder/expected" ||
            fail "melvorin-cli on $song"
        expect_same "$(basename "$song")" "$folder/expected" "$folder/song.txt"
        [ -s "$folder/melvorin.png" ] || fail "no screenshot"
    done
    # By hand, so that program and tool are not wrong together.
    folder="$work/job/House by the River"
    tr -d '\r' <"$folder/song.txt" >"$folder/utf8"
    expect "House, line 6" "G#                         A#m7/G#" "$(sed -n 6p "$folder/utf8")"
    expect "House, line 7" "There is a house where the river bends wide," \
        "$(sed -n 7p "$folder/utf8")"
    expect "House, line 30" "D#7M       E°          A#/F        G7 " "$(sed -n 30p "$folder/utf8")"
    expect "Снег, lines 1 and 4" "A#m     F7/A  Капель поёт." \
        "$(tr -d '\r' <"$work/job/Снег/song.txt" | sed -n '1p;4p' |
            tr '\n' ' ' | sed 's/ $//')"
}

# The first start puts the theme manifest beside the program; the next ones find it there.
manifest() {
    local file before probe shown attribute
    mkdir "$work/program"
    cp "$win/Melvorin.exe" "$work/program"
    exe=$work/program/Melvorin.exe
    file=$exe.manifest
    sed 's/$/\r/' >"$work/expected.manifest" <<'END'
<?xml version="1.0" encoding="UTF-8" standalone="yes"?>
<assembly xmlns="urn:schemas-microsoft-com:asm.v1" manifestVersion="1.0">
     <assemblyIdentity version="1.0.0.0" processorArchitecture="X86" name="Tessaly.WindowsXP.Example" type="win32" />
     <description>Windows XP Theme.</description>
     <dependency>
          <dependentAssembly>
               <assemblyIdentity type="win32" name="Microsoft.Windows.Common-Controls" version="6.0.0.0" processorArchitecture="X86" publicKeyToken="6595b64144ccf1df" language="*" />
          </dependentAssembly>
     </dependency>
</assembly>
END
    # A 64-bit build writes the manifest that it can start with.
    if x86_64-w64-mingw32-objdump -f "$exe" | grep -q pei-x86-64; then
        sed -i 's/processorArchitecture="X86"/processorArchitecture="amd64"/' "$work/expected.manifest"
    fi
    start
    title "Chord Notation - Melvorin"
    drive close
    ended
    [ -e "$file" ] || fail "nothing was written"
    expect_same "content" "$work/expected.manifest" "$file"

    # As many of the attributes as this disk keeps under Wine, compared with a file that was
    # given all of them by hand.
    probe=$work/program/probe
    echo >"$probe"
    for attribute in +a +s +h +r; do # Wine's attrib takes one at a time
        wine_tool attrib "$attribute" "$(windows_path "$probe")"
    done
    shown() { wine_tool attrib "$(windows_path "$1")" | cut -c 1-11 | tr -d '\r'; }
    shown=$(shown "$probe")
    case $shown in *R*) ;; *) fail "attrib shows no attributes: $shown" ;; esac
    expect "attributes" "$shown" "$(shown "$file")"

    before=$(stat -c '%i %y' "$file")
    start
    title "Chord Notation - Melvorin"
    enter 'Am7/G'
    drive wait-text 'Am7/G' menu "Undo" close
    drive wait-front " Melvorin"
    press alt+n
    ended
    expect_same "content after the second start" "$work/expected.manifest" "$file"
    expect "file after the second start" "$before" "$(stat -c '%i %y' "$file")"
}

# A song typed by hand, saved, and opened again, all by keyboard.
typed_song() {
    local folder=$work/typed
    mkdir "$folder"
    start
    title "Chord Notation - Melvorin"
    enter_on us 'C#m7     F#7/A#   G7(b9)'
    new_line
    enter_on ch "Café à l'été, über Land "
    enter_on us '{\b #1}'
    new_line
    new_line
    enter_on us 'Dm  E/G#'
    press ctrl+s
    drive wait-front " Save As" wait-field "Chord Notation"
    press Home shift+End
    enter "$(windows_path "$folder/My song.mvt")"
    drive wait-field "$(windows_path "$folder/My song.mvt")"
    press Return
    title_after_file_dialog "My song.mlv - Melvorin"
    expect "what was saved" "My song.mlv" "$(ls -A "$folder")"
    expect "begins with" '{\rtf' "$(head -c 5 "$folder/My song.mlv")"
    press alt+F4
    ended

    start "$(windows_path "$folder/My song.mlv")"
    title "My song.mlv - Melvorin"
    expect "text after reopening" "$typed" "$(drive text)"

    # The File menu: "Save As" is its fourth entry, "Exit" its last.
    press alt+i
    drive wait-menu
    press Down Down Down Return
    drive wait-front " Save As" wait-field "My song.mlv"
    press Escape
    title_after_file_dialog "My song.mlv - Melvorin"
    press alt+i
    drive wait-menu
    press Up Return
    ended
}

# Closing with unsaved changes asks; only a window that stays open remembers its paths.
close_prompt() {
    local before during
    printf 'C  G\r\n' >"$work/prompt.txt"
    before=$(snapshots)
    forget_paths
    start "$(windows_path "$work/prompt.txt")"
    title "prompt.txt - Melvorin"
    press alt+F4
    ended
    ! paths_known || fail "a clean document wrote its paths on closing"

    start "$(windows_path "$work/prompt.txt")"
    title "prompt.txt - Melvorin"
    enter 'D '
    drive wait-text 'D C  G'
    during=$(snapshots)
    [ "$during" != "$before" ] || fail "no snapshot was found while the program ran"
    press alt+F4
    drive wait-front " Melvorin"
    expect "question" "Save changes to prompt.txt?" "$(drive message)"
    ! paths_known || fail "the paths were written before the answer"
    press Escape
    drive wait-no-window " Melvorin"
    title "prompt.txt - Melvorin"
    expect "text after Escape" "D C  G" "$(drive text)"
    paths_known || fail "the paths were not written"
    expect "LastOpened" "$(windows_path "$work")" "$(paths_value LastOpened)"
    expect "LastOpenedEXT" "txt" "$(paths_value LastOpenedEXT)"
    expect "Lastsaved" "" "$(paths_value Lastsaved)"
    press alt+F4
    drive wait-front " Melvorin"
    press alt+n
    ended
    expect "snapshots left" "$before" "$(snapshots)"
    expect "file" "C  G" "$(tr -d '\r' <"$work/prompt.txt")"

    # Yes saves, and that is the end.
    start "$(windows_path "$work/prompt.txt")"
    title "prompt.txt - Melvorin"
    enter 'D '
    drive wait-text 'D C  G'
    press alt+F4
    drive wait-front " Melvorin"
    press alt+y
    ended
    expect "file after Yes" "D C  G" "$(tr -d '\r' <"$work/prompt.txt")"
    expect "snapshots left after Yes" "$before" "$(snapshots)"
    forget_paths
}

# A disk that is full: the file stays whole, the song stays open, and it can be saved later.
full_disk() {
    local name song text
    mkdir -p "$disk"
    if ! mount -t tmpfs -o size=256k tmpfs "$disk" 2>/dev/null; then
        echo "skipped $case_name: a small disk cannot be mounted here (needs root)"
        exit 77
    fi
    text=$(printf 'C  G%.0s la la\n' $(seq 500))
    for name in song.txt song.rtf; do
        song=$disk/$name
        rm -f "$disk"/*
        case $name in
            *.txt) printf '%s\r\n' "${text//$'\n'/$'\r\n'}" >"$song" ;;
            *) printf '{\\rtf1\\ansi %s}' "${text//$'\n'/\\par }" >"$song" ;;
        esac
        cp "$song" "$work/before"
        head -c 1M /dev/zero >"$disk/filler" 2>/dev/null
        start "$(windows_path "$song")"
        title "$name - Melvorin"
        enter 'Am '
        drive wait-text "Am $text"
        press ctrl+s
        drive wait-front " Melvorin"
        case $(drive message) in
            *"$name"*"The disk is full."*) ;;
            *) fail "$name: the message is $(drive message)" ;;
        esac
        press Return
        drive wait-no-window " Melvorin"
        expect_same "$name" "$work/before" "$song"
        expect "files on the disk" "filler $name" "$(ls -A "$disk" | tr '\n' ' ' | sed 's/ $//')"
        title "$name - Melvorin"
        drive wait-text "Am $text"
        press alt+F4
        drive wait-front " Melvorin"
        expect "question" "Save changes to $name?" "$(drive message)"
        press Escape
        drive wait-no-window " Melvorin"
        title "$name - Melvorin"

        rm "$disk/filler"
        press ctrl+s alt+F4
        ended
        start "$(windows_path "$song")"
        title "$name - Melvorin"
        drive wait-text "Am $text" close
        ended
    done
}

# Names as people have them, and one that is not there.
names() {
    local name
    mkdir -p "$work/songs/two  words"
    for name in "my song.txt" "it's a 'song'.txt" "100% [live] & #1, part;2.txt" "Ωδή 中文 песня.txt" \
        "two  words/song" ".txt"; do
        printf 'C  G\r\n%s\r\n' "${name##*/}" >"$work/songs/$name"
        start "$(windows_path "$work/songs/$name")"
        title "${name##*/} - Melvorin"
        expect "$name" "$(printf 'C  G\n%s' "${name##*/}")" "$(drive text)"
        drive close
        ended
    done

    # From the folder it is in, by its bare name; it is saved where it came from.
    cd "$work/songs" || fail "no folder"
    start "my song.txt"
    title "my song.txt - Melvorin"
    enter 'A '
    drive wait-text $'A C  G\nmy song.txt'
    press ctrl+s alt+F4
    ended
    expect "saved by its bare name" "A C  G" "$(head -n 1 "my song.txt" | tr -d '\r')"

    start "$(windows_path "$work/songs/Ω none.txt")"
    drive wait-front " Melvorin"
    case $(drive message) in
        *"Ω none.txt"*"    Please verify that the correct path and file name are given."*) ;;
        *) fail "missing file: the message is $(drive message)" ;;
    esac
    press Return
    title "Chord Notation - Melvorin"
    expect "text after a missing file" "" "$(drive text)"
    enter 'Em'
    drive wait-text 'Em' close wait-front " Melvorin"
    expect "question" "Save changes to Chord Notation?" "$(drive message)"
    press alt+n
    ended
}

# A song edited without the mouse: find and replace, cut and paste, a menu, the recent files.
by_keyboard() {
    local song=$work/keys.txt
    printf 'C  G\r\nlove love\r\n' >"$song"
    start "$(windows_path "$song")"
    title "keys.txt - Melvorin"
    press ctrl+f
    drive wait-front "Find and Replace"
    enter 'love'
    press Tab
    enter 'light'
    press Tab Tab Tab Tab Tab space
    drive wait-front "Melvorin"
    expect "what was replaced" $'  and 2 items were replaced.  ' "$(drive message | tail -n 1)"
    press Return
    drive wait-text $'C  G\nlight light'
    title "keys.txt - Melvorin"
    press ctrl+End ctrl+shift+Left ctrl+x
    drive wait-text $'C  G\nlight '
    press ctrl+Home ctrl+v
    drive wait-text $'lightC  G\nlight '
    press ctrl+z
    drive wait-text $'C  G\nlight '
    press ctrl+a alt Right Right Down Up Up Return
    press ctrl+End
    drive wait-text $'C  G\nLIGHT '
    press ctrl+s alt+F4
    ended
    expect "saved" "LIGHT " "$(sed -n 2p "$song" | tr -d '\r')"

    start
    title "Chord Notation - Melvorin"
    press ctrl+o
    drive wait-front " Open"
    enter "$(windows_path "$song")"
    drive wait-field "$(windows_path "$song")"
    press Return
    drive wait-no-window " Open" wait "keys.txt - Melvorin" close
    ended
    start
    title "Chord Notation - Melvorin"
    press alt+i
    drive wait-menu
    press Down Down Down Down Right Return
    title "keys.txt - Melvorin"
    drive wait-text $'C  G\nLIGHT ' close
    ended
}

# A run with two jumps and two passes, filmed: a picture at each second. Every line begins with its
# number as four blocks, black for 1 and white for 0, as high as the line, so that a picture tells
# which line is on top. The pictures stay in build/stage-film.
stage_run() {
    local film=$root/build/stage-film line bit second picture expected seen highest
    rm -rf "$film"
    mkdir -p "$film"
    {
        printf '{\\rtf1\\ansi{\\fonttbl{\\f0 Lucida Console;}}\\f0\\fs160'
        for line in $(seq 14); do
            printf ' '
            for bit in 8 4 2 1; do
                if [ $((line & bit)) -gt 0 ]; then printf '\\u9608?'; else printf ' '; fi
            done
            printf ' Line %d%s' "$line" "$([ "$line" = 14 ] || printf '\\par')"
        done
        printf '}'
    } >"$work/stage.rtf"
    start "$(windows_path "$work/stage.rtf")"
    title "stage.rtf - Melvorin"
    drive post "Full Screen" wait-front "Full Screen"
    # Every 2 seconds a line, 2 passes; from 4 to 1 once, from 9 to 6 once.
    drive choose 101=2 click 104 choose 103=2 \
        click 301 choose 201=4 choose 202=1 choose 211=1 \
        click 305 choose 209=9 choose 210=6 choose 215=1
    drive click 108 wait-front " 0:00 "
    second=0
    while read -r line; do
        picture=$film/$(printf %03d "$second").png
        timeout 30 import -window root "$picture" || fail "no picture"
        second=$((second + 1))
    done < <(timeout 200 "$wine" "$win/melvorin-driver.exe" film 2>/dev/null)
    drive wait-front "Full Screen"
    [ "$second" -ge 84 ] || fail "the run had $second pictures"

    # A step goes one line beyond the jump's; at the end of the text nothing moves any more.
    seen=$(for picture in "$film"/*.png; do
        convert "$picture" -crop 256x6+6+12 +repage -colorspace Gray -resize '4x1!' \
            -threshold 50% txt:- | tail -n +2 | tr -d '\r' |
            awk '{ n = 2 * n + ($0 ~ /black|#000000/) } END { print n }'
    done | uniq | tr '\n' ' ')
    highest=$(tr ' ' '\n' <<<"$seen" | sort -n | tail -n 1)
    expected=$(for line in 1 2 3 4 2 3 4 5 6 7 8 9 7 8 9 10 11 12 13 14 \
        1 2 3 4 2 3 4 5 6 7 8 9 7 8 9 10 11 12 13 14; do
        echo $((line < highest ? line : highest))
    done | uniq | tr '\n' ' ')
    expect "lines on top" "$expected" "$seen"
    if [ "$highest" -lt 5 ] || [ "$highest" -gt 13 ]; then fail "the last screenful begins at $highest"; fi
    press Escape
    drive wait-front "stage.rtf - Melvorin" close
    ended
}

# Libraries beside the program and in the current folder that are called like the system's own are
# not even looked at. (A few are looked for by Wine's libraries on ways of their own; those are not
# among these.)
planted_libraries() {
    local name found log=$work/loaded
    mkdir "$work/planted"
    exe=$work/planted/Melvorin.exe
    cp -r "$win/Melvorin.exe" "$win/Msnds" "$work/planted"
    for name in winmm.dll msftedit.dll riched20.dll usp10.dll msacm32.dll dwmapi.dll mciseq.dll \
        hhctrl.ocx; do
        cp "$win/planted.dll" "$work/planted/$name" || fail "nothing to plant"
    done
    printf 'C  G\r\n' >"$work/planted/song.txt"
    cd "$work/planted" || fail "no folder"
    WINEDEBUG=+loaddll timeout 300 "$wine" "$exe" song.txt 2>"$log" &
    program=$!
    title "song.txt - Melvorin"
    # The tuner needs the library of sounds, at the latest when it closes.
    drive post "Melvorin Guitar Tuner" wait-front "Melvorin Guitar Tuner"
    press Escape
    drive wait-no-window "Melvorin Guitar Tuner" close
    ended
    for name in msftedit winmm; do
        grep -qi "Loaded L\"C:.*system32.*$name.dll\"" "$log" || fail "$name was not loaded"
    done
    found=$(grep -i 'Loaded L"Z:.*planted' "$log" | sed 's/.*\\\([^"\\]*\)".*/\1/' | sort -u | xargs)
    expect "loaded from beside the program" Melvorin.exe "$found"
}

# Killed while it works: the file is whole, and the next start has the last change. More often with
# MELVORIN_KILLS.
kills() {
    local folder=$work/kills
    mkdir "$folder"
    timeout 3000 "$wine" "$win/melvorin-faults.exe" kills "$(windows_path "$win/Melvorin.exe")" \
        "$(windows_path "$folder/song.mvt")" "${MELVORIN_KILLS:-3}" "${MELVORIN_SEED:-1}" \
        >"$work/told" 2>&1 || fail "$(tail -n 3 "$work/told")"
    [ -z "${MELVORIN_KILLS:-}" ] || cat "$work/told"
}

# As many changes as its history counts, and more; takes minutes.
snapshots_run_out() {
    timeout 3000 "$wine" "$win/melvorin-faults.exe" snapshots \
        "$(windows_path "$win/Melvorin.exe")" >"$work/told" 2>&1 || fail "$(tail -n 3 "$work/told")"
    cat "$work/told"
}

# Without a place for snapshots the program says so, once, and the song can still be written.
temporary_folder() {
    local folder trouble message failed
    start
    title "Chord Notation - Melvorin"
    folder=$(dirname "$(snapshots | head -n 1)")
    drive close
    ended
    for trouble in missing read-only; do
        printf 'C  G\r\n' >"$work/song.txt"
        if [ "$trouble" = missing ]; then
            mv "$folder" "$folder.away"
        elif ! mount -t tmpfs -o ro tmpfs "$folder" 2>/dev/null; then
            echo "skipped $case_name, $trouble: nothing can be mounted here (needs root)"
            continue
        fi
        (
            trap end_program EXIT
            start "$(windows_path "$work/song.txt")"
            # One for the empty document, one for the copies.
            for message in "Unable to "*"!" "Melvorin cannot keep a copy of this change for Undo."*; do
                await_message "$message"
                press Return
            done
            title "song.txt - Melvorin"
            enter 'Am '
            drive wait-text 'Am C  G'
            press ctrl+s alt+F4
            ended
            expect "file, $trouble" 'Am C  G' "$(tr -d '\r' <"$work/song.txt")"
        )
        failed=$?
        if [ "$trouble" = missing ]; then mv "$folder.away" "$folder"; else umount "$folder"; fi
        [ "$failed" = 0 ] || exit 1
    done
}

# Cases of the installer, only where one is named (tools/test-x86.sh).
# shellcheck source=tests/e2e/setup.sh
[ -z "${MELVORIN_SETUP:-}" ] || . "$(dirname "$0")/setup.sh"

# ---- All of them -------------------------------------------------------------------------------

end_program() {
    [ -z "$program" ] || { kill "$program" 2>/dev/null; wait "$program" 2>/dev/null; }
}

failures=0
[ $# -gt 0 ] || set -- main_job manifest typed_song close_prompt full_disk names by_keyboard stage_run \
    planted_libraries kills temporary_folder
for case_name; do
    (
        trap end_program EXIT
        # What a case that failed left is not offered to the next one.
        snapshots | xargs -rd '\n' rm -f
        "$case_name"
    )
    case $? in
        0) echo "ok      $case_name" ;;
        77) ;;
        *) failures=$((failures + 1)) ;;
    esac
done
exit $((failures > 0))
