#!/bin/bash
# wine.sh PROGRAM.exe [ARGUMENT...]: runs a Windows program in our prefix, with a time limit,
# because Wine without a working display hangs instead of failing.
set -eu
. "$(dirname "$0")/wine-env.sh"
[ -n "${DISPLAY:-}" ] || { echo "wine.sh: no display; use with-display.sh" >&2; exit 1; }
exec timeout "${MELVORIN_WINE_TIMEOUT:-900}" "$wine" "$@"
