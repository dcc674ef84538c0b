#!/bin/bash
# wine.sh PROGRAM.exe [ARGUMENT...]: runs a Windows program in our prefix, with a time limit,
# because Wine without a working display hangs instead of failing.
set -eu
. "$(dirname "$0")/wine-env.sh"
[ -n "${DISPLAY:-}" ] || { echo "wine.sh: no display; use with-display.sh" >&2; exit 1; }
limit=${MELVORIN_WINE_TIMEOUT:-900}
result=0
timeout "$limit" "$wine" "$@" || result=$?
[ $result -ne 124 ] || echo "wine.sh: $1 was ended after $limit seconds" >&2
exit $result
