"""Draws a shape as the outlines of a glyph, and says to which line of the grid each point holds.

Lengths are in font units. The fonts are hinted by moving points: see hinting.py. A hold is a
pair (anchor, times): the point is moved by as much as the anchor is, times a factor. Contours go
clockwise round ink and the other way round holes. Strings and barres end inside the dots, because
a figure in a dot is a hole, and a line behind it would show through.
"""

import dataclasses

from book import DIAGRAM_FRETS, first_fret
from digits import CURVE, FIGURES
from neck import MUTED, grip

UNITS = 2048


def em(part):
    return round(part * UNITS)


STROKE = em(0.030)  # strings and frets
NUT = em(0.080)
STRING_GAP = em(0.245)
FRET_GAP = em(0.262)
FIRST_STRING = em(0.490)
ADVANCE = FIRST_STRING + 5 * STRING_GAP + em(0.165)
TOP = DIAGRAM_FRETS * FRET_GAP + STROKE  # upper edge of the first fret line; the last is at 0

DOT = em(0.098)  # radius
BARRE = em(0.050)  # half its height
DOT_FIGURE = em(1 / 36)  # stroke of a figure
FIRST_FIGURE = em(0.046)
FIGURE_GAP = em(0.165)  # from the first string to the figures of the first fret

MARK = em(0.098)  # half the size of x and o
MARK_GAP = em(0.035)
MARK_Y = TOP - STROKE + NUT + MARK_GAP + MARK

ASCENT = MARK_Y + MARK + em(0.030)
DESCENT = em(0.020)

ARC = 0.41421356  # of the radius: from an end of a circle to the next pull


@dataclasses.dataclass(frozen=True)
class Point:
    x: int
    y: int
    on: bool
    holds_x: tuple  # of (anchor, times)
    holds_y: tuple


def string_x(string):
    return FIRST_STRING + string * STRING_GAP


def row_y(row):
    """The middle of a row, 0 for the first fret."""
    return TOP - STROKE // 2 - row * FRET_GAP - FRET_GAP // 2


def line_y(line):
    """The upper edge of a fret line, 0 for the first."""
    return TOP - line * FRET_GAP


def box(left, bottom, right, top, holds):
    """holds: for left, bottom, right and top."""
    hold_left, hold_bottom, hold_right, hold_top = ((h,) for h in holds)
    return [
        Point(left, bottom, True, hold_left, hold_bottom),
        Point(left, top, True, hold_left, hold_top),
        Point(right, top, True, hold_right, hold_top),
        Point(right, bottom, True, hold_right, hold_bottom),
    ]


def circle(x, y, radius, hold_x, hold_y, hole=False):
    """Four ends and eight pulls."""
    r, a = radius, radius * ARC
    ring = [
        (-r, 0, True), (-r, a, False), (-a, r, False), (0, r, True), (a, r, False), (r, a, False),
        (r, 0, True), (r, -a, False), (a, -r, False), (0, -r, True), (-a, -r, False),
        (-r, -a, False),
    ]  # fmt: skip
    if hole:
        ring.reverse()
    return [Point(x + round(dx), y + round(dy), on, (hold_x,), (hold_y,)) for dx, dy, on in ring]


def figure(digit, x, y, stroke, holds_x, holds_y, size, hole=False):
    """size is the anchor by which a stroke grows."""
    for contour in FIGURES[digit]:
        points = [
            Point(
                x + round(p[0] * stroke),
                y + round(p[1] * stroke),
                p[-1] is not CURVE,
                (holds_x, (size, p[0])),
                (holds_y, (size, p[1])),
            )
            for p in contour
        ]
        yield points[::-1] if hole else points


def cross(x, y, hold_x, hold_y):
    """An x in one piece."""
    r, arm = MARK, em(0.034)
    corner = [(-r, r - arm), (-r + arm, r), (0, arm), (r - arm, r), (r, r - arm), (arm, 0)]
    outline = corner + [(-dx, -dy) for dx, dy in corner]
    return [Point(x + dx, y + dy, True, (hold_x,), (hold_y,)) for dx, dy in outline]


