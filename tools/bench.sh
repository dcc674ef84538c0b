#!/bin/bash
# bench.sh [FOLDER]: measures the engine and paper, then the editor and its start under Wine, on a private
# display. FOLDER holds the Windows build, build/win-x64 by default. Standard output has nothing
# but lines of "name value unit".
set -euo pipefail
cd "$(dirname "$0")/.."
bin=${1:-build/win-x64}

build/native/engine_bench
build/native/paper_bench
tools/with-display.sh --own bash -euo pipefail -c '
    tools/wine-prefix.sh >&2
    tools/wine.sh "$1/editor_bench.exe" | tr -d "\r"
    tools/wine.sh "$1/start_bench.exe" | tr -d "\r"' - "$bin"
