#!/usr/bin/python3
"""Tests for tools/chordbook. Run: /usr/bin/python3 tests/tools/test_chordbook.py"""

import pathlib
import re
import shutil
import sqlite3
import subprocess
import sys
import tempfile
import unittest

from fontTools.ttLib import TTFont
from PIL import Image, ImageDraw, ImageFont

TREE = pathlib.Path(__file__).resolve().parent.parent.parent
TOOLS = TREE / "tools" / "chordbook"
sys.dont_write_bytecode = True
sys.path.insert(0, str(TOOLS))

# pylint: disable=wrong-import-position
import check  # noqa: E402
import glyphs  # noqa: E402
from fingering import EVEN_SLOTS, ODD_SLOTS, TABLE, FingeringChange  # noqa: E402
from normaliser import is_stable, normalised  # noqa: E402
from theory import ROOTS, read_kinds  # noqa: E402

RECORD_SOURCE = (
    "Select Fname, Course, Mname, Refum, Refdois, Reftres, Refquatro, refcinco from Borrower"
)
CHORD_LINE = set(" ABCDEFGmb#1345679°iSus/+Mºad()")

# What guitarists play first; a second entry where hands differ.
EVERYDAY = """
C x32010|D xx0232|E 022100|F 133211|G 320003|A x02220|B x24442|F# 244322|C# x46664|Ab 466544
Bb x13331|Eb x68886|Am x02210|Bm x24432|Cm x35543|C#m x46654|Dm xx0231|Em 022000|Fm 133111
F#m 244222|Gm 355333|G#m 466444|Bbm x13321|D#m x68876 xx1342|A7 x02020|B7 x21202|C7 x32310
D7 xx0212|E7 020100|F7 131211|F#7 242322|G7 320001|Bb7 x13131|G#7 464544|C#7 x46464|Am7 x02010
Bm7 x24232 x20202|Cm7 x35343|C#m7 x46454 x42100|Dm7 xx0211|Em7 022030 020000|Fm7 131111
F#m7 242222|Gm7 353333|G#m7 464444|Bbm7 x13121|A7+ x02120|C7+ x32000|D7+ xx0222|F7+ xx3210
G7+ 320002|E7+ 021100|Bb7+ x13231|C#7+ x46564|A4 x02230|D4 xx0233|E4 022200|F4 133311
G4 3x0013 330013|B4 x24452|F#4 244422|A4/7 x02030|D4/7 xx0213|E4/7 020200|A6 x02222|D6 xx0202
E6 022120|G6 320000|C6 x32210|Dm6 xx0201|Em6 022020|Am6 x02212|C9 x32030|D5/9 xx0230
A5/9 x02200|E7/9 020102|A7/9 x02423|C7/9 x32333|D7/9 x54555|B7/9 x21222|E5 022xxx|A5 x022xx
C5 x355xx|G5 355xxx|D° xx0101|C5# x32110|C/E 032010|C/G 332010|G/F 120003|G/B x20003 x20033
Am/G 302210 3x2210|D/F# 200232 2x0232|F/A x03211|A/E 002220|C/Bb x12013 x12010
"""