def frame(at_nut):
    """Fret lines and the nut; the strings are drawn for each shape."""
    left, right = ("left", 0), ("right", 5)
    for line in range(DIAGRAM_FRETS + 1):
        bottom, top = line_y(line) - STROKE, line_y(line)
        hold_top = ("top", line)
        if line == 0 and at_nut:
            top, hold_top = bottom + NUT, ("nut", 0)
        yield box(
            string_x(0) - STROKE // 2,
            bottom,
            string_x(5) + STROKE - STROKE // 2,
            top,
            [(left, 1), (("bottom", line), 1), (right, 1), (hold_top, 1)],
        )


def string_pieces(string, dotted_row):
    """The string from the first fret line to the last, without what lies behind a dot."""
    left = string_x(string) - STROKE // 2
    holds = ((("left", string), 1), (("right", string), 1))
    ends = [(0, (("bottom", DIAGRAM_FRETS), 1))]
    if dotted_row is not None:
        middle, hold = row_y(dotted_row), (("row", dotted_row), 1)
        ends += [(middle - round(DOT * 0.9), hold), (middle + round(DOT * 0.9), hold)]
    ends.append((TOP, (("top", 0), 1)))
    for (low, hold_low), (high, hold_high) in zip(ends[::2], ends[1::2]):
        yield box(left, low, left + STROKE, high, [holds[0], hold_low, holds[1], hold_high])


def barre(row, strings):
    """Between the dots of one finger, from the lowest string to the highest."""
    for low, high in zip(strings, strings[1:]):
        yield box(
            string_x(low) + round(DOT * 0.85),
            row_y(row) - BARRE,
            string_x(high) - round(DOT * 0.85),
            row_y(row) + BARRE,
            [(("string", low), 1), (("row", row), 1), (("string", high), 1), (("row", row), 1)],
        )


def dots(shape, first):
    fingers = grip(shape).fingers
    for string, fret in enumerate(shape):
        if fret <= 0:
            continue
        row = fret - first
        x, y = string_x(string), row_y(row)
        yield circle(x, y, DOT, (("string", string), 1), (("row", row), 1))
        yield from figure(
            str(fingers[string]),
            x,
            y,
            DOT_FIGURE,
            (("dot x", string), 1),
            (("dot y", row), 1),
            ("dot figure", 0),
            hole=True,
        )
    for finger in range(1, 5):
        strings = [s for s in range(6) if fingers[s] == finger]
        if len(strings) > 1:
            yield from barre(shape[strings[0]] - first, strings)


def marks(shape):
    hold_y = (("mark", 0), 1)
    for string, fret in enumerate(shape):
        x, hold_x = string_x(string), (("string", string), 1)
        if fret == MUTED:
            yield cross(x, MARK_Y, hold_x, hold_y)
        elif fret == 0:
            yield circle(x, MARK_Y, MARK, hold_x, hold_y)
            yield circle(x, MARK_Y, MARK - STROKE - em(0.008), hold_x, hold_y, hole=True)


def first_fret_figures(first):
    x = FIRST_STRING - FIGURE_GAP - round(1.5 * FIRST_FIGURE)
    for place, digit in enumerate(reversed(str(first))):
        yield from figure(
            digit,
            x - 3 * FIRST_FIGURE * place,  # the figure on the left is a 1, which is narrow
            row_y(0),
            FIRST_FIGURE,
            (("fret x", place), 1),
            (("fret y", 0), 1),
            ("fret figure", 0),
        )


def diagram(shape):
    """The contours of a shape."""
    first = first_fret(shape)
    contours = list(frame(first == 1))
    for string, fret in enumerate(shape):
        contours += string_pieces(string, fret - first if fret > 0 else None)
    contours += dots(shape, first)
    contours += marks(shape)
    if first > 1:
        contours += first_fret_figures(first)
    return contours


def empty_neck():
    contours = list(frame(True))
    for string in range(6):
        contours += string_pieces(string, None)
    return contours
