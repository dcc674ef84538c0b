"""Notes, degrees and kinds of chords: what a symbol such as "F#m7/C#" is made of."""

import dataclasses
import pathlib

from fingering import EVEN_SLOTS, ODD_SLOTS
from normaliser import is_stable

KINDS_FILE = pathlib.Path(__file__).resolve().parent.parent.parent / "data/chordbook/kinds.txt"

# Root k (from 0) owns the fonts 2k+1 and 2k+2.
ROOTS = "A A# Bb B C C# Db D D# Eb E F F# Gb G G# Ab".split()

SHARP_NAMES = "C C# D D# E F F# G G# A A# B".split()
FLAT_NAMES = "C Db D Eb E F Gb G Ab A Bb B".split()

# Half steps above the root.
DEGREES = {
    "1": 0, "b9": 1, "9": 2, "b3": 3, "#9": 3, "3": 4, "4": 5, "11": 5, "b5": 6, "#11": 6,
    "5": 7, "#5": 8, "b13": 8, "6": 9, "bb7": 9, "13": 9, "b7": 10, "7": 11,
}  # fmt: skip


class BookError(Exception):
    """What went wrong, in words for the person who runs the build."""


@dataclasses.dataclass(frozen=True)
class Kind:
    """One kind of chord; it has the same slot in every root."""

    even: bool  # which of the root's two fonts
    slot: str  # the characters of its diagrams, best first
    suffix: str  # what follows the root in the symbol, without the bass
    degrees: tuple  # without the bass
    bass: str  # the degree of the lowest note
    name: str
    also: tuple  # other suffixes that lead to the same diagrams

    def tones(self, root):
        """Pitch classes, C = 0, of all that may sound over a root given as a pitch class."""
        return frozenset((root + DEGREES[d]) % 12 for d in (*self.degrees, self.bass))

    def bass_tone(self, root):
        return (root + DEGREES[self.bass]) % 12

    def essential(self, root):
        """Those that must sound: with four tones or more the ear supplies the fifth."""
        tones = self.tones(root)
        fifth = (root + DEGREES["5"]) % 12
        if "5" in self.degrees and self.bass != "5" and len(tones) >= 4:
            return tones - {fifth}
        return tones

    def third(self, root):
        """The pitch class that makes the chord major or minor, or None."""
        for degree in ("3", "b3"):
            if degree in self.degrees:
                return (root + DEGREES[degree]) % 12
        return None


def pitch(note):
    return (SHARP_NAMES if note in SHARP_NAMES else FLAT_NAMES).index(note)


def spellings(root, degree):
    """The names of a degree, the one that a musician expects first."""
    half_steps = (pitch(root) + DEGREES[degree]) % 12
    flat = root.endswith("b") or (len(root) == 1 and (degree[0] == "b" or root == "F"))
    names = [SHARP_NAMES[half_steps], FLAT_NAMES[half_steps]]
    return names[::-1] if flat else names


def symbol_and_name(root, kind):
    """Both as the dictionary has them, the bass in a spelling that a search leaves alone."""
    for bass in spellings(root, kind.bass):
        symbol = root + kind.suffix + ("" if kind.bass == "1" else "/" + bass)
        name = f"{root} {kind.name.format(bass)}"
        if is_stable(symbol) and is_stable(name):
            return symbol, name
    raise BookError(f"a search would rewrite {symbol!r} or {name!r}")


def read_kinds(path=KINDS_FILE):
    """The kinds of chords in the order of the dictionary, with every slot of both families used."""
    slots = {(even, s[0]): s for even, all_of in ((0, ODD_SLOTS), (1, EVEN_SLOTS)) for s in all_of}
    kinds = []
    for number, line in enumerate(path.read_text(encoding="utf-8").splitlines(), 1):
        if not line or line.startswith("#"):
            continue
        try:
            family, slot, suffix, degrees, bass, name, also = map(str.strip, line.split("|"))
            even = ("odd", "even").index(family)
            kind = Kind(
                bool(even),
                slots.pop((even, slot)),
                suffix,
                tuple(degrees.split()),
                bass or "1",
                name,
                tuple(also.split()),
            )
            kind.tones(0)
        except (KeyError, ValueError) as error:
            raise BookError(f"{path}, line {number}: {error}") from error
        kinds.append(kind)
    if slots:
        raise BookError(f"{path}: no kind for the slots {' '.join(slots.values())}")
    return kinds
