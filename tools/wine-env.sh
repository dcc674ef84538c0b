# Sourced by the scripts that run Wine: one prefix under the build folder, nothing of the user's.
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
# Windows of a private X server have no window manager; their prefix is set up for that.
export WINEPREFIX=${MELVORIN_WINEPREFIX:-$root/build/wine${MELVORIN_PRIVATE_DISPLAY:+-private}}
export WINEDLLOVERRIDES="mscoree,mshtml=;winedbg.exe=d" WINEDEBUG=${WINEDEBUG:--all} WINEARCH=win64
# The 32-bit Wine is elsewhere (test-x86.sh).
wine=${MELVORIN_WINE:-/usr/lib/wine/wine64}
# Debian names the server after its bitness.
wineserver=${MELVORIN_WINESERVER:-/usr/lib/wine/wineserver64}
