#!/bin/bash
# get-haru.sh FOLDER REPAIRS: puts the source of libharu, which writes PDF, into FOLDER, taken from
# Debian's source package, and repairs it. Does nothing when it is there with these repairs.
set -eu
version=2.3.0+dfsg
# Of the package's archive: another one must not be compiled in unnoticed.
sum=87e8269d4b1b333a6e44168b4209bc6442ae3a11557cc8dc386fed65400bd34e

folder=$1
repairs=$2
if cmp -s "$repairs" "$folder/repairs.patch"; then exit 0; fi

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
# Lists of its own, as few machines have those of sources. The signatures are the machine's.
mkdir -p "$work/lists/partial"
suite=$(. /etc/os-release && echo "$VERSION_CODENAME")
mirror=$(sed -n 's/^URIs: *//p; s/^deb  *\(http[^ ]*\) .*/\1/p' \
    /etc/apt/sources.list.d/debian.sources /etc/apt/sources.list 2>/dev/null | head -1)
echo "deb-src [signed-by=/usr/share/keyrings/debian-archive-keyring.gpg]" \
    "${mirror:?no Debian archive is configured} $suite main" >"$work/sources.list"
apt=(apt-get -qq -o "Dir::Etc::sourcelist=$work/sources.list" -o Dir::Etc::sourceparts=-
    -o "Dir::State::lists=$work/lists" -o "Dir::Cache=$work" -o APT::Sandbox::User=)
echo "fetching the source of libharu"
for attempt in 1 2 3; do
    if (cd "$work" && "${apt[@]}" update &&
        "${apt[@]}" source --download-only --tar-only "libharu=$version-1") >/dev/null; then break; fi
    [ "$attempt" -lt 3 ] || { echo "get-haru: the source of libharu cannot be fetched" >&2; exit 1; }
    sleep 5
done
archive=$work/libharu_$version.orig.tar.xz
echo "$sum  $archive" | sha256sum --check --status || {
    echo "get-haru: libharu $version is another one than expected" >&2
    exit 1
}
mkdir "$work/tree"
tar -xJf "$archive" -C "$work/tree" --strip-components=1
patch --quiet --strip=1 --directory="$work/tree" <"$repairs"
rm -rf "$folder"
mkdir -p "$folder"
cp -r "$work/tree/src" "$work/tree/include" "$work/tree/README" "$folder"
cp "$repairs" "$folder/repairs.patch"
