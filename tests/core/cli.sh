#!/bin/sh
# Runs the built batch tool on real files: cli.sh PATH-OF-MELVORIN-CLI
set -u
cli=$1
manual=$(cd "$(dirname "$0")/../.." && pwd)/docs/melvorin-cli.1
work=$(mktemp -d) || exit 1
trap 'chmod -R u+w "$work"; rm -rf "$work"' EXIT
cd "$work" || exit 1
failures=0

check() { # NAME EXPECTED ACTUAL
    if [ "$2" != "$3" ]; then
        printf 'FAILED %s\n  expected: %s\n  actual:   %s\n' "$1" "$2" "$3"
        failures=$((failures + 1))
    fi
}

# Runs the tool and keeps its exit code and output; its messages are in .err.
cli() {
    "$cli" "$@" >"$work/.out" 2>"$work/.err"
    code=$?
    out=$(cat "$work/.out")
}

# No temporary file may be left in the folder.
check_clean() { # NAME FOLDER
    check "$1: left over" "" "$(find "$2" -name '.melvorin-*')"
}

up() { cli transpose --up --sharps "$@"; }

printf 'C   G\nOld folks\n' >song.txt

up song.txt
check "standard output" "0 C#  G#
Old folks" "$code $out"
check "standard input" "C#  G#" "$("$cli" transpose --up --sharps <song.txt | head -n 1)"
check "binary input and output" "$(printf 'C#\r\n\351\r' | od -c)" \
    "$(printf 'C\r\n\351\r' | "$cli" transpose --up --sharps | od -c)"
cli lines song.txt
check "lines" "0 C	0:C	4:G
L" "$code $out"
cli --version
check "version" "0" "$code"
cli transpose --up --sharps --steps 12 song.txt
check "usage" "2" "$code"
check "usage names the argument" 1 "$(grep -c '"12"' .err)"

# The manual page is well-formed and has what the tool's own help has.
check "manual page" "" "$(mandoc -T lint "$manual" 2>&1)"
words() { # FILE: its options and commands
    grep -oE -e '--[a-z][a-z-]*' "$1" | sort -u
    grep -oE 'melvorin-cli [a-z][a-z-]*' "$1" | grep -v ' does$' | sort -u
}
# Bold letters are overstruck.
mandoc -T ascii "$manual" | sed 's/.\x08//g' >.manual
cli --help
check "manual page: commands and options" "$(words .out)" "$(words .manual)"

# Chords from the database beside the tool.
cli chord C "a minor" Cmaj7
check "chord" "0 C	C Major	09	a	x32010" "$code $(head -n 1 .out | cut -f 1-5)"
check "chord: fingers" "-32-1-" "$(head -n 1 .out | cut -f 6)"
check "chord: by name" "Am	A Minor	01	d	x02210" "$(grep '^Am' .out | head -n 1 | cut -f 1-5)"
check "chord: other spelling" "Cmaj7	C Major Seventh" "$(tail -n 1 .out | cut -f 1-2)"
cli chord C7 H7 "C'" Em
check "chord: unknown" "1 2" "$code $(wc -l <.err | tr -d ' ')"
check "chord: unknown names" "H7 C'" \
    "$(sed 's/.*cannot find the chord \([^:]*\):.*/\1/' .err | tr '\n' ' ' | sed 's/ $//')"
check "chord: known beside unknown" "C7 Em" "$(cut -f 1 .out | uniq | tr '\n' ' ' | sed 's/ $//')"
cli chord --list
check "chord: list" "0 1 8" "$code $(grep -c '^C	C Major	09	a	A	' .out) \
$(awk -F '\t' 'NF != 8 { bad++ } END { print bad ? "bad" : NF }' .out)"
check "chord: list is whole" "whole" "$([ "$(wc -l <.out)" -gt 1580 ] && echo whole)"

cli chord --output chords.txt Am
check "chord: to a file" "0  x02210" "$code $out $(head -n 1 chords.txt | cut -f 5)"

# Encodings, and results of other commands in a folder.
mkdir new
printf 'Am7\n\360\305\323\316\321\n' >koi.txt
printf 'C7M\n' >plain.txt
cli normalize --encoding koi8-r --output-dir new koi.txt plain.txt
check "encoding" "0 $(od -c <koi.txt)" "$code $(od -c <new/koi.txt)"
check "normalize: folder" "C7+" "$(cat new/plain.txt)"
cli replace --find 7 --with á plain.txt
check "ASCII is UTF-8" "0 CáM" "$code $out"
cli lines --encoding klingon koi.txt
check "unknown encoding" "2 1" "$code $(grep -c 'shift-jis' .err)"

