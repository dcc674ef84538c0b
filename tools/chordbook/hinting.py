"""Fits the diagrams to the pixels, so that strings and frets are even at every size.

A program that runs once for each size (prep) works out where every anchor, such as a string or the
middle of a row, belongs on the pixels, and stores how far that is from where scaling puts it. The
program of a glyph then moves each point by what its anchors say (glyphs.Point). Nothing else is
hinted: round dots stay round because their middle has the same place in a pixel as the lines.
"""

import glyphs
from book import DIAGRAM_FRETS

# Opcodes of the TrueType instruction set.
SVTCA_Y, SVTCA_X, SLOOP, SWAP, CALL, FDEF, ENDF = 0x00, 0x01, 0x17, 0x23, 0x2B, 0x2C, 0x2D
SHPIX, WS, RS, RCVT, MPPEM, GTEQ = 0x38, 0x42, 0x43, 0x45, 0x4B, 0x53
ADD, SUB, MUL, FLOOR, CEILING, ROUND = 0x60, 0x61, 0x63, 0x66, 0x67, 0x68
SCANCTRL, MAX, MIN, SCANTYPE, INSTCTRL = 0x85, 0x8B, 0x8C, 0x8D, 0x8E

PIXEL = 64
FIGURES_FROM = 31  # pixels an em from which the dots are large enough for figures
ROUND_UP_FROM = 0.65  # gaps are rather a little narrow than wider than the glyph
MOVE = 0  # number of the one function


def push(*values):
    """Instructions that push the values, the last one on top."""
    code = bytearray()
    for start in range(0, len(values), 255):
        part = values[start : start + 255]
        if all(0 <= v < 256 for v in part):
            code += bytes([0xB0 + len(part) - 1] if len(part) <= 8 else [0x40, len(part)])
            code += bytes(part)
        else:
            code += bytes([0xB8 + len(part) - 1] if len(part) <= 8 else [0x41, len(part)])
            for v in part:
                code += v.to_bytes(2, "big", signed=True)
    return bytes(code)


class Sum:
    """A length in pixels that instructions work out; operators put the instructions together."""

    def __init__(self, code):
        self.code = code

    def __add__(self, other):
        return Sum(self.code + other.code + bytes([ADD]))

    def __sub__(self, other):
        return Sum(self.code + other.code + bytes([SUB]))

    def __mul__(self, times):
        return Sum(self.code + push(round(times * PIXEL)) + bytes([MUL]))

    def then(self, opcode):
        return Sum(self.code + bytes([opcode]))

    def at_most(self, other):
        return Sum(self.code + other.code + bytes([MIN]))

    def at_least(self, other):
        return Sum(self.code + other.code + bytes([MAX]))


def pixels(number):
    return Sum(push(round(number * PIXEL)))


class Prep:
    """Collects the lengths that instructions need and what they store."""

    def __init__(self):
        self.lengths = []  # the control values, in font units
        self.slots = {}  # storage by anchor or name
        self.code = b""

    def length(self, units):
        """A length of the drawing, scaled to the size at hand."""
        if units not in self.lengths:
            self.lengths.append(units)
        return Sum(push(self.lengths.index(units)) + bytes([RCVT]))

    def store(self, name, value):
        slot = self.slots.setdefault(name, len(self.slots))
        self.code += push(slot) + value.code + bytes([WS])
        return Sum(push(slot) + bytes([RS]))

    def anchor(self, name, place, units):
        """An anchor drawn at units that belongs at place."""
        return self.store(name, place - self.length(units))

    def whole(self, units):
        return self.length(units).then(ROUND)

    def gap(self, name, units):
        return self.store(name, (self.length(units) + pixels(1 - ROUND_UP_FROM)).then(FLOOR))


