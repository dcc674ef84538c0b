#!/bin/bash
# rtf-corpus.sh: lets word processors write MELVORIN_FOREIGN (200) charts as Rich Text, each of them
# all, and opens, saves and transposes every one in the real program.
set -eu
cd "$(dirname "$0")/.."
count=${MELVORIN_FOREIGN:-200}
seed=${MELVORIN_SEED:-1}
corpus=$PWD/build/corpus
rm -rf "$corpus"
tools/make-rtf-corpus.py "$corpus/source" "$count" "$seed"
mkdir -p "$corpus/rtf" "$corpus/office"

convert() { # FILTER ENDING
    timeout 1200 soffice "-env:UserInstallation=file://$corpus/profile" --headless \
        --infilter="$1" --convert-to "rtf:Rich Text Format" --outdir "$corpus/office" \
        "$corpus/source"/*."$2" >>"$corpus/log" 2>&1
}
convert "HTML (StarWriter)" html
convert "Text (encoded):UTF8,LF,,," text
for file in "$corpus/office"/*.rtf; do
    name=$(basename "$file" .rtf)
    mv "$file" "$corpus/rtf/$name-libreoffice.rtf"
    cp "$corpus/source/$name.txt" "$corpus/rtf/$name-libreoffice.txt"
done
tools/with-display.sh --own bash -c '
    for file in "$1"/source/*.html "$1"/source/*.text; do
        name=$(basename "${file%.*}")
        timeout 60 abiword --to=rtf --to-name="$1/rtf/$name-abiword.rtf" "$file" >>"$1/log" 2>&1 ||
            continue
        cp "$1/source/$name.txt" "$1/rtf/$name-abiword.txt"
    done' - "$corpus"
echo "$(ls "$corpus/rtf"/*.rtf | wc -l) documents by LibreOffice and AbiWord"

MELVORIN_RTF_FILES="Z:${corpus//\//\\}\\rtf"
export MELVORIN_RTF_FILES
tools/endure.sh 'ForeignRtf.Survives*'
