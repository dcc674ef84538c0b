"""Invented songs: what they are as Rich Text or text, and where on the screen each word of them
stands, in points, from fontTools' advances."""
import itertools
import random
import typing
import unicodedata

import faces
from faces import Look

CHORDS = ["C", "Am", "G7", "F#m7", "Bb", "D/F#", "Em7", "F7M", "Dm", "A7", "E", "Gm", "C#m7(9)"]
LABELS = ["[Verse 1]", "[Chorus]", "Intro:", "Chorus:", "[Bridge]", "Verse 2:"]
# Onsets and ends of invented syllables.
SCRIPTS = [
    ("b d f k l m n p r s t v z kl tr".split(), "a e i o u".split(), "zk x nd wk lt".split()),
    ("ž č š ł ñ ç ř".split(), "ä é ô ü ã ů ő".split(), "zk x nt ß wk".split()),
    ("б ж к л щ ст".split(), "а ы ю я и".split(), "зк хм нд".split()),
    ("β δ κ λ π στ".split(), "ά ω η ύ ο".split(), "ξκ νδ ψ".split()),
]
COLOURS = [(0, 0, 0), (200, 0, 0), (0, 0, 200), (0, 120, 60), (250, 250, 210)]
# What every font of the chord book shows, and nothing else begins with here.
DIAGRAMS = "HIJKLMNOPQRSTUVWXYZ"


class Token(typing.NamedTuple):
    """Characters without a blank between them, in points from the left end of the line."""
    text: str
    places: list  # of each character
    looks: list
    end: float

    @property
    def x(self):
        return self.places[0]


class Line:
    """`runs` are texts with their looks."""

    def __init__(self, kind, runs, look, centred=False):
        self.kind, self.look, self.centred = kind, look, centred
        self.runs = [(text, run_look) for text, run_look in runs if text]
        self.trim()
        self.section = self.unit = 0
        self.measure()

    def trim(self):
        while self.runs and not self.runs[-1][0].rstrip(" "):
            self.runs.pop()
        if self.runs:
            text, look = self.runs[-1]
            self.runs[-1] = (text.rstrip(" "), look)

    def measure(self):
        self.tokens = []
        self.ascent = self.descent = x = 0
        is_new = True
        for text, look in self.runs:
            for character in text:
                width = faces.advance(look, character)
                if character != " ":
                    old = None if is_new else self.tokens.pop()
                    self.tokens.append(Token((old.text if old else "") + character,
                                             (old.places if old else []) + [x],
                                             (old.looks if old else []) + [look], x + width))
                    self.grow(look)
                is_new = character == " "
                x += width
        if not self.tokens:
            self.grow(self.look)
        self.width = x

    def grow(self, look):
        metrics = faces.metrics(look)
        self.ascent = max(self.ascent, metrics.ascent * look.points)
        self.descent = max(self.descent, metrics.descent * look.points)

    @property
    def text(self):
        return "".join(text for text, _ in self.runs)

    @property
    def height(self):
        return self.ascent + self.descent

    @property
    def origin(self):
        """Of the line's left end, from what it is aligned by."""
        return -self.width / 2 if self.centred else 0


class Song:
    def __init__(self, name, title, lines):
        self.name, self.title, self.lines = name, title, lines

    def common_points(self):
        """The size that most of the text has."""
        sizes = {}
        for line in self.lines:
            for text, look in line.runs:
                if not look.is_diagram:
                    sizes[look.points] = sizes.get(look.points, 0) + len(text)
        most = max(sizes.values())
        return min(points for points, count in sizes.items() if count == most)

    def as_text(self):
        return "".join(line.text + "\r\n" for line in self.lines)

    def as_rtf(self):
        names = {line.look.face for line in self.lines}
        names = sorted(names | {look.face for line in self.lines for _, look in line.runs})
        number = {name: i for i, name in enumerate(names)}
        fonts = "".join(f"{{\\f{i}\\fnil\\fcharset0 {name};}}" for i, name in enumerate(names))
        colours = "".join(f"\\red{r}\\green{g}\\blue{b};" for r, g, b in COLOURS)
        rtf = ["{\\rtf1\\ansi\\ansicpg1252\\deff0{\\fonttbl", fonts, "}\r\n{\\colortbl;", colours,
               "}\r\n\\paperw11906\\paperh16838\\margl850\\margr850\\margt850\\margb850\\uc1"]
        for line in self.lines:
            rtf.append("\\pard\\qc" if line.centred else "\\pard")
            for text, look in line.runs or [("", line.look)]:
                rtf.append(control_words(look, number) + " ")
                rtf.append("".join(escaped(character) for character in text))
            rtf.append("\\par\r\n")
        return "".join(rtf) + "}"