# Chords over another bass: what guitarists sign as the first shape.
OVER_BASS = """
E/G# 422100 4x2100 4x2400|A/C# x42220|Bb/D xx0331 x5333x|Ab/C x31114 x3111x x36544
Eb/G 3x134x xx5343 365343|F#/A# x14322|D/A x00232|E/B x22100|F/C x33211|G/D xx0003 xx0433
B/F# 224442 xx4442|Bb/F 113331 xx3331|Eb/Bb x11343 668886|Ab/Eb x66544 xx1114|F#/C# x44322
C#/G# 446664 xx6664|Am/C x32210|Em/G 322000 3x2000|Dm/F xx3231 1x0231|Bm/D xx0432
F#m/A x04222 x0422x|C#m/E 042120 xx2120 0x2120 xx2124|Gm/Bb x10033 x10333 x1003x|Cm/Eb xx1013
Fm/Ab 433111 4x3111|Am/E 002210|Dm/A x00231|Em/B x22000|Bm/F# 224432 xx4432|F#m/C# x44222
Gm/D xx0333 x55333|Cm/G 335543 xx5543|C#m/G# 446654 xx6654|Fm/C x33111|Em/D xx0000 xx0453
Dm/C x30231 x3x231|Bm/A x04432 x00432 x0443x|F#m/E xx2222 044222 042222 0x4222|C#m/B x22120 x2x120
Gm/F xx3333 1x0333 110333|Cm/Bb x11013 x1101x 6x554x|D/C x30232 x3x232|A/G 3x2220 302220
E/D xx0100 xx0454|F/Eb xx1211|B/A x04442 x0444x|C/D xx0010|G/A x00003 x05433
F/G 3x3211 303211 xx5565|D/E 000232 0x0232 xx2232|A/B x2222x x2x220 x22225
Bb/C x3333x x30331 x3x331|E/F# 222100 2x2100|G/C x30003 x3x003|C/F xx3010 1x2010 133010
D/G 3x0232 300232|A/D xx0220|C/B x22010 x2x010|D/C# x40232 x4x232|G/F# 2x0003 220003 220033
F/E xx2211 033211 003211 0x3211|Am/B x22210 x2x210|Am/D xx0210|Am/F xx3210 1x2210 102210
Am/G# 402210 4x2210|Em/A x02000|D7/F# 200212 2x0212|G7/B x20001|C7/E 032310 0x2310|A7/E 002020
D7/A x00212|E7/B x20100 x22130 x20130|B7/F# 2x1202 22120x|G7/D xx0001|C7/G 3x2310
Em7/B x20000 x22030|Em7/A x00000 x02030|C7+/E 032000|C7+/G 332000|F7+/A x03210|G7+/B x20002
D7+/F# 200222 2x0222|D7+/A x00222
"""

# Grips without an open string, where a chord has so many fingerings that one of them may be moved.
MOVABLE = "E7/9# x7678x|G9 325233|Em7/9 x75777|Em5b/7 x75756 x7x786|Em7/11 x77787|F6/9 1x3233"


def chords_of(table):
    return [line.split() for line in re.split(r"[|\n]", table.strip())]


def make(folder, tool=TOOLS / "make.py", ready=None):
    kept = [] if ready is None else ["--ready", str(ready)]
    return subprocess.run(
        [sys.executable, str(tool), *kept, str(folder)], capture_output=True, text=True, check=False
    )


def files(folder):
    return {path.name: path.read_bytes() for path in folder.rglob("*") if path.is_file()}


def rows(database, query, *values):
    connection = sqlite3.connect(f"file:{database}?mode=ro", uri=True)
    try:
        return connection.execute(query, values).fetchall()
    finally:
        connection.close()


class Fingering(unittest.TestCase):
    def test_walk_from_every_character_keeps_to_its_chord_and_comes_back(self):
        for even, slots in ((False, ODD_SLOTS), (True, EVEN_SLOTS)):
            self.assertEqual(len("".join(slots)), len(set("".join(slots))))
            for slot in slots:
                for start in slot:
                    change, walk = FingeringChange(), [start]
                    while (character := change.next(walk[-1], even)) != start:
                        walk.append(character)
                        self.assertLess(len(walk), 8, (even, start, walk))
                    self.assertEqual(set(walk), set(slot) | set("J" if "g" in slot else ""))

    def test_known_walks(self):
        for even, walk in (
            (False, "aAsS²a"), (True, "aAsS²a"), (False, "yYÅuUy"), (True, "YuUyYu"),
            (False, "gGhHjJgG"), (False, "éÉíÍé"), (True, "ÉéÉ"), (True, "íÍìÌí"), (True, "îî"),
        ):  # fmt: skip
            change = FingeringChange()
            for one, other in zip(walk, walk[1:]):
                self.assertEqual(change.next(one, even), other, walk)
        self.assertIsNone(FingeringChange().next("$", False))
        self.assertEqual(len(TABLE), 564)


class Normaliser(unittest.TestCase):
    def test_rewrites(self):
        for text, expected in (
            ("C/3", "C/E"), ("Eb/3", "Eb/G"), ("A/A#", "A/Bb"), ("E6/Eb", "E6/D#"), ("Cb7", "B7"),
            ("Fbm", "Em"), ("A-7", "Am7"), ("C7M", "C7+"), ("G7/4", "G4/7"), ("C9/6", "C6/9"),
            ("C/A#", "C/Bb"), ("A/Db", "A/C#"), ("F7+/A#", "F7+/Bb"), ("Am7/G", "Am7/G"),
        ):  # fmt: skip
            self.assertEqual(normalised(text), expected)
        for text in ("Cadd9", "C(9)", "Am/F#", "C7M"):
            self.assertFalse(is_stable(text), text)


