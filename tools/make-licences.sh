#!/bin/bash
# make-licences.sh FOLDER: puts the licences of the program and of all that is linked into it into
# FOLDER, with the line ends of Windows. The texts of others come from the packages that their code
# came from.
set -euo pipefail
tree=$(cd "$(dirname "$0")/.." && pwd)
folder=$1
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

cp "$tree/LICENSE" "$work/Melvorin.txt"
cp /usr/share/doc/gcc-mingw-w64-base/copyright "$work/GCC runtime libraries.txt"
cp /usr/share/doc/mingw-w64-common/copyright "$work/mingw-w64.txt"
cp /usr/share/common-licenses/GPL-3 "$work/GPL-3.txt"
version=$(sed -n 's/^#define SQLITE_VERSION  *"\(.*\)"/\1/p' "$tree/build/deps/sqlite/sqlite3.h")
cat >"$work/SQLite.txt" <<END
Melvorin reads its chord dictionary with SQLite $version.

The authors of SQLite have put its code into the public domain: anybody may copy,
change, publish, use, compile, sell and pass it on, for any purpose and by any means.
END
sed -n '/^\* License/,/^\* Acknowledgment/p' "$tree/build/deps/haru/README" |
    sed -e '/^\*/d' -e '1{/^$/d}' >"$work/libharu.txt"
cat >>"$work/libharu.txt" <<END
The source that is linked in has been changed: it has repairs of Melvorin's own.
END
cp /usr/share/doc/libz-mingw-w64-dev/copyright "$work/zlib.txt"
cat >"$work/Read me first.txt" <<'END'
"Melvorin.txt" says what you may do with the program.

Linked into it are:

SQLite (SQLite.txt)
    reads the chord dictionary.
libharu (libharu.txt) and zlib (zlib.txt)
    write PDF.
The runtime libraries of the GNU compilers, libgcc and libstdc++
    (GCC runtime libraries.txt, GPL-3.txt). Their "GCC Runtime Library Exception" allows
    linking them into any program without conditions on that program.
The runtime of mingw-w64 with its threads, winpthreads (mingw-w64.txt)
    connects the program to Windows.

The installer and the uninstaller are made with NSIS (NSIS.txt, where there is an installer).
END
mkdir -p "$folder"
rm -f "$folder"/*.txt
for text in "$work"/*.txt; do
    sed 's/\r*$/\r/' "$text" >"$folder/${text##*/}"
done
