#!/bin/bash
# lint.sh: formatting of all code, and clang-tidy on core. A file is checked again only after it,
# a header or the rules have changed.
set -eu
cd "$(dirname "$0")/.."

mapfile -t sources < <(git ls-files --cached --others --exclude-standard '*.h' '*.cpp')
clang-format --dry-run --Werror "${sources[@]}"

stamps=build/lint
mkdir -p "$stamps"
newest=$(ls -t .clang-tidy $(git ls-files --cached --others --exclude-standard 'src/*.h') | head -1)
check() {
    stamp=$1/$(echo "$2" | tr / _)
    if [ "$stamp" -nt "$2" ] && [ "$stamp" -nt "$3" ]; then return 0; fi
    clang-tidy --quiet --extra-arg=-Wno-unknown-warning-option -p build/native "$2" 2>"$stamp.log" || { cat "$stamp.log"; return 1; }
    touch "$stamp"
}
export -f check
# What the native build compiles is core.
/usr/bin/python3 - <<'PY' | xargs -P "$(nproc)" -I{} bash -c 'check "$0" "$1" "$2"' "$stamps" {} "$newest"
import json, os
root = os.getcwd()
files = {entry["file"] for entry in json.load(open("build/native/compile_commands.json"))}
for file in sorted(files):
    path = os.path.relpath(file, root)
    if path.startswith("src/"):
        print(path)
PY
