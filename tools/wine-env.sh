# Sourced by the scripts that run Wine: one prefix under the build folder, nothing of the user's.
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
export WINEPREFIX=${MELVORIN_WINEPREFIX:-$root/build/wine}
export WINEDLLOVERRIDES="mscoree,mshtml=" WINEDEBUG=${WINEDEBUG:--all} WINEARCH=win64
wine=/usr/lib/wine/wine64
# Debian names the server after its bitness.
wineserver=/usr/lib/wine/wineserver64
