#!/bin/bash
# Makes the Wine prefix once. Needs a display (see with-display.sh).
set -eu
. "$(dirname "$0")/wine-env.sh"

# The stamp carries what the prefix was made for, so that a change here remakes it.
stamp=$WINEPREFIX/.melvorin-4
[ -e "$stamp" ] && exit 0
rm -rf "$WINEPREFIX"
mkdir -p "$WINEPREFIX"
echo "preparing the Wine prefix (once)"
timeout 180 "$wine" wineboot -i >/dev/null 2>&1
# The glyphs of caption buttons, which Debian's Wine does not find by itself.
cp /usr/share/wine/fonts/marlett.ttf /usr/share/wine/fonts/symbol.ttf \
    "$WINEPREFIX/drive_c/windows/Fonts/"
# The editor's two faces do not come with Wine; without a monospaced stand-in nothing lines up.
for pair in "Courier New=Liberation Mono" "Lucida Console=DejaVu Sans Mono"; do
    timeout 60 "$wine" reg add 'HKCU\Software\Wine\Fonts\Replacements' \
        /v "${pair%%=*}" /d "${pair#*=}" /f >/dev/null 2>&1
done
if [ -n "${MELVORIN_PRIVATE_DISPLAY:-}" ]; then
    # Without a window manager Wine would wait two seconds for it whenever a window closes.
    timeout 60 "$wine" reg add 'HKCU\Software\Wine\X11 Driver' /v Managed /d N /f >/dev/null 2>&1
fi
if [ -n "${MELVORIN_WINE_DESKTOP:-}" ]; then
    # A desktop of that size of Wine's own, on which its windows lie.
    timeout 60 "$wine" reg add 'HKCU\Software\Wine\Explorer' /v Desktop /d Default /f >/dev/null 2>&1
    timeout 60 "$wine" reg add 'HKCU\Software\Wine\Explorer\Desktops' /v Default \
        /d "$MELVORIN_WINE_DESKTOP" /f >/dev/null 2>&1
fi
timeout 60 "$wineserver" -w
touch "$stamp"
