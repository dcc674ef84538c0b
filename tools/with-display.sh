#!/bin/bash
# with-display.sh [--size WxH] [--own] COMMAND...: runs a command with an X display, starting a
# private X server where there is none (or always, with --own), and ends both it and the Wine
# server of our prefix afterwards.
set -eu
tools=$(dirname "$0")

size=1280x1024
own=
while :; do
    case ${1:-} in
        --size) size=$2; shift 2 ;;
        --own) own=1; shift ;;
        *) break ;;
    esac
done

if [ -z "$own" ] && [ -n "${DISPLAY:-}" ] && timeout 10 xdpyinfo >/dev/null 2>&1; then
    exec "$@"
fi

export MELVORIN_PRIVATE_DISPLAY=1
. "$tools/wine-env.sh"
number=$(mktemp)
Xvfb -displayfd 7 -screen 0 "${size}x24" -nolisten tcp 7>"$number" >/dev/null 2>&1 &
xvfb=$!
finish() {
    timeout 30 "$wineserver" -k >/dev/null 2>&1 || true
    kill "$xvfb" 2>/dev/null || true
    wait "$xvfb" 2>/dev/null || true
    rm -f "$number"
}
trap finish EXIT
for _ in $(seq 200); do
    [ -s "$number" ] && break
    kill -0 "$xvfb" 2>/dev/null || { echo "with-display: Xvfb does not start" >&2; exit 1; }
    sleep 0.05
done
DISPLAY=:$(cat "$number")
export DISPLAY
# Wine's first program on a screen of another size still sees the former one.
stamp=$WINEPREFIX/.screen-size
if [ -d "$WINEPREFIX" ] && [ "$(cat "$stamp" 2>/dev/null)" != "$size" ]; then
    timeout 60 "$wine" cmd /c exit >/dev/null 2>&1 || true
    timeout 30 "$wineserver" -k >/dev/null 2>&1 || true
    echo "$size" >"$stamp"
fi
"$@"
