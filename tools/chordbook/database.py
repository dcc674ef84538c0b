"""Writes the chord book as the SQLite file that the program and the batch tool read."""

import sqlite3

from book import fingers_text, first_fret, frets_text
from fingering import ABSENT

# Borrower is what the dictionary shows, in this order: all chords, then once more under their
# other usual symbols, so that a search for those finds them too. Mname is the number of the font,
# the last five fields are characters in it.
#
# Diagram tells what each of those characters shows. Symbol is the chord's own (never an alias),
# Frets and Fingers run from the low E string up ("x32010" and "-32-1-"; hyphens part the frets
# where one has two digits), FirstFret is the fret in the top row, 1 below the nut.
SCHEMA = """
create table Borrower (
    Fname text collate nocase not null,
    Course text collate nocase not null,
    Mname text collate nocase not null,
    Refum text collate nocase not null,
    Refdois text collate nocase not null,
    Reftres text collate nocase not null,
    Refquatro text collate nocase not null,
    refcinco text collate nocase not null
);
create table Diagram (
    Font text not null,
    Character text not null,
    Symbol text not null,
    Frets text not null,
    Fingers text not null,
    FirstFret integer not null,
    primary key (Font, Character)
) without rowid;
create index DiagramOfSymbol on Diagram (Symbol collate nocase);
"""

FIELDS = 5  # diagrams in a row of Borrower


def borrower_rows(entries):
    chords = [(entry.symbol, entry) for entry in entries]
    aliases = [(symbol, entry) for entry in entries for symbol in entry.also]
    for symbol, entry in chords + aliases:
        references = entry.kind.slot + ABSENT * (FIELDS - len(entry.kind.slot))
        yield (symbol, entry.name, f"{entry.font:02}", *references)


def diagram_rows(entries):
    for entry in entries:
        for character, shape in zip(entry.kind.slot, entry.shapes):
            yield (
                f"{entry.font:02}",
                character,
                entry.symbol,
                frets_text(shape),
                fingers_text(shape),
                first_fret(shape),
            )


def write_database(path, entries):
    """Makes the file anew; the same entries give the same bytes."""
    path.unlink(missing_ok=True)
    database = sqlite3.connect(path)
    try:
        database.execute("pragma journal_mode = off")
        database.execute("pragma page_size = 4096")
        database.executescript(SCHEMA)
        database.executemany(
            "insert into Borrower values (?, ?, ?, ?, ?, ?, ?, ?)", borrower_rows(entries)
        )
        database.executemany("insert into Diagram values (?, ?, ?, ?, ?, ?)", diagram_rows(entries))
        database.commit()
    finally:
        database.close()
