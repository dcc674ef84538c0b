#!/usr/bin/python3
"""Make the chord book: the dictionary's database and the fonts that draw its diagrams.

    tools/chordbook/make.py [--ready FOLDER] OUTDIR

Writes OUTDIR/Dbase/MlvDbase.db and OUTDIR/Fonts/Melvorin01.ttf to Melvorin34.ttf. The kinds of
chords are in data/chordbook/kinds.txt; the shapes are searched for, checked and drawn here. The
same sources give the same bytes, so what was made of them once is kept in FOLDER for the next
build, if one is named. Needs fontTools (Debian package python3-fonttools).
"""

import argparse
import hashlib
import os
import pathlib
import shutil
import sys
import tempfile

import fontTools

sys.dont_write_bytecode = True
sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent))

# pylint: disable=wrong-import-position
from book import fingers_text, frets_text, make_book  # noqa: E402
from check import faults  # noqa: E402
from database import write_database  # noqa: E402
from fonts import write_fonts  # noqa: E402
from theory import BookError  # noqa: E402


def checked_book():
    entries = make_book()
    found = [fault for entry in entries for fault in faults(entry, frets_text, fingers_text)]
    if found:
        raise BookError("; ".join(found[:20]))
    return entries


def write_book(folder):
    entries = checked_book()
    (folder / "Dbase").mkdir()
    (folder / "Fonts").mkdir()
    write_fonts(folder / "Fonts", entries)
    write_database(folder / "Dbase" / "MlvDbase.db", entries)


def sum_of_sources():
    """Of all that the bytes depend on."""
    total = hashlib.sha256(f"{sys.version} {fontTools.version}".encode())
    here = pathlib.Path(__file__).resolve().parent
    kinds = here.parents[1] / "data" / "chordbook" / "kinds.txt"
    for source in [*sorted(here.glob("*.py")), kinds]:
        total.update(source.name.encode() + b"\0" + source.read_bytes() + b"\0")
    return total.hexdigest()


def fill(folder, ready):
    """The book into an empty folder, made or as it was kept."""
    if ready is None:
        return write_book(folder)
    kept = ready / sum_of_sources()
    if kept.is_dir():
        shutil.copytree(kept, folder, dirs_exist_ok=True)
        return None
    write_book(folder)
    ready.mkdir(parents=True, exist_ok=True)
    with tempfile.TemporaryDirectory(dir=ready, prefix=".chordbook.") as name:
        whole = pathlib.Path(name) / "whole"
        shutil.copytree(folder, whole)
        if not kept.is_dir():
            os.rename(whole, kept)
    return None


def make(folder, ready=None):
    # Everything is made before anything is put in place: a fault leaves the old set whole.
    folder.mkdir(parents=True, exist_ok=True)
    with tempfile.TemporaryDirectory(dir=folder, prefix=".chordbook.") as name:
        fresh = pathlib.Path(name)
        fill(fresh, ready)
        # The database comes last: the build takes it as the sign that all is there.
        for path in sorted(fresh.rglob("*.*"), reverse=True):
            target = folder / path.relative_to(fresh)
            target.parent.mkdir(exist_ok=True)
            os.replace(path, target)


def main():
    parser = argparse.ArgumentParser(description="Make the chord book: database and fonts.")
    parser.add_argument("--ready", metavar="FOLDER", type=pathlib.Path)
    parser.add_argument("outdir", metavar="OUTDIR", type=pathlib.Path)
    arguments = parser.parse_args()
    try:
        make(arguments.outdir, arguments.ready)
    except (BookError, OSError) as error:
        print(f"chordbook: {error}", file=sys.stderr)
        return 1
    return 0


if __name__ == "__main__":
    sys.exit(main())
