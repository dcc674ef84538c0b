#!/bin/bash
# setup.sh [package|test-x86|corpus]: installs what building and testing need on Debian 12, or what these
# targets need besides. Does nothing, quickly, when all is there.
set -eu

packages=(
    make cmake ninja-build g++ python3 git
    g++-mingw-w64-x86-64-posix g++-mingw-w64-i686-posix binutils-mingw-w64
    googletest clang clang-format clang-tidy libasan8 libubsan1
    wine wine64 xvfb xauth x11-utils x11-xkb-utils xdotool imagemagick mandoc
    libz-mingw-w64-dev zlib1g-dev patch xz-utils poppler-utils ghostscript
    fonts-liberation fonts-dejavu-core fonts-wine librsvg2-bin
    fp-utils python3-markdown
    python3-fonttools python3-pil python3-mido python3-numpy fluidsynth timgm6mb-soundfont
)
# Some distributors put npm into the package of Node.js itself.
command -v npm >/dev/null || packages+=(npm)

case ${1:-} in
    package) packages=(nsis) ;;
    test-x86) packages=(debootstrap) ;;
    corpus) packages=(libreoffice-writer abiword python3) ;;
esac

missing=()
for package in "${packages[@]}"; do
    state=$(dpkg-query -W -f '${Status}' "$package" 2>/dev/null || true)
    [ "$state" = "install ok installed" ] || missing+=("$package")
done
[ ${#missing[@]} -eq 0 ] && exit 0

as_root=()
if [ "$(id -u)" -ne 0 ]; then
    command -v sudo >/dev/null || {
        echo "setup: root or sudo is needed to install: ${missing[*]}" >&2
        exit 1
    }
    as_root=(sudo)
fi
echo "setup: installing ${missing[*]}"
export DEBIAN_FRONTEND=noninteractive
"${as_root[@]}" apt-get update -q
"${as_root[@]}" apt-get install -y -q --no-install-recommends "${missing[@]}"