def make_prep():
    prep = Prep()
    # Hints move points in both directions, also where text is smoothed; thin parts never vanish.
    prep.code += push(4, 3) + bytes([INSTCTRL]) + push(511) + bytes([SCANCTRL])
    prep.code += push(5) + bytes([SCANTYPE])

    stroke = prep.store("stroke", prep.whole(glyphs.STROKE).at_least(pixels(1)))
    column = prep.gap("column", glyphs.STRING_GAP)
    row = prep.gap("row", glyphs.FRET_GAP)
    nut = prep.store("nut height", prep.whole(glyphs.NUT).at_least(stroke * 2))
    spare = prep.length(glyphs.STRING_GAP) - column
    left = prep.store(
        "first string",
        (prep.length(glyphs.FIRST_STRING) + spare * 2.5 - stroke * 0.5).then(ROUND),
    )
    on_dot = Sum(bytes([MPPEM]) + push(FIGURES_FROM) + bytes([GTEQ])) * PIXEL  # 0 or 1 pixel
    figure = prep.whole(glyphs.DOT_FIGURE).at_least(pixels(1))
    figure = prep.store("figure", Sum(figure.code + on_dot.code + bytes([MUL])))
    first_figure = prep.gap("first figure", glyphs.FIRST_FIGURE).at_least(pixels(1))
    first_figure = prep.store("first figure", first_figure)

    strings(prep, left, column, stroke, figure)
    frets(prep, row, stroke, nut, figure)
    prep.anchor(("dot figure", 0), figure, glyphs.DOT_FIGURE)
    prep.anchor(("fret figure", 0), first_figure, glyphs.FIRST_FIGURE)
    right = left - prep.whole(glyphs.FIGURE_GAP)
    middle = glyphs.FIRST_STRING - glyphs.FIGURE_GAP - round(1.5 * glyphs.FIRST_FIGURE)
    for place in (0, 1):
        prep.anchor(
            ("fret x", place),
            right - first_figure * (1.5 + 3 * place),
            middle - 3 * glyphs.FIRST_FIGURE * place,
        )
    half = first_figure * 2.5
    prep.anchor(
        ("fret y", 0), (row_middle(0, row, stroke) - half).then(ROUND) + half, glyphs.row_y(0)
    )
    return prep


def strings(prep, left, column, stroke, figure):
    for string in range(6):
        x = glyphs.string_x(string)
        edge = left + column * string
        middle = edge + stroke * 0.5
        half = figure * 1.5
        prep.anchor(("left", string), edge, x - glyphs.STROKE // 2)
        prep.anchor(("right", string), edge + stroke, x - glyphs.STROKE // 2 + glyphs.STROKE)
        prep.anchor(("string", string), middle, x)
        prep.anchor(("dot x", string), (middle - half).then(ROUND) + half, x)


def row_middle(number, row, stroke):
    """Half a pixel below the true middle where need be, so that a dot is as high as wide."""
    return row * (DIAGRAM_FRETS - number) + stroke * 0.5 - (row * 0.5).then(CEILING)


def frets(prep, row, stroke, nut, figure):
    for line in range(DIAGRAM_FRETS + 1):
        bottom = row * (DIAGRAM_FRETS - line)
        prep.anchor(("bottom", line), bottom, glyphs.line_y(line) - glyphs.STROKE)
        prep.anchor(("top", line), bottom + stroke, glyphs.line_y(line))
    for number in range(DIAGRAM_FRETS):
        middle = row_middle(number, row, stroke)
        half = figure * 2.5
        prep.anchor(("row", number), middle, glyphs.row_y(number))
        prep.anchor(("dot y", number), (middle - half).then(ROUND) + half, glyphs.row_y(number))
    over_nut = row * DIAGRAM_FRETS + nut
    prep.anchor(("nut", 0), over_nut, glyphs.TOP - glyphs.STROKE + glyphs.NUT)
    highest = prep.length(glyphs.ASCENT).then(FLOOR) - half_mark(prep, stroke)
    mark = (over_nut + prep.whole(glyphs.MARK_GAP + glyphs.MARK - glyphs.STROKE // 2)).at_most(
        highest
    ) + stroke * 0.5
    prep.anchor(("mark", 0), mark, glyphs.MARK_Y)


def half_mark(prep, stroke):
    """Whole pixels from the pixel in the middle of a mark to its end."""
    return (prep.length(glyphs.MARK) + stroke * 0.5).then(CEILING)


# Moves points: takes the points, their number, the factor (64 for one) and the storage.
FUNCTIONS = push(MOVE) + bytes([FDEF, RS, MUL, SWAP, SLOOP, SHPIX, ENDF])


def glyph_program(points, slots):
    """The instructions of one glyph and the depth of the stack that they need."""
    code, depth = b"", 0
    for axis, holds_of in ((SVTCA_X, lambda p: p.holds_x), (SVTCA_Y, lambda p: p.holds_y)):
        groups = {}
        for number, point in enumerate(points):
            for anchor, times in holds_of(point):
                if times:
                    key = (slots[anchor], round(times * PIXEL))
                    groups.setdefault(key, []).append(number)
        code += bytes([axis])
        for (slot, times), numbers in sorted(groups.items()):
            code += push(*numbers, len(numbers), times, slot, MOVE) + bytes([CALL])
            depth = max(depth, len(numbers) + 4)
    return code, depth
