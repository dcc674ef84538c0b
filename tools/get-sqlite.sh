#!/bin/bash
# get-sqlite.sh FOLDER: puts the source of SQLite into FOLDER (sqlite3.c, sqlite3.h), taken from
# the npm package better-sqlite3, which carries the one-file form. Does nothing when it is there.
set -eu
version=12.11.1
# Of sqlite3.c in that version: another file must not be compiled in unnoticed.
sum=60d2f39a3726cd6b9021da6f4e868608d66fbb6528a9f513dc8ffcc640493422

folder=$1
matches() { echo "$sum  $1" | sha256sum --check --status; }
if [ -e "$folder/sqlite3.h" ] && matches "$folder/sqlite3.c" 2>/dev/null; then exit 0; fi

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
echo "fetching the source of SQLite"
for attempt in 1 2 3; do
    if (cd "$work" && npm pack --silent "better-sqlite3@$version" >/dev/null); then break; fi
    [ "$attempt" -lt 3 ] || { echo "get-sqlite: npm cannot fetch better-sqlite3@$version" >&2; exit 1; }
    sleep 5
done
tar -xzf "$work"/better-sqlite3-*.tgz -C "$work" package/deps/sqlite3
matches "$work/package/deps/sqlite3/sqlite3.c" || {
    echo "get-sqlite: better-sqlite3@$version has another sqlite3.c than expected" >&2
    exit 1
}
mkdir -p "$folder"
cp "$work"/package/deps/sqlite3/sqlite3.[ch] "$folder"