class Checker(unittest.TestCase):
    """The checker must see what is wrong; that the book is right is tested with the files."""

    def test_notes(self):
        for frets, root, degrees, bass, fault in (
            ("x32010", "C", "1 3 5", "C", None),
            ("x32011", "C", "1 3 5", "C", "does not belong"),
            ("x3201x", "C", "1 3 5 b7", "C", "b7 is missing"),
            ("x3555x", "C", "1 b3 5", "C", "does not belong"),
            ("032010", "C", "1 3 5", "C", "lowest"),
            ("032010", "C", "1 3 5", "E", None),
            ("x32310", "C", "1 3 5 b7", "C", None),  # the fifth may go
            ("x320xx", "C", "1 3 #5", "C", "#5 is missing"),
            ("xx0212", "D", "1 3 5 b7", "D", None),
            ("xxx010", "C", "1 3 5", "G", None),
        ):
            faults = list(check.sound_faults(check.read_frets(frets), root, degrees.split(), bass))
            with self.subTest(frets=frets):
                self.assertIn(fault or "", "; ".join(faults))
                self.assertEqual(bool(faults), bool(fault))

    def test_hands(self):
        for frets, fingers, fault in (
            ("133211", "134211", None),
            ("103211", "1-4211", "lies over"),
            ("x24440", "-1234-", None),
            ("x22220", "-1111-", "damps"),
            ("x24442", "-13331", "damps"),
            ("16xxx1", "14---1", "stretch"),
            ("1x4xxx", "1-2---", "apart"),
            ("231xxx", "123---", "crossed"),
            ("122xxx", "111---", "two frets"),
            ("2222xx", "1234--", "four fingertips"),
            ("x07670", "--213-", "far from"),
        ):
            faults = "; ".join(check.hand_faults(check.read_frets(frets), fingers))
            with self.subTest(frets=frets):
                self.assertIn(fault or "", faults)
                self.assertEqual(bool(faults), bool(fault), faults)

    def test_sets(self):
        one, part, other = (check.read_frets(f) for f in ("x32010", "x3201x", "x35553"))
        self.assertEqual(list(check.slot_faults("aA", [one, other])), [])
        self.assertIn("again", str(list(check.slot_faults("aA", [one, part]))))
        self.assertIn("1 shapes", str(list(check.slot_faults("aA", [one]))))


