"""The pages of a PDF as poppler reads them, and which word of a song each of their words is."""
import dataclasses
import re
import subprocess
import unicodedata
import xml.etree.ElementTree

import faces

WORD = re.compile(r'<word xMin="([\d.-]+)" yMin="([\d.-]+)" xMax="([\d.-]+)" yMax="([\d.-]+)">(.*?)'
                  r"</word>", re.DOTALL)


@dataclasses.dataclass
class Word:
    page: int
    left: float
    top: float
    right: float
    bottom: float
    text: str


def read_pages(pdf):
    """Lists of words, in the order in which they were painted."""
    told = subprocess.run(["pdftotext", "-raw", "-bbox", pdf, "-"], stdout=subprocess.PIPE,
                          check=True)
    # XML has no place for some characters that a page may have.
    text = re.sub("[\x00-\x08\x0b\x0c\x0e-\x1f\x7f]", "\N{REPLACEMENT CHARACTER}",
                  told.stdout.decode("utf-8", "replace"))
    pages = []
    for number, page in enumerate(text.split("<page ")[1:]):
        words = []
        for left, top, right, bottom, shown in WORD.findall(page):
            shown = xml.etree.ElementTree.fromstring(f"<w>{shown}</w>").text or ""
            words.append(Word(number, float(left), float(top), float(right), float(bottom),
                              unicodedata.normalize("NFC", shown)))
        pages.append(words)
    return pages


@dataclasses.dataclass
class Piece:
    """A token of a line on the page, or what a column has of a token that is wider than it."""
    line: int
    token: int
    begin: int  # characters of the token before it
    word: Word
    length: int
    x: float
    base: float = 0


class Mismatch(Exception):
    """The page shows something else than the song has."""


class SongPages:
    """The pages of a song: `heads` are their words above the song, `pieces` those of its lines."""

    def __init__(self, song, pages, has_diagrams):
        self.song = song
        self.pages = pages
        self.heads, self.pieces = [], []
        words = song.title.split()
        self.title_is_line = song.lines[0].text == song.title
        body = []
        for number, page in enumerate(pages):
            count = self.head_length(number, page, words, has_diagrams)
            self.heads.append(page[:count])
            body += page[count:]
        self.match(body)

    def head_length(self, number, page, title, has_diagrams):
        texts = [word.text for word in page]
        at = 0
        if number == 0:
            if texts[:len(title)] != title:
                raise Mismatch(f"no title {title} but {texts[:4]}")
            at = len(title)
            if has_diagrams:
                first = self.song.lines[2].tokens[0].text
                starts = [i for i, text in enumerate(texts)
                          if len(text) > 1 and first.startswith(text)]
                if not starts:
                    raise Mismatch("no first line")
                return starts[0]
            if texts[at:at + 1] == ["Key"]:
                at += 2
        if len(self.pages) > 1:
            wanted = ["Page", str(number + 1), "of", str(len(self.pages))]
            if texts[at:at + 4] != wanted:
                raise Mismatch(f"{texts[at:at + 4]} where {wanted} should be")
            at += 4
        # As many words of the title as there is room for.
        for word in title if number > 0 else []:
            at += texts[at:at + 1] == [word]
        return at

    def match(self, words):
        lines = self.song.lines
        units = {}
        for number, line in enumerate(lines):
            if line.tokens and (number > 0 or not self.title_is_line):
                units.setdefault(line.unit, []).append(number)
        waiting = iter(units.values())
        places = {}  # of each line of the unit: token and character that come next
        current = None
        for word in words:
            rest = word.text
            while rest:
                if not any(at[0] < len(lines[number].tokens) for number, at in places.items()):
                    places = {number: (0, 0) for number in next(waiting, [])}
                    current = None
                order = ([current] if current is not None else []) + list(places)
                # Whole tokens first: a diagram's letter may begin a word as well.
                order.sort(key=lambda n: not self.is_whole(lines[n], places[n], rest))
                found = next((number for number in order
                              if self.taken(lines[number], places[number], rest)), None)
                if found is None:
                    raise Mismatch(f"{rest!r} on page {word.page} where "
                                   f"{[lines[n].text for n in places]} is due")
                token, begin = places[found]
                length = self.taken(lines[found], places[found], rest)
                self.pieces.append(self.piece(found, token, begin, word, length, rest is word.text))
                rest = rest[length:]
                done = begin + length == len(lines[found].tokens[token].text)
                places[found] = (token + 1, 0) if done else (token, begin + length)
                current = found
        left = [number for number, at in places.items() if at[0] < len(lines[number].tokens)]
        left += [number for unit in waiting for number in unit]
        if left:
            raise Mismatch(f"{len(left)} lines are missing, the first {lines[left[0]].text!r}")

    @staticmethod
    def is_whole(line, place, text):
        return place[0] < len(line.tokens) and line.tokens[place[0]].text[place[1]:] == text

    @staticmethod
    def taken(line, place, text):
        """How many characters of a text are what comes next in a line; 0 where it is not."""
        token, begin = place
        if token == len(line.tokens):
            return 0
        due = line.tokens[token].text[begin:]
        if due.startswith(text):
            return len(text)
        return len(due) if text.startswith(due) else 0

    def piece(self, line, token, begin, word, length, is_start):
        """poppler joins what is near; only the first part's place is known then."""
        return Piece(line, token, begin, word, length, word.left if is_start else None)


def base_line(word, look, points):
    """poppler's boxes begin at the ascent of their first character's font."""
    return word.top + faces.metrics(look).ascent * points


def ink(pdf, resolution=36):
    """For each page the box of its ink in points, by a picture of it."""
    told = subprocess.run(["pdftoppm", "-gray", "-r", str(resolution), pdf], stdout=subprocess.PIPE,
                          check=True).stdout
    boxes = []
    at = 0
    while at < len(told):
        head = re.compile(rb"P5\s+(\d+)\s+(\d+)\s+(\d+)\s").match(told, at)
        width, height = int(head[1]), int(head[2])
        start = head.end()
        rows = [told[start + y * width:start + (y + 1) * width] for y in range(height)]
        white = b"\xff" * width
        inked = [y for y, row in enumerate(rows) if row != white]
        left = min((len(row) - len(row.lstrip(b"\xff")) for row in rows), default=width)
        right = max((len(row.rstrip(b"\xff")) for row in rows), default=0)
        scale = 72 / resolution
        boxes.append((left * scale, right * scale, inked[0] * scale if inked else 0,
                      (inked[-1] + 1) * scale if inked else 0))
        at = start + width * height
    return boxes
