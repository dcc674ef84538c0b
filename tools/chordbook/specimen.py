#!/usr/bin/python3
"""Draw all diagrams of one root on a sheet, to judge them by eye.

    tools/chordbook/specimen.py FOLDER ROOT OUT.png [--smooth] [--sizes 24,36,48,72] [--first N]

FOLDER is where make.py wrote. The letters are drawn as the program shows them, in plain black and
white, or smoothed. Needs Pillow (Debian package python3-pil).
"""

import argparse
import pathlib
import sqlite3
import sys

from PIL import Image, ImageDraw, ImageFont

sys.dont_write_bytecode = True
sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent))
from theory import ROOTS  # noqa: E402  pylint: disable=wrong-import-position

MARGIN = 12
WIDTH = 1500


def diagrams(folder, root):
    """(font number, character, symbol, frets) in the order of the fonts."""
    database = sqlite3.connect(f"file:{folder}/Dbase/MlvDbase.db?mode=ro", uri=True)
    first = 2 * ROOTS.index(root) + 1
    rows = database.execute(
        "select b.Mname, d.Character, b.Fname, d.Frets from Borrower b join Diagram d"
        " on d.Font = b.Mname and d.Symbol = b.Fname where b.Mname in (?, ?)"
        " order by b.rowid, instr(b.Refum || b.Refdois || b.Reftres || b.Refquatro || b.refcinco,"
        " d.Character)",
        (f"{first:02}", f"{first + 1:02}"),
    ).fetchall()
    database.close()
    return rows


def draw_size(draw, folder, rows, size, top):
    """One size below top; the captions tell what should be seen. Returns the bottom."""
    caption = ImageFont.load_default()
    fonts = {
        number: ImageFont.truetype(f"{folder}/Fonts/Melvorin{number}.ttf", size)
        for number in {row[0] for row in rows}
    }
    x, y = MARGIN, top
    for number, character, symbol, frets in rows:
        font = fonts[number]
        ascent, descent = font.getmetrics()
        width = round(font.getlength(character))
        if x + width + MARGIN > WIDTH:
            x, y = MARGIN, y + ascent + descent + 26
        draw.text((x, y), character, font=font, fill=0)
        label = f"{symbol} {frets}".encode("latin-1", "replace").decode("latin-1")
        if size < 40:
            label = frets
        draw.text((x, y + ascent + descent + 2), label[: max(6, width // 6)], font=caption, fill=0)
        x += max(width, 6 * len(label[: max(6, width // 6)])) + MARGIN
    return y + ascent + descent + 34


def main():
    parser = argparse.ArgumentParser(description="Draw all diagrams of one root on a sheet.")
    parser.add_argument("folder")
    parser.add_argument("root", choices=ROOTS)
    parser.add_argument("out")
    parser.add_argument("--smooth", action="store_true")
    parser.add_argument("--sizes", default="24,36,48,72")
    parser.add_argument("--first", type=int, default=1000, help="only so many diagrams")
    arguments = parser.parse_args()
    rows = diagrams(arguments.folder, arguments.root)[: arguments.first]
    sheet = Image.new("L", (WIDTH, 30000), 255)
    draw = ImageDraw.Draw(sheet)
    draw.fontmode = "L" if arguments.smooth else "1"
    bottom = MARGIN
    for size in map(int, arguments.sizes.split(",")):
        bottom = draw_size(draw, arguments.folder, rows, size, bottom)
    sheet.crop((0, 0, WIDTH, bottom)).save(arguments.out)


if __name__ == "__main__":
    main()