def control_words(look, number):
    words = f"\\plain\\f{number[look.face]}\\fs{round(2 * look.points)}\\cf{look.colour + 1}"
    for wanted, word in ((look.bold, "\\b"), (look.italic, "\\i"), (look.underline, "\\ul")):
        words += word if wanted else ""
    return words


def escaped(character):
    if character in "\\{}":
        return "\\" + character
    return character if ord(character) < 128 else f"\\u{ord(character)}?"


class Inventor:
    """Songs by chance; with `plain` everything is in that look."""

    def __init__(self, seed, plain=None):
        self.rng = random.Random(seed)
        self.plain = plain
        self.used = set()

    def chance(self, part):
        return self.rng.random() < part

    def word(self, least=1, most=3):
        """One that the song does not have yet, so that it is found again on the page."""
        while True:
            onsets, vowels, ends = self.script
            text = "".join(self.rng.choice(onsets) + self.rng.choice(vowels)
                           for _ in range(self.rng.randint(least, most)))
            text = unicodedata.normalize("NFC", text + self.rng.choice(ends))
            if text not in self.used:
                self.used.add(text)
                return text

    def look(self, base, part):
        """Another look than the base's, in some places."""
        if self.plain or not self.chance(part):
            return base
        other = base._replace(bold=self.chance(0.3), italic=self.chance(0.3),
                              underline=self.chance(0.2), colour=self.rng.randrange(len(COLOURS)))
        if self.chance(0.4):
            other = other._replace(points=self.rng.randint(16, 40) / 2)
        if self.chance(0.2):
            other = other._replace(face=self.rng.choice(faces.TEXT_FACES))
        return other

    def song(self, name):
        rng = self.rng
        self.script = rng.choice(SCRIPTS)
        face = rng.choice(faces.TEXT_FACES if self.chance(0.6) else faces.ONE_WIDTH)
        self.base = self.plain or Look(face, rng.randint(16, 40) / 2 if self.chance(0.4)
                                       else rng.randint(9, 13))
        self.mixed = rng.choice([0, 0.05, 0.3])
        self.lines = []
        self.section = self.unit = 0
        self.most_words = 40 if self.chance(0.15) else 8
        self.centring = 0.3 if not self.plain and self.chance(0.2) else 0
        title = f"{self.word()} {self.word()}".capitalize()
        self.used.add(title)
        self.add("words", [(title, self.look(self.base, 0.5))])
        self.blank()
        self.add("words", [(self.word(3, 5), self.base)])
        for _ in range(rng.randint(1, 9)):
            self.new_section()
        return Song(name, title, self.lines)

    def add(self, kind, runs, centred=False, new_unit=True):
        self.unit += new_unit
        line = Line(kind, runs, self.base, centred)
        line.section, line.unit = self.section, self.unit
        self.lines.append(line)
        return line

    def blank(self):
        self.add("blank", [])

    def new_section(self):
        rng = self.rng
        self.blank()
        self.section += 1
        if self.chance(0.5):
            self.add("label", [(rng.choice(LABELS), self.look(self.base, 2 * self.mixed))])
        kind = rng.randrange(10)
        if kind == 0:
            self.tablature()
        elif kind == 1:
            self.add("chords", [("   ".join(rng.choices(CHORDS, k=4)), self.base)])
        elif kind == 2 and not self.plain:
            self.add("diagrams", self.diagrams(rng.randint(1, 5)))
        else:
            for _ in range(rng.randint(1, 100 if self.chance(0.05) else 8)):
                self.verse_line(kind)

    def verse_line(self, kind):
        if kind == 3:
            self.add("words", self.words()[0])
        elif kind == 4 and not self.plain:
            self.stack()
        else:
            self.pair(self.rng.random() < self.centring)

    def tablature(self):
        width = self.rng.randint(20, 130)
        if self.chance(0.4):
            row = ""
            while len(row) < width - 20:
                row = row.ljust(len(row) + self.rng.randint(2, 12)) + self.rng.choice(CHORDS)
            self.add("tab chords", [(row, self.base)])
            self.unit -= 1
        for name in "eBGDAE":
            frets = "".join(self.rng.choice(["--", "--", "--", "--", "3-", "5-", "12", "-"])
                            + "-" for _ in range(width // 3))
            self.add("tab", [(f"{name}|{frets}---|", self.base)], new_unit=name == "e")

    def diagrams(self, count):
        """As runs: a diagram each, one or two blanks between them."""
        size = self.rng.randint(16, 36)
        runs = []
        for letter in self.rng.choices(DIAGRAMS, k=count):
            look = Look(f"Melvorin {self.rng.randint(1, 34):02}", size)
            runs.append((letter + " " * self.rng.randint(1, 2), look))
        return runs

    def words(self):
        """Runs, and the columns where the words begin."""
        runs, columns, column = [], [], 0
        many = self.chance(0.3)
        for _ in range(self.rng.randint(2, self.most_words if many else 6)):
            columns.append(column)
            long = self.chance(0.004)
            text = self.word(40, 60) if long else self.word()
            cut = self.rng.randint(0, len(text)) if self.chance(self.mixed) else len(text)
            look = self.look(self.base, self.mixed)
            runs.append((text[:cut], look))
            runs.append((text[cut:], self.look(look, self.mixed)))
            blanks = self.rng.choice([1, 1, 1, 2])
            runs.append((" " * blanks, self.base))
            column += len(text) + blanks
        return runs, columns

    def pair(self, centred):
        runs, columns = self.words()
        columns = [column + self.rng.choice([-1, 0, 0, 0, 2, 3]) for column in columns]
        chord_look = self.look(self.base, 2 * self.mixed)
        chords, end = [], 0
        if self.chance(0.1):
            columns.append(columns[-1] + self.rng.randint(8, 30))
        for column in columns:
            if column < end or not self.chance(0.6):
                continue
            chords.append((" " * (column - end), self.base))
            if not self.plain and self.chance(0.05):
                chords += [(run[0][0], run[1]) for run in self.diagrams(1)]
                end = column + 1
            else:
                chord = self.rng.choice(CHORDS)
                cut = self.rng.randint(1, len(chord)) if self.chance(self.mixed) else len(chord)
                chords.append((chord[:cut], chord_look))
                chords.append((chord[cut:], self.look(chord_look, self.mixed)))
                end = column + len(chord)
            chords.append((" ", self.base))
            end += 1
        if not any(text.strip() for text, _ in chords):
            chords = [("Am7", chord_look)]
        self.add("chords", chords, centred)
        self.add("words", runs, centred, new_unit=False)

    def stack(self):
        """Names over their diagrams, over words."""
        blank = faces.advance(self.base, " ")
        shapes, row = None, None
        while row is None:
            names = self.rng.choices(CHORDS, k=self.rng.randint(1, 4))
            shapes = Line("diagrams", self.diagrams(len(names)), self.base)
            row, x = [], 0
            for name, shape in zip(names, shapes.tokens):
                count = round((shape.x - x) / blank)
                if count < (1 if row else 0):  # a name that is wider than its diagram
                    row = None
                    break
                row.append((" " * count + name, self.base))
                x += count * blank + sum(faces.advance(self.base, letter) for letter in name)
        self.add("chords", row)
        self.add("diagrams", shapes.runs, new_unit=False)
        self.add("words", self.words()[0], new_unit=False)


def realistic(seed, look):
    """A chart as musicians have them: 61 to 110 lines, at most 45 columns wide, verses of four to
    eight lines with chords, choruses, labels, blank lines."""
    inventor = Inventor(seed, look)
    rng = inventor.rng
    inventor.script, inventor.base = SCRIPTS[0], look
    inventor.lines, inventor.section, inventor.unit = [], 0, 0
    length, widest = rng.randint(62, 110), rng.randint(30, 45)
    title = f"{inventor.word()} {inventor.word()}".capitalize()
    inventor.add("words", [(title, look)])
    for number in itertools.count():
        inventor.blank()
        inventor.section += 1
        if number == 0 and rng.random() < 0.5:
            inventor.add("label", [("Intro:", look)])
            inventor.add("chords", [("C   G   Am   F", look)])
            continue
        inventor.add("label", [("[Chorus]" if number % 2 == 0 else f"[Verse {number}]", look)])
        for _ in range(rng.randint(4, 8)):
            if len(inventor.lines) >= length - 1:
                return Song(f"real-{seed}", title, inventor.lines)
            known = ["C", "Am", "G7", "F", "Dm"]
            words = chords = ""
            width = rng.randint(widest * 2 // 3, widest)
            while True:
                word = inventor.word(1, 2)
                if len(words) + len(word) > width:
                    break
                if len(chords) <= len(words) <= widest - 4 and rng.random() < 0.45:
                    chords = chords.ljust(len(words)) + rng.choice(known) + " "
                words += word + " "
            inventor.add("chords", [(chords if chords.strip() else "C", look)])
            inventor.add("words", [(words, look)], new_unit=False)
            if len(inventor.used) > 400:
                inventor.used.clear()
