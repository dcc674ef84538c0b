"""What a musician expects of a song on paper, checked on the words that poppler finds there."""
import collections
import dataclasses
import statistics

import faces
import pages

MARGIN = 15 * 72 / 25.4
GAP = 18
PAPER = (595.276, 841.890)
NEAR = 0.5


@dataclasses.dataclass
class Setup:
    columns: int = 1
    fit: bool = False
    diagrams: bool = False

    def width(self, columns):
        return (PAPER[0] - 2 * MARGIN - GAP * (columns - 1)) / columns


class Report:
    """Counts and worst deviations of each check over all songs, and what failed."""

    def __init__(self):
        self.counts = collections.Counter()
        self.worst = collections.defaultdict(float)
        self.failures = []

    def measure(self, check, deviation, where, most=NEAR):
        self.counts[check] += 1
        self.worst[check] = max(self.worst[check], abs(deviation))
        if abs(deviation) > most:
            self.fail(check, f"{where()}: {deviation:.2f} points off")

    def expect(self, check, holds, where):
        self.counts[check] += 1
        if not holds:
            self.fail(check, where())

    def fail(self, check, what):
        self.failures.append((check, what))

    def merge(self, other):
        self.counts += other.counts
        for check, deviation in other.worst.items():
            self.worst[check] = max(self.worst[check], deviation)
        self.failures += other.failures


@dataclasses.dataclass
class Row:
    """What one line has at one height of one column."""
    line: int
    pieces: list
    page: int = 0
    column: int = 0
    base: float = 0
    factor: float = 1  # of the page, and of the row where it is set smaller
    is_first: bool = True  # of what was wrapped


