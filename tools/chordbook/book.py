"""Puts the chord book together: every root with every kind, its symbol, name and shapes."""

import dataclasses

from neck import MUTED, grip, shapes
from normaliser import is_stable
from ranking import best_shapes
from theory import ROOTS, BookError, pitch, read_kinds, symbol_and_name

DIAGRAM_FRETS = 4  # rows in a diagram


@dataclasses.dataclass(frozen=True)
class Entry:
    """One chord of the dictionary."""

    root: str
    kind: object
    symbol: str
    name: str
    also: tuple  # other symbols, not taken by any chord
    shapes: tuple  # one for each character of the slot, best first

    @property
    def font(self):
        return font_number(self.root, self.kind.even)


def font_number(root, even):
    return 2 * ROOTS.index(root) + 1 + even


def first_fret(shape):
    """The fret in the first row of the diagram; 1 means that the nut is shown."""
    fretted = [f for f in shape if f > 0]
    return 1 if max(fretted, default=0) <= DIAGRAM_FRETS else min(fretted)


def frets_text(shape):
    """As guitarists write it: "x32010", with hyphens between once a fret needs two digits."""
    frets = ["x" if f == MUTED else str(f) for f in shape]
    return ("-" if max(shape) > 9 else "").join(frets)


def fingers_text(shape):
    """The finger on each string, 1 to 4 from the index on, "-" for none."""
    return "".join(str(f) if f else "-" for f in grip(shape).fingers)


def chord_shapes(kind, root, usual=None):
    """The shapes for one slot; the root is a pitch class. `usual` is the first shape of the same
    chord over its root."""
    tones = kind.tones(root)
    fewest = 3 if len(tones) < 4 else 4
    candidates = shapes(tones, kind.essential(root), kind.bass_tone(root), fewest)
    best = best_shapes(candidates, tones, root, kind.third(root), len(kind.slot), usual)
    if len(best) < len(kind.slot):
        raise BookError(
            f"{kind.suffix!r} over {kind.bass}: {len(best)} shapes for {len(kind.slot)} characters"
        )
    return tuple(best)


def with_other_symbols(root, kind):
    symbol, name = symbol_and_name(root, kind)
    bass = symbol.rpartition("/")[2]
    return symbol, name, tuple(root + suffix.format(bass) for suffix in kind.also)


def all_shapes(kinds):
    """The shapes of every kind over every pitch class, by both."""
    found = {(p, k): chord_shapes(k, p) for k in kinds if k.bass == "1" for p in range(12)}
    usual = {(p, k.suffix): shapes[0] for (p, k), shapes in found.items()}
    for kind in kinds:
        if kind.bass != "1":
            for p in range(12):
                found[p, kind] = chord_shapes(kind, p, usual[p, kind.suffix])
    return found


def make_book():
    """All entries, root by root in the order of the kinds."""
    kinds = read_kinds()
    chords = [
        (root, kind, *with_other_symbols(root, kind)) for root in ROOTS for kind in kinds
    ]
    check_searches("symbol", [text for _, _, symbol, _, also in chords for text in (symbol, *also)])
    check_searches("name", [name for _, _, _, name, _ in chords])
    found = all_shapes(kinds)
    return [Entry(*chord, found[pitch(chord[0]), chord[1]]) for chord in chords]


def check_searches(what, texts):
    """A search compares without case and after rewriting: each text must lead to one chord."""
    seen = set()
    for text in texts:
        if text.upper() in seen:
            raise BookError(f"the {what} {text!r} is there twice")
        seen.add(text.upper())
        if not is_stable(text):
            raise BookError(f"a search would rewrite the {what} {text!r}")
