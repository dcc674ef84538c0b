#!/usr/bin/python3
"""Write the example songs, with diagrams from the chord book of this build.

    tools/make-examples.py OUTDIR

From data/examples/NAME.chart to OUTDIR/Examples/NAME.mvt, as the editor would save it. A line of a
chart is a title (=), a section (#), a hint (>), the chords whose diagrams are shown (!), or a line
of the song: chords are coloured as a key change colours them.
"""

import pathlib
import re
import sqlite3
import sys

SOURCE = pathlib.Path(__file__).resolve().parent.parent / "data" / "examples"
CHORDS = re.compile(r"^ *[A-G][#b]?(m|7|m7)?( +[A-G][#b]?(m|7|m7)?)* *$")
TITLE = r"\plain\f0\b\fs32\cf3 "
SECTION = r"\plain\f0\b\fs20\cf3 "
CHORD_LINE = r"\plain\f0\fs20\cf2 "
PLAIN = r"\plain\f0\fs20\cf1 "
HINT = r"\plain\f0\i\fs20\cf4 "
DIAGRAM_HALF_POINTS = 72


def escaped(text):
    """The text as Rich Text writes it."""
    out = ""
    for character in text:
        if character in "\\{}":
            out += "\\" + character
        elif ord(character) < 0x80:
            out += character
        else:
            out += "\\'%02x" % character.encode("cp1252")[0]
    return out


class Fonts:
    """The fonts of one song, numbered as they come up."""

    def __init__(self, book):
        self.book = book
        self.names = ["Lucida Console"]

    def diagram(self, symbol):
        """The chord's best fingering as a character of its font."""
        row = self.book.execute(
            "select Mname, Refum from Borrower where Fname = ?", (symbol,)
        ).fetchone()
        if row is None:
            sys.exit(f"make-examples: the chord book has no {symbol}")
        font, character = f"Melvorin {row[0]}", row[1]
        if font not in self.names:
            self.names.append(font)
        return r"\plain\f%d\fs%d\cf1 %s" % (
            self.names.index(font),
            DIAGRAM_HALF_POINTS,
            escaped(character),
        )

    def shapes(self, symbols):
        """A line of diagrams behind their names."""
        return PLAIN + "Shapes:   " + "    ".join(
            f"{escaped(symbol)} {self.diagram(symbol)}{PLAIN}" for symbol in symbols
        )


def rich_text(chart, book):
    """A chart as a document."""
    fonts = Fonts(book)
    lines = []
    for line in chart.splitlines():
        kind, rest = line[:2], line[2:]
        if kind == "= ":
            lines.append(TITLE + escaped(rest))
        elif kind == "# ":
            lines.append(SECTION + escaped(rest))
        elif kind == "> ":
            lines.append(HINT + escaped(rest))
        elif kind == "! ":
            lines.append(fonts.shapes(rest.split()))
        else:
            lines.append((CHORD_LINE if CHORDS.match(line) else PLAIN) + escaped(line))
    table = "".join(
        r"{\f%d\fnil\fcharset0 %s;}" % (number, name) for number, name in enumerate(fonts.names)
    )
    return (
        r"{\rtf1\ansi\ansicpg1252\deff0{\fonttbl" + table + "}\r\n"
        r"{\colortbl;\red0\green0\blue0;\red192\green0\blue0;\red0\green64\blue160;"
        r"\red0\green100\blue60;}" + "\r\n" + r"\uc1\pard" + "\\par\r\n".join(lines) + "}"
    )


def main(out):
    """Writes every song."""
    folder = out / "Examples"
    folder.mkdir(parents=True, exist_ok=True)
    book = sqlite3.connect(f"file:{out / 'Dbase' / 'MlvDbase.db'}?mode=ro", uri=True)
    for chart in sorted(SOURCE.glob("*.chart")):
        document = rich_text(chart.read_text(encoding="utf-8"), book)
        (folder / f"{chart.stem}.mvt").write_bytes(document.encode("ascii"))


if __name__ == "__main__":
    main(pathlib.Path(sys.argv[1]))
