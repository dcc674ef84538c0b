#!/usr/bin/python3
"""Make the chord book: the dictionary's database and the fonts that draw its diagrams.

    tools/chordbook/make.py OUTDIR

Writes OUTDIR/Dbase/MlvDbase.db and OUTDIR/Fonts/Melvorin01.ttf to Melvorin34.ttf. The kinds of
chords are in data/chordbook/kinds.txt; the shapes are searched for, checked and drawn here. The
same sources give the same bytes. Needs fontTools (Debian package python3-fonttools).
"""

import argparse
import os
import pathlib
import sys
import tempfile

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


def make(folder):
    # Everything is made before anything is put in place: a fault leaves the old set whole.
    entries = checked_book()
    folder.mkdir(parents=True, exist_ok=True)
    with tempfile.TemporaryDirectory(dir=folder, prefix=".chordbook.") as name:
        fresh = pathlib.Path(name)
        (fresh / "Dbase").mkdir()
        (fresh / "Fonts").mkdir()
        write_fonts(fresh / "Fonts", entries)
        write_database(fresh / "Dbase" / "MlvDbase.db", entries)
        # The database comes last: the build takes it as the sign that all is there.
        for path in sorted(fresh.rglob("*.*"), reverse=True):
            target = folder / path.relative_to(fresh)
            target.parent.mkdir(exist_ok=True)
            os.replace(path, target)


def main():
    parser = argparse.ArgumentParser(description="Make the chord book: database and fonts.")
    parser.add_argument("outdir", metavar="OUTDIR", type=pathlib.Path)
    try:
        make(parser.parse_args().outdir)
    except (BookError, OSError) as error:
        print(f"chordbook: {error}", file=sys.stderr)
        return 1
    return 0


if __name__ == "__main__":
    sys.exit(main())