class ChordBook(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.folder = tempfile.TemporaryDirectory()
        cls.out = pathlib.Path(cls.folder.name) / "new" / "data"
        cls.ready = pathlib.Path(cls.folder.name) / "ready"
        result = make(cls.out, ready=cls.ready)
        assert result.returncode == 0, result.stderr
        cls.database = cls.out / "Dbase" / "MlvDbase.db"
        cls.borrower = rows(cls.database, RECORD_SOURCE)
        cls.kinds = read_kinds()
        cls.chords = cls.borrower[: len(ROOTS) * len(cls.kinds)]
        cls.diagrams = {
            (font, character): row
            for font, character, *row in rows(
                cls.database,
                "select Font, Character, Symbol, Frets, Fingers, FirstFret from Diagram",
            )
        }

    @classmethod
    def tearDownClass(cls):
        cls.folder.cleanup()

    def chord_diagrams(self, row):
        return [self.diagrams[row[2], character] for character in row[3:] if character != "§"]

    def test_rows(self):
        self.assertEqual(len(self.chords), 1581)
        self.assertEqual(len(self.diagrams), 17 * (147 + 130))
        symbols = {row[0]: row for row in self.borrower}
        for row in self.borrower:
            references = "".join(row[3:]).rstrip("§")
            self.assertGreaterEqual(len(references), 2)
            self.assertNotIn("§", references)
            self.assertIn(references, (ODD_SLOTS, EVEN_SLOTS)[int(row[2]) % 2 == 0])
            # An alias leads to what its chord has, and every diagram tells the chord it shows.
            chord = symbols[self.diagrams[row[2], row[3]][0]]
            self.assertEqual(row[1:], chord[1:])
            self.assertEqual({d[0] for d in self.chord_diagrams(row)}, {chord[0]})
        for k, row in enumerate(self.chords):
            root, kind = ROOTS[k // len(self.kinds)], self.kinds[k % len(self.kinds)]
            self.assertTrue(row[0].startswith(root) and row[1].startswith(root + " "), row)
            self.assertEqual(int(row[2]), 2 * ROOTS.index(root) + 1 + kind.even)

    def test_searches(self):
        for field, texts in (
            ("Fname", [row[0] for row in self.borrower]),
            ("Course", [row[1] for row in self.chords]),
        ):
            self.assertEqual(len({t.upper() for t in texts}), len(texts))
            self.assertEqual([t for t in texts if not is_stable(t)], [])
            for text in texts[::50]:
                query = f"select {field} from Borrower where {field} = ?"
                self.assertEqual(rows(self.database, query, text.upper())[0], (text,))
        self.assertEqual([r[0] for r in self.chords if not set(r[0]) <= CHORD_LINE], [])
        symbols = {row[0]: row for row in self.borrower}
        self.assertNotIn("CM7", symbols)
        for alias, chord in (
            ("Cmaj7", "C7+"), ("Gsus4", "G4"), ("Cdim", "C°"), ("Caug", "C5#"), ("D2", "D5/9"),
            ("Bbm7b5", "Bbm5b/7"), ("Eº", "E°"), ("A13", "A7/13"), ("F#7sus4", "F#4/7"),
        ):  # fmt: skip
            self.assertEqual(symbols[alias][1:], symbols[chord][1:])
        for symbol, name in (
            ("Cm7", "C Minor Seventh"), ("F#m/E", "F# Minor over E"), ("Gm/Bb", "G Minor over Bb"),
            ("C7+", "C Major Seventh"), ("Db/F", "Db Major over F"), ("A/C#", "A Major over C#"),
        ):  # fmt: skip
            self.assertEqual(symbols[symbol][1], name)

    def test_shapes(self):
        by_sound = {}
        for k, row in enumerate(self.chords):
            root, kind = ROOTS[k // len(self.kinds)], self.kinds[k % len(self.kinds)]
            bass = root if kind.bass == "1" else row[0].rpartition("/")[2]
            faults = []
            shapes = [check.read_frets(d[1]) for d in self.chord_diagrams(row)]
            for frets, (_, _, fingers, first) in zip(shapes, self.chord_diagrams(row)):
                faults += check.sound_faults(frets, root, kind.degrees, bass)
                faults += check.hand_faults(frets, fingers)
                fretted = [f for f in frets if f]
                at_nut = max(fretted, default=0) <= 4
                self.assertEqual(first, 1 if at_nut else min(fretted), row)
            faults += check.slot_faults(kind.slot, shapes)
            self.assertEqual(faults, [], row)
            # Roots that sound the same have the same shapes.
            same = by_sound.setdefault((check.half_steps(root), kind), shapes)
            self.assertEqual(shapes, same, row)

    def test_first_shapes(self):
        first = {row[0]: self.diagrams[row[2], row[3]][1] for row in self.chords}
        for table, least in ((EVERYDAY, 90), (OVER_BASS, 60)):
            known = chords_of(table)
            self.assertGreaterEqual(len(known), least)
            wrong = [(symbol, first[symbol], *shapes) for symbol, *shapes in known
                     if first[symbol] not in shapes]  # fmt: skip
            self.assertEqual(wrong, [])

    def test_one_of_four_shapes_can_be_moved(self):
        shapes = {row[0]: [d[1] for d in self.chord_diagrams(row)] for row in self.chords}
        for symbol, *movable in chords_of(MOVABLE):
            self.assertTrue(set(movable) & set(shapes[symbol]), symbol)
        plain = [row[0] for k, row in enumerate(self.chords)
                 if self.kinds[k % len(self.kinds)].bass == "1"]  # fmt: skip
        fixed = [symbol for symbol in plain if len(shapes[symbol]) > 3
                 and all(0 in check.read_frets(frets) for frets in shapes[symbol])]  # fmt: skip
        self.assertEqual(fixed, [])

    def test_font_tables(self):
        for number in range(1, 35):
            font = TTFont(self.out / "Fonts" / f"Melvorin{number:02}.ttf")
            with self.subTest(font=number):
                names = {n.nameID: str(n) for n in font["name"].names}
                self.assertEqual((names[1], names[4]), (f"Melvorin {number:02}",) * 2)
                self.assertEqual(names[2], "Regular")
                slots = (ODD_SLOTS, EVEN_SLOTS)[number % 2 == 0]
                cmap = font.getBestCmap()
                self.assertEqual(set(map(chr, cmap)), set("".join(slots) + "J§ \u00a0"))
                for character in map(chr, cmap):
                    character.encode("cp1252")
                self.assertEqual({(c.platformID, c.platEncID) for c in font["cmap"].tables},
                                 {(0, 3), (3, 1)})  # fmt: skip
                os2, hhea = font["OS/2"], font["hhea"]
                self.assertEqual((os2.ulCodePageRange1, os2.ulCodePageRange2), (1, 0))
                heights = {
                    (os2.sTypoAscender, os2.sTypoDescender, os2.sTypoLineGap),
                    (hhea.ascent, hhea.descent, hhea.lineGap),
                    (os2.usWinAscent, -os2.usWinDescent, 0),
                }
                self.assertEqual(len(heights), 1)
                glyf = font["glyf"]
                blank = cmap[ord("§")]
                self.assertEqual(glyf[blank].numberOfContours, 0)
                drawn = set(cmap.values()) - {blank}
                self.assertEqual({font["hmtx"][name][0] for name in drawn}, {glyphs.ADVANCE})
                tops = [glyf[name].yMax for name in drawn]
                slack = (os2.usWinAscent - max(tops)) / glyphs.UNITS
                self.assertTrue(0 <= slack < 0.05, slack)
                self.assertEqual(font["gasp"].gaspRange, {0xFFFF: 0x000F})

    def picture(self, number, character, size):
        """A diagram in black and white, as a function of places in the drawing."""
        font = self.font(number, size)
        image = Image.new("1", (3 * size, 3 * size), 1)
        draw = ImageDraw.Draw(image)
        draw.fontmode = "1"
        draw.text((size // 2, 2 * size), character, font=font, fill=0, anchor="ls")
        return image

    def font(self, number, size):
        key = (number, size)
        fonts = self.__dict__.setdefault("fonts", {})
        if key not in fonts:
            path = self.out / "Fonts" / f"Melvorin{number}.ttf"
            fonts[key] = ImageFont.truetype(str(path), size)
        return fonts[key]

    def test_glyphs_show_what_the_table_tells(self):
        size = 294  # here scaled gaps are whole pixels, so that drawn and fitted agree
        scale = size / glyphs.UNITS
        figures, labels = {}, {}
        for (number, character), (_, frets, fingers, first) in self.diagrams.items():
            if int(number) not in (9, 10):
                continue
            image = self.picture(number, character, size)

            def ink(x, y):
                place = (size // 2 + int(x * scale), 2 * size - 1 - int(y * scale))
                return image.getpixel(place) == 0

            def around(x, y, far):
                return sum(ink(x + a * far, y + b * far) for a in (-1, 1) for b in (-1, 1))

            def cut(x, y, half):
                left, top = size // 2 + x * scale - half, 2 * size - y * scale - half
                box = tuple(map(round, (left, top, left + 2 * half, top + 2 * half)))
                return image.crop(box).tobytes()

            with self.subTest(font=number, character=character, frets=frets):
                for string, fret in enumerate(check.read_frets(frets)):
                    x = glyphs.string_x(string)
                    dotted = [
                        r for r in range(4) if around(x, glyphs.row_y(r), glyphs.DOT * 0.62) == 4
                    ]
                    self.assertEqual(dotted, [fret - first] if fret else [])
                    if fret:
                        seen = cut(x, glyphs.row_y(fret - first), 11)
                        figures.setdefault(fingers[string], set()).add(seen)
                    middle = ink(x, glyphs.MARK_Y)
                    ring = all(
                        ink(x + a * glyphs.MARK * 0.85, glyphs.MARK_Y + b * glyphs.MARK * 0.85)
                        for a, b in ((1, 0), (-1, 0), (0, 1), (0, -1))
                    )
                    self.assertEqual((middle, ring), (fret is None, fret == 0))
                nut = ink(glyphs.string_x(2) + 100, glyphs.TOP + glyphs.NUT * 0.5)
                self.assertEqual(nut, first == 1)
                label = cut(glyphs.em(0.16), glyphs.row_y(0), 36)
                labels.setdefault(first, set()).add(label)
                self.assertEqual(self.barres(ink, first), barres(frets, fingers, first))
        # No two fingers, and no two frets, ever look the same.
        for seen in (figures, labels):
            self.assertEqual(len(set.union(*seen.values())), sum(map(len, seen.values())))
        self.assertEqual(set(figures), set("1234"))

    @staticmethod
    def barres(ink, first):
        """(row, string) wherever a bar runs on to the next string."""
        gap = glyphs.STRING_GAP // 2
        return {
            (row + first, string)
            for row in range(4)
            for string in range(5)
            if ink(glyphs.string_x(string) + gap, glyphs.row_y(row))
        }

    def test_ink_stays_in_its_line_at_every_size(self):
        shapes = [("09", c) for c in "aAsSJ"] + [("10", c) for c in "a3"]
        for size in range(12, 101):
            for number, character in shapes:
                font = self.font(number, size)
                box = self.picture(number, character, size).point(lambda p: not p).getbbox()
                left, top, right, bottom = box
                ascent, descent = font.getmetrics()
                with self.subTest(size=size, character=character):
                    self.assertGreaterEqual(top, 2 * size - ascent)
                    self.assertLessEqual(bottom, 2 * size + descent)
                    self.assertGreaterEqual(left, size // 2 - 1)
                    self.assertLessEqual(right, size // 2 + font.getlength(character) + 0.5)

    def test_strings_and_frets_are_even_at_every_size(self):
        for size in range(14, 101):
            image = self.picture("09", "J", size)
            box = image.point(lambda p: not p).getbbox()
            left, top, right, bottom = box
            off = size // 8  # from the last line to between the lines
            across = [image.getpixel((x, bottom - 1 - off)) == 0 for x in range(left, right)]
            down = [image.getpixel((left + off, y)) == 0 for y in range(top, bottom)]
            for line, count in ((across, 6), (down[::-1], 5)):
                starts = [k for k, on in enumerate(line) if on and not (k and line[k - 1])]
                with self.subTest(size=size, count=count):
                    self.assertEqual(len(starts), count)
                    self.assertEqual(len({b - a for a, b in zip(starts, starts[1:])}), 1)

    def test_same_sources_give_same_bytes_and_faults_keep_the_old_files(self):
        before = files(self.out)
        self.assertEqual(len(before), 35)
        copy = pathlib.Path(self.folder.name) / "copy"
        shutil.copytree(TOOLS, copy / "tools" / "chordbook")
        shutil.copytree(TREE / "data" / "chordbook", copy / "data" / "chordbook")
        tool = copy / "tools" / "chordbook" / "make.py"
        self.assertEqual(make(self.out, tool).returncode, 0)
        self.assertEqual(files(self.out), before)
        # What is kept for the next build is the whole of it, and only for these sources.
        again = pathlib.Path(self.folder.name) / "again"
        (kept,) = self.ready.iterdir()
        (kept / "Dbase" / "mark.txt").write_bytes(b"kept")
        self.assertEqual(make(again, tool, self.ready).returncode, 0)
        self.assertEqual(files(again), {**before, "mark.txt": b"kept"})
        self.assertEqual(list(self.ready.iterdir()), [kept])
        kinds = copy / "data" / "chordbook" / "kinds.txt"
        good = kinds.read_text(encoding="utf-8")
        for old, new, reason in (
            ("| m7+      |", "| M7       |", "twice"),  # CM7 is Cm7 to a search
            (
                "| 7+       | 1 3 5 7        |     | Major S",
                "| 7M | 1 3 5 7 | | Major S",
                "rewrite",
            ),
            ("| 1 b3 5         |     | Minor |", "| 1 b3 q         |     | Minor |", "line 14"),
            ("odd  | a |", "odd  | $ |", "line 13"),
            ("| 1 b3 b5        |", "| 1 b9 b5 7 11 13 |", "shapes for"),
        ):
            with self.subTest(reason=reason):
                self.assertEqual(good.count(old), 1)
                kinds.write_text(good.replace(old, new), encoding="utf-8")
                result = make(self.out, tool, self.ready)
                self.assertEqual(result.returncode, 1)
                self.assertIn(reason, result.stderr)
                self.assertNotIn("Traceback", result.stderr)
                self.assertEqual(files(self.out), before)


def barres(frets, fingers, first):
    """(fret, string) wherever a finger lies on to the next string."""
    bars = set()
    for finger in set(fingers) - {"-"}:
        strings = [s for s in range(6) if fingers[s] == finger]
        fret = check.read_frets(frets)[strings[0]]
        bars |= {(fret, s) for s in range(strings[0], strings[-1])}
    return bars


if __name__ == "__main__":
    unittest.main()
