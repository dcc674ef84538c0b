"""Writes the fonts "Melvorin 01" to "Melvorin 34": one character for each diagram."""

import array
import calendar

from fontTools.fontBuilder import FontBuilder
from fontTools.misc.timeTools import epoch_diff
from fontTools.ttLib import newTable
from fontTools.ttLib.tables import ttProgram
from fontTools.ttLib.tables._g_l_y_f import Glyph, GlyphCoordinates

import glyphs
import hinting
from book import font_number
from fingering import ABSENT, EMPTY_NECK
from theory import ROOTS

VERSION = "1.000"
MADE = calendar.timegm((2026, 1, 1, 0, 0, 0)) - epoch_diff  # always the same, as the bytes are
BLANKS = " \u00a0" + ABSENT
BLANK_WIDTH = glyphs.em(0.5)
ON_CURVE, OVERLAPS = 0x01, 0x40
SMOOTH_AND_FIT = 0x000F
LATIN_1 = 1 << 0  # in ulCodePageRange1
REGULAR, USE_TYPO_METRICS = 1 << 6, 1 << 7


def font_file(number):
    return f"Melvorin{number:02}.ttf"


def compiled(contours, prep):
    """A glyph, and the depth of the stack that its program needs."""
    glyph = Glyph()
    points = [point for contour in contours for point in contour]
    glyph.numberOfContours = len(contours)
    glyph.coordinates = GlyphCoordinates([(p.x, p.y) for p in points])
    glyph.flags = bytearray(ON_CURVE if p.on else 0 for p in points)
    glyph.flags[0] |= OVERLAPS
    ends = [len(contour) for contour in contours]
    glyph.endPtsOfContours = [sum(ends[: k + 1]) - 1 for k in range(len(ends))]
    code, depth = hinting.glyph_program(points, prep.slots)
    glyph.program = ttProgram.Program()
    glyph.program.fromBytecode(code)
    return glyph, depth, len(code)


class FontMaker:
    """Draws every shape once, for all the fonts that have it."""

    def __init__(self):
        self.prep = hinting.make_prep()
        self.drawn = {}

    def glyph(self, shape):
        if shape not in self.drawn:
            contours = glyphs.diagram(shape) if shape else glyphs.empty_neck()
            self.drawn[shape] = compiled(contours, self.prep)
        return self.drawn[shape]

    def build(self, number, shapes):
        """The font of this number; shapes by character."""
        drawn = {char: self.glyph(shape) for char, shape in sorted(shapes.items())}
        drawn[EMPTY_NECK] = self.glyph(None)
        names = {ord(char): f"uni{ord(char):04X}" for char in sorted(drawn)}
        builder = FontBuilder(glyphs.UNITS, isTTF=True)
        builder.setupGlyphOrder([".notdef", "blank", *names.values()])
        builder.setupCharacterMap({**{ord(c): "blank" for c in BLANKS}, **names})
        outlines = {".notdef": Glyph(), "blank": Glyph()}
        outlines.update((names[ord(char)], drawn[char][0]) for char in drawn)
        builder.setupGlyf(outlines)
        table = builder.font["glyf"]
        metrics = {".notdef": (BLANK_WIDTH, 0), "blank": (BLANK_WIDTH, 0)}
        for name in names.values():
            metrics[name] = (glyphs.ADVANCE, table[name].xMin)
        builder.setupHorizontalMetrics(metrics)
        builder.setupHorizontalHeader(ascent=glyphs.ASCENT, descent=-glyphs.DESCENT, lineGap=0)
        self.set_names(builder, number)
        set_metrics(builder, names)
        builder.setupPost(isFixedPitch=0, keepGlyphNames=False)
        self.set_hints(builder, drawn.values())
        builder.font["head"].created = builder.font["head"].modified = MADE
        builder.font["head"].fontRevision = float(VERSION)
        builder.font["head"].lowestRecPPEM = 20
        builder.font.recalcTimestamp = False
        return builder

    def set_names(self, builder, number):
        family = f"Melvorin {number:02}"
        root = ROOTS[(number - 1) // 2]
        builder.setupNameTable(
            {
                "copyright": "Copyright 2026 the Melvorin authors",
                "familyName": family,
                "styleName": "Regular",
                "uniqueFontIdentifier": f"{VERSION};Melvorin;Melvorin{number:02}",
                "fullName": family,
                "version": f"Version {VERSION}",
                "psName": f"Melvorin{number:02}",
                "description": f"Guitar chord diagrams of {root}, made for Melvorin",
            },
            mac=False,
        )

    def set_hints(self, builder, drawn):
        font = builder.font
        font["fpgm"] = newTable("fpgm")
        font["fpgm"].program = ttProgram.Program()
        font["fpgm"].program.fromBytecode(hinting.FUNCTIONS)
        font["prep"] = newTable("prep")
        font["prep"].program = ttProgram.Program()
        font["prep"].program.fromBytecode(self.prep.code)
        font["cvt "] = newTable("cvt ")
        font["cvt "].values = array.array("h", self.prep.lengths)
        font["gasp"] = newTable("gasp")
        font["gasp"].version = 1
        font["gasp"].gaspRange = {0xFFFF: SMOOTH_AND_FIT}
        maxp = font["maxp"]
        maxp.maxZones = 1
        maxp.maxStorage = len(self.prep.slots)
        maxp.maxFunctionDefs = 1
        maxp.maxStackElements = max(16, *(depth for _, depth, _ in drawn))
        maxp.maxSizeOfInstructions = max(size for _, _, size in drawn)


def set_metrics(builder, names):
    builder.setupOS2(
        version=4,
        sTypoAscender=glyphs.ASCENT,
        sTypoDescender=-glyphs.DESCENT,
        sTypoLineGap=0,
        usWinAscent=glyphs.ASCENT,
        usWinDescent=glyphs.DESCENT,
        xAvgCharWidth=glyphs.ADVANCE,
        usFirstCharIndex=ord(" "),
        usLastCharIndex=max(names),
        usDefaultChar=0,
        usBreakChar=ord(" "),
        sCapHeight=glyphs.TOP,
        sxHeight=glyphs.TOP,
        achVendID="MLVR",
        fsType=0,
        fsSelection=REGULAR | USE_TYPO_METRICS,
        ulCodePageRange1=LATIN_1,
        ulUnicodeRange1=0b1111 | 1 << 31,
        usMaxContext=0,
    )


def write_fonts(folder, entries):
    """Makes all fonts in the folder."""
    shapes = {font_number(root, even): {} for root in ROOTS for even in (False, True)}
    for entry in entries:
        shapes[entry.font].update(zip(entry.kind.slot, entry.shapes))
    maker = FontMaker()
    for number, of_font in sorted(shapes.items()):
        maker.build(number, of_font).save(folder / font_file(number))