# Names with blanks, quotes, other letters, and bytes that are not UTF-8.
mkdir out
for name in "two  words" "it's \"it\"" "песня" "$(printf 'caf\351')"; do
    cp song.txt "$name"
    up --output-dir out "$name"
    check "name $name" "0 C#  G#" "$code $(head -n 1 "out/$name")"
done

# Whatever way a name leads, --output-dir keeps its last part only.
mkdir -p out/deep in
cp song.txt in/up.txt
for name in out/../in/up.txt ./in//up.txt "$work/in/up.txt" out/deep/../../in/up.txt; do
    up --output-dir out/deep "$name"
    check "way $name" "0 up.txt C#  G#" "$code $(ls out/deep) $(head -n 1 out/deep/up.txt)"
    rm out/deep/up.txt
done
for name in .. out/.. . /; do
    up --output-dir out/deep "$name"
    check "folder $name" "1 " "$code $(ls out/deep)"
done
check "ways: source" "C   G" "$(head -n 1 in/up.txt)"

# Replacing: the file itself, a link to it, its permissions.
cp song.txt own.txt
chmod 640 own.txt
ln -s own.txt link.txt
up --output link.txt link.txt
check "own output" "0 C#  G#" "$code $(head -n 1 own.txt)"
check "link stays a link" "own.txt" "$(readlink link.txt)"
check "permissions" "640" "$(stat -c %a own.txt)"
ln -s out/new.txt dangling.txt
up --output dangling.txt song.txt
check "link to a new file" "0 C#  G#" "$code $(head -n 1 out/new.txt)"
(umask 027 && up --output fresh.txt song.txt)
check "permissions of a new file" "640" "$(stat -c %a fresh.txt)"
up --output /dev/null song.txt
check "device stays a device" "0 character special file" "$code $(stat -c %F /dev/null)"
mkfifo pipe
cat pipe >from-pipe.txt &
up --output pipe song.txt
wait $!
check "pipe" "0 C#  G#" "$code $(head -n 1 from-pipe.txt)"
check_clean "replacing" .

# One bad file does not stop the others.
mkdir folder
printf 'E\n' >tune.txt
up --output-dir out missing.txt folder song.txt tune.txt
check "several" "1 C#  G# F" "$code $(head -n 1 out/song.txt) $(cat out/tune.txt)"
check "several: messages" 2 "$(wc -l <.err | tr -d ' ')"
check "several: names" 1 "$(grep -c 'cannot read missing.txt: .*not exist' .err)"

# Whatever goes wrong while writing, the old file stays whole and nothing is left behind.
i=0
while [ $i -lt 4000 ]; do
    echo "C   G   Am  F"
    i=$((i + 1))
done >big.txt
echo "as before" >old.txt
(
    ulimit -f 8
    "$cli" transpose --up --sharps --output old.txt big.txt 2>.err
    echo $? >.code
)
check "disk full" "1 as before" "$(cat .code) $(cat old.txt)"
check "disk full: message" 1 "$(grep -c 'cannot write old.txt: .*too large' .err)"
check_clean "disk full" .
"$cli" transpose --up --sharps song.txt >/dev/full 2>.err
check "full standard output" "1" "$?"
check "full standard output: message" 1 "$(grep -c 'standard output: The disk is full' .err)"
for target in nowhere/new.txt folder /proc/new.txt song.txt/new.txt; do
    up --output "$target" song.txt
    check "unwritable $target" "1 1" "$code $(grep -c "cannot write $target: " .err)"
done
# The administrator may write everywhere.
if [ "$(id -u)" -ne 0 ]; then
    mkdir closed
    echo "as before" >closed/song.txt
    chmod 555 closed
    up --output-dir closed song.txt
    check "closed folder" "1 as before" "$code $(cat closed/song.txt)"
    echo "as before" >protected.txt
    chmod 444 protected.txt
    up --output protected.txt song.txt
    check "protected file" "1 as before" "$code $(cat protected.txt)"
fi

[ $failures -eq 0 ] && echo "All well."
exit $((failures > 0))