class SongCheck:
    def __init__(self, placed, setup, report):
        self.placed, self.setup, self.report = placed, setup, report
        self.song, self.lines = placed.song, placed.song.lines
        self.factor = self.find_factor()
        self.row_factor = {}  # of tablature, by unit
        for piece in placed.pieces:
            token = self.token(piece)
            self.place_factor(piece, token)
        self.settle_row_factors()
        self.rows = self.find_rows()
        self.columns = self.find_columns()
        self.check_smaller_rows()

    def heights(self, row):
        """Above and below its base line: those of what stands in it."""
        found = [(faces.metrics(look), look.points) for piece in row.pieces
                 for look in self.token(piece).looks[piece.begin:piece.begin + piece.length]]
        return (max(metrics.ascent * points for metrics, points in found),
                max(metrics.descent * points for metrics, points in found))

    def where(self, row, token=None):
        line = self.lines[row.line]
        return (f"{self.song.name} line {row.line + 1} page {row.page + 1}"
                f"{'' if token is None else ' at ' + token.text!r}: {line.text[:60]!r}")

    def token(self, piece):
        return self.lines[piece.line].tokens[piece.token]

    def screen(self, piece):
        """Where its first character stands in its line."""
        return self.token(piece).places[piece.begin]

    # ---- The factor of the page ------------------------------------------------------------

    def find_factor(self):
        """From distances between words of a line, which do not depend on where it stands."""
        if not self.setup.fit:
            return 1
        found = []
        by_row = collections.defaultdict(list)
        for piece in self.placed.pieces:
            is_text = "tab" not in self.lines[piece.line].kind
            if is_text and piece.begin == 0 and piece.x is not None:
                by_row[piece.line, piece.word.page, round(piece.word.bottom)].append(piece)
        for pieces in by_row.values():
            first, last = pieces[0], pieces[-1]
            span = self.token(last).x - self.token(first).x
            if span > 20:
                found.append((last.x - first.x) / span)
        return statistics.median(found) if found else self.from_heights()

    def from_heights(self):
        piece = next(p for p in self.placed.pieces if "tab" not in self.lines[p.line].kind)
        look = self.token(piece).looks[0]
        metrics = faces.metrics(look)
        high = (metrics.ascent + metrics.descent) * look.points
        return (piece.word.bottom - piece.word.top) / high

    def place_factor(self, piece, token):
        """Tablature is set smaller where it is too wide."""
        line = self.lines[piece.line]
        if line.kind == "tab" and piece.begin == 0 and piece.length == len(token.text):
            now = (piece.word.right - piece.word.left) / (token.end - token.x) / self.factor
            known = self.row_factor.get(line.unit)
            self.row_factor[line.unit] = now if known is None else max(now, known)

    def factor_of(self, line):
        return self.factor * self.row_factor.get(line.unit, 1)

    def settle_row_factors(self):
        """What poppler tells of widths is rounded to a thousandth of an em; tablature is as wide as
        its column where it is smaller, or as high."""
        widest = collections.defaultdict(float)
        for line in self.lines:
            if line.unit in self.row_factor and line.tokens:
                widest[line.unit] = max(widest[line.unit], line.tokens[-1].end)
        for unit, factor in self.row_factor.items():
            rooms = [self.setup.width(columns) / self.factor / widest[unit]
                     for columns in range(1, 5)]
            nearest = min([1, *rooms], key=lambda room: abs(room - factor))
            if abs(nearest - factor) < 0.003:
                self.row_factor[unit] = nearest

    # ---- Rows and columns ------------------------------------------------------------------

    def find_rows(self):
        rows = []
        for piece in self.placed.pieces:
            line = self.lines[piece.line]
            look = self.token(piece).looks[piece.begin]
            factor = self.measured_factor(piece, line)
            piece.base = pages.base_line(piece.word, look, look.points * factor)
            last = rows[-1] if rows else None
            goes_on = (last is not None and last.line == piece.line and
                       last.page == piece.word.page and abs(piece.base - last.base) < 1 and
                       piece.word.left >= last.pieces[-1].word.left)
            if goes_on:
                last.pieces.append(piece)
                last.factor = max(last.factor, factor)
            else:
                goes_on = last is not None and self.lines[last.line].unit == line.unit
                is_first = not goes_on or (last.is_first and last.line < piece.line)
                rows.append(Row(piece.line, [piece], piece.word.page, 0, piece.base, factor,
                                is_first))
        return rows

    def measured_factor(self, piece, line):
        """A row that is wider than a column, as it cannot be wrapped, is set smaller: that is seen
        by the heights of its letters."""
        usual = self.factor_of(line)
        look = self.token(piece).looks[piece.begin]
        metrics = faces.metrics(look)
        high = (metrics.ascent + metrics.descent) * look.points
        measured = (piece.word.bottom - piece.word.top) / high
        return measured if measured < 0.995 * usual else usual

    def check_smaller_rows(self):
        """They are as wide as their column, or what stands above or below them is."""
        width = self.setup.width(self.columns)
        smaller = [row for row in self.rows if "tab" not in self.lines[row.line].kind
                   and row.factor < 0.995 * self.factor]
        for row in smaller:
            unit = self.lines[row.line].unit
            beside = [other for other in smaller if self.lines[other.line].unit == unit
                      and (other.page, other.column) == (row.page, row.column)
                      and abs(other.factor - row.factor) < 0.003]
            right = max(piece.word.right for other in beside for piece in other.pieces)
            end = MARGIN + (width + GAP) * row.column + width
            self.report.measure("smaller row ends with its column", right - end,
                                lambda: self.where(row))

    def find_columns(self):
        """With "fit" the number is not known: the least that all left ends of rows agree with."""
        most = max(self.setup.columns, 2) if self.setup.fit else self.setup.columns
        least = 1 if self.setup.fit else most
        wrapped = {self.lines[row.line].unit for row in self.rows if not row.is_first}
        starts = []  # and whether that is the middle of a column
        for row in self.rows:
            line = self.lines[row.line]
            if row.is_first and not (line.centred and line.unit in wrapped):
                x = (self.screen(row.pieces[0]) + line.origin) * row.factor
                starts.append((row.pieces[0].x - x - MARGIN, line.centred))
        for columns in range(least, most + 1):
            width = self.setup.width(columns)
            off = [(start - centred * width / 2) / (width + GAP) for start, centred in starts]
            if all(abs(far - round(far)) * (width + GAP) < NEAR for far in off):
                break
        step = self.setup.width(columns) + GAP
        for row in self.rows:
            row.column = int((row.pieces[0].word.left - MARGIN + NEAR) / step)
        return columns

    # ---- The checks ------------------------------------------------------------------------

    def run(self):
        self.factor_is_a_size()
        self.inside()
        self.lines_in_place()
        by_unit = collections.defaultdict(list)
        for row in self.rows:
            by_unit[self.lines[row.line].unit].append(row)
        for rows in by_unit.values():
            self.chords_over_words(rows)
        self.sections()

    def factor_is_a_size(self):
        if self.setup.fit:
            points = self.factor * self.song.common_points()
            self.report.measure("size is one of fit's", points - round(points * 4) / 4,
                                lambda: f"{self.song.name}: {points}", 0.02)
            self.report.expect("size from 9 to 14", 8.98 <= points <= 14.02,
                               lambda: f"{self.song.name}: {points}")

    def inside(self):
        most = PAPER[0] - MARGIN + NEAR
        for number, head in enumerate(self.placed.heads):
            for word in head:
                self.report.expect("head inside the page",
                                   word.left >= MARGIN - NEAR and word.right <= most,
                                   lambda: f"{self.song.name} page {number + 1}: {word.text!r}")
        step = self.setup.width(self.columns) + GAP
        for row in self.rows:
            left = MARGIN + step * row.column
            right = left + self.setup.width(self.columns)
            line = self.lines[row.line]
            over = max(max(left - piece.word.left, piece.word.right - right)
                       for piece in row.pieces)
            self.report.measure("beyond its column", max(over, 0), lambda: self.where(row))
            ascent, descent = self.heights(row)
            low = row.base + descent * row.factor - (PAPER[1] - MARGIN)
            self.report.measure("below the page", max(low, 0), lambda: self.where(row))
            high = self.head_bottom(row.page) - (row.base - ascent * row.factor)
            self.report.measure("over the head", max(high, 0), lambda: self.where(row))

    def head_bottom(self, page):
        return max((word.bottom for word in self.placed.heads[page]), default=MARGIN)

    def lines_in_place(self):
        """Lines begin where they do on the screen, and their words are as far apart."""
        step = self.setup.width(self.columns) + GAP
        wrapped = {self.lines[row.line].unit for row in self.rows if not row.is_first}
        for row in self.rows:
            line = self.lines[row.line]
            factor = row.factor
            if not line.centred or line.unit not in wrapped:
                middle = self.setup.width(self.columns) / 2 if line.centred else 0
                origin = MARGIN + step * row.column + middle + line.origin * factor
                if row.is_first:
                    self.report.measure("line's left end", row.pieces[0].x - origin -
                                        self.token(row.pieces[0]).x * factor,
                                        lambda: self.where(row))
            first = row.pieces[0]
            for piece in row.pieces[1:]:
                if piece.x is not None:
                    wanted = (self.screen(piece) - self.screen(first)) * factor
                    self.report.measure("word in its line", piece.x - first.x - wanted,
                                        lambda: self.where(row, self.token(piece)))

    def chords_over_words(self, rows):
        """Each chord is over its syllable; one beside a word keeps its distance."""
        numbers = sorted({row.line for row in rows})
        if len(numbers) < 2 or self.lines[numbers[0]].kind == "tab":
            return
        lowest = numbers[-1] if self.lines[numbers[0]].kind != "tab chords" else numbers[1]
        below = [row for row in rows if row.line == lowest]
        for row in rows:
            if self.lines[row.line].kind in ("chords", "diagrams", "tab chords"):
                for piece in row.pieces:
                    self.chord(row, piece, below, rows)

    def chord(self, row, piece, below, rows):
        line, words = self.lines[row.line], self.lines[below[0].line]
        token = self.token(piece)
        here = sum(part.length for part in row.pieces if part.token == piece.token)
        self.report.expect("chord in one piece", here == len(token.text),
                           lambda: self.where(row, token))
        if piece.x is None or piece.begin > 0:
            self.report.counts["chords that poppler joined to their neighbours"] += piece.x is None
            return
        x = token.x + line.origin - words.origin  # as the words count
        end = token.end + line.origin - words.origin
        syllable, is_over = self.syllable(words, x, end)
        factor = row.factor
        same = self.parts_below(row, below, words, syllable)
        is_behind = x >= words.width - 0.01
        if not is_over and not self.has_words(row, rows):
            # A row that has no room for the next word, or begins before the first one.
            self.report.counts["chords behind wrapped words, on rows of their own" if is_behind else
                               "chords between words, on rows of their own"] += 1
            return
        behind = next((t for t in words.tokens if t.x >= end - 0.01), None)
        if not is_over and behind and row.pieces[-1] is piece and \
                (behind.end - x) * factor > 0.875 * self.setup.width(self.columns):
            # It and the word behind it have no room beside each other.
            self.report.counts["chords in front of words as wide as a column"] += 1
            return
        if not same and not is_over:
            # Between two words, and beside the second.
            same = self.parts_below(row, below, words, behind)
        # Of a word that is cut the part that is next to the chord.
        other, part = min(same, key=lambda pair: (pair[0].base, abs(x - self.screen(pair[1]))),
                          default=(None, None))
        self.report.expect("chord with its words", other is not None,
                           lambda: self.where(row, token))
        if other is None:
            return
        if part.x is not None:
            wanted = (x - self.screen(part)) * factor
            self.report.measure("chord over its syllable", piece.x - part.x - wanted,
                                lambda: self.where(row, token))
        self.right_below(row, piece, other, rows)

    @staticmethod
    def parts_below(row, below, words, token):
        """Of a word, in the column of a row of chords and lower: rows and pieces."""
        return [(other, part) for other in below for part in other.pieces
                if words.tokens[part.token] is token and other.base > row.base
                and (other.page, other.column) == (row.page, row.column)]

    @staticmethod
    def has_words(row, rows):
        """Whether words were painted right after that row of chords, or after its stack."""
        at = next(i for i, other in enumerate(rows) if other is row)
        lowest = max(other.line for other in rows)
        for before, after in zip(rows[at:], rows[at + 1:]):
            if after.line <= before.line:
                return False
            if after.line == lowest:
                return (after.page, after.column) == (row.page, row.column)
        return False

    def syllable(self, words, x, end):
        """The word below a chord, and whether it is really below; else the one before it."""
        for token in words.tokens:
            if token.x - 0.01 <= x < token.end - 0.01:
                return token, True
            if x < token.x < end - 0.01:
                return token, True
        before = [token for token in words.tokens if token.end <= x + 0.01]
        return (before[-1] if before else words.tokens[0]), False

    def right_below(self, row, piece, other, rows):
        """Nothing comes between a chord and its words."""
        between = [r for r in rows if row.line < r.line < other.line
                   and (r.page, r.column) == (row.page, row.column)
                   and row.base < r.base < other.base]
        high = self.heights(row)[1] + self.heights(other)[0] + sum(
            sum(self.heights(between_row)) for between_row in between)
        self.report.measure("words right below", other.base - row.base -
                            high * row.factor, lambda: self.where(row, self.token(piece)))

    def sections(self):
        """None is split that some column had room for."""
        tops = {}
        for row in self.rows:
            if row.column == 0:
                line = self.lines[row.line]
                top = row.base - self.heights(row)[0] * row.factor
                tops[row.page] = min(top, tops.get(row.page, top))
        room = max(PAPER[1] - MARGIN - top for top in tops.values())
        by_section = collections.defaultdict(list)
        for row in self.rows:
            by_section[self.lines[row.line].section].append(row)
        for section, rows in by_section.items():
            height = sum(sum(self.heights(row)) * row.factor for row in rows)
            places = {(row.page, row.column) for row in rows}
            if height <= room - NEAR:
                self.report.expect("section in one column", len(places) == 1,
                                   lambda: f"{self.song.name} section {section} of {height:.0f} "
                                           f"points, {room:.0f} in a column, in {sorted(places)}")
