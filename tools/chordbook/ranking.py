"""Orders the shapes of a chord as guitarists do, and picks a few that differ.

The weights were fitted to about a hundred everyday chords and as many over another bass, so that
the shape that people play comes first with something to spare, and then rounded by hand.
"""

from neck import INDEX, MIDDLE, MUTED, grip

OPEN_PITCHES = (40, 45, 50, 55, 59, 64)

WEIGHTS = {
    "hand": 0.25,  # stretches and short barres
    "fingers": 0.10,
    "barre": 0.40,
    "second barre": 0.25,
    "position": 0.20,  # for every fret up the neck
    "open among high": 0.95,  # open strings beside frets from the fifth on
    "open among four": 0.55,
    "no nut": 0.15,
    "top muted": 0.55,
    "inner muted": 0.95,
    "inner muted, few notes": 0.10,
    "low muted": 0.16,
    "bass on G": 1.60,
    "short": 1.35,  # closed shape on the four upper strings
    "fifth missing": 0.40,
    "unison": 0.25,
    "third below": 0.30,
    "minor third below": 0.20,
    "close below": 0.60,
    "third twice": 0.12,
    "colour twice": 0.25,
    "half step": 0.10,
    "little finger in the bass": 0.70,
    "open beside the bass": 0.45,
}

# Over another bass people play the chord as they know it, as far as the new bass lets them, and
# leave out no string of it; a doubled note only muddies the bass. An open string is no position.
OVER_BASS = WEIGHTS | {
    "no nut": 0.0,
    "hand": 0.20,
    "second barre": 0.45,
    "open among four": 0.50,
    "top muted": 0.65,
    "inner muted": 0.70,
    "unison": 1.10,
    "close below": 0.25,
    "little finger in the bass": 0.60,
    "unlike the chord": 0.35,  # for every string
    "low third": 0.60,
    "index and middle apart": 0.10,
}


def traits(shape, tones, root, third):
    """How much of each weight a shape has; tones are pitch classes."""
    hold = grip(shape)
    frets = [f for f in shape if f > 0]
    played = [s for s in range(6) if shape[s] != MUTED]
    pitches = [OPEN_PITCHES[s] + shape[s] for s in played]
    classes = [p % 12 for p in pitches]
    bass, top = played[0], played[-1]
    has_open = 0 in shape
    highest = max(frets, default=0)
    below = pitches[1] - pitches[0]
    colours = tones - {root, third, (root + 7) % 12}
    yield "hand", hold.hand
    yield "fingers", hold.used
    yield "barre", bool(hold.barre)
    yield "second barre", hold.second_barres
    yield "position", min(frets, default=0)
    yield "open among high", has_open and highest > 4
    yield "open among four", has_open and highest == 4
    yield "no nut", not (has_open and highest <= 3)
    yield "top muted", len(tones) > 2 and 5 - top
    inner = sum(shape[s] == MUTED for s in range(bass, top))
    yield "inner muted", 2 * inner if len(tones) == 2 else inner
    yield "inner muted, few notes", inner and len(tones) < 5
    yield "low muted", bass
    yield "bass on G", bass == 3
    yield "short", bass == 2 and not has_open
    yield "fifth missing", len(tones - set(classes))
    yield "unison", len(pitches) - len(set(pitches))
    on_root = classes[0] == root  # other basses are thirds and fifths by themselves
    yield "third below", on_root and below in (3, 4)
    yield "minor third below", on_root and below == 3
    yield "close below", below in (1, 2, 5, 6)
    yield "third twice", max(0, classes.count(third) - 1)
    yield "colour twice", sum(max(0, classes.count(c) - 1) for c in colours)
    yield "half step", sum(1 in (p - q, q - p) for p, q in zip(pitches, pitches[1:]))
    if not has_open:
        yield "little finger in the bass", (0, 0, 0, 0.5, 1)[hold.fingers[bass]]
    yield "open beside the bass", on_root and shape[bass] > 0 and shape[bass + 1] == 0


def traits_over_bass(shape, usual):
    """What counts besides, or instead, where the bass is not the root."""
    played = [s for s in range(6) if shape[s] != MUTED]
    bass, above = played[:2]
    below = OPEN_PITCHES[above] + shape[above] - OPEN_PITCHES[bass] - shape[bass]
    yield "position", 0 if 0 in shape else min(shape[s] for s in played)
    yield "unlike the chord", sum(shape[s] != usual[s] for s in played[1:])
    yield "low third", bass == 0 and below in (3, 4)
    fingers = grip(shape).fingers
    if INDEX in fingers and MIDDLE in fingers:
        index, middle = fingers.index(INDEX), fingers.index(MIDDLE)
        if shape[index] == shape[middle]:
            yield "index and middle apart", max(0, abs(index - middle) - 2)


def cost(shape, tones, root, third, usual=None):
    """The less, the better. `usual` is what people play for the same chord over its own root,
    where the bass is another."""
    found = dict(traits(shape, tones, root, third))
    if usual is None:
        return sum(WEIGHTS[name] * value for name, value in found.items())
    found.update(traits_over_bass(shape, usual))
    return sum(OVER_BASS[name] * value for name, value in found.items())


def is_variant(one, other):
    """True if two shapes are the same grip with some strings left out."""
    return all(a == b or MUTED in (a, b) for a, b in zip(one, other))


def likeness(one, other):
    """How much of one shape a player hears and sees again in the other."""
    same = sum(a == b != MUTED for a, b in zip(one, other))
    return (0, 0, 0, 0.5, 1.2, 2.0, 3.0)[same]


def is_movable(shape):
    """True for a grip that can go up and down the neck: no open string, a bass one can lead."""
    return 0 not in shape and min(s for s in range(6) if shape[s] != MUTED) < 2


def best_shapes(candidates, tones, root, third, limit, usual=None):
    """The best shapes, best first, each as unlike those before it as its merit allows; a grip is
    not taken again with strings left out. Of four or more, one can be moved."""
    ranked = sorted((round(cost(s, tones, root, third, usual), 4), s) for s in candidates)
    picked = []
    while ranked and len(picked) < limit:
        movable = [(price, shape) for price, shape in ranked if is_movable(shape)]
        if len(picked) == limit - 1 and limit > 3 and all(0 in p for p in picked) and movable:
            shape = movable[0][1]
        else:
            _, shape = min(
                (price + sum(likeness(shape, p) for p in picked), shape) for price, shape in ranked
            )
        picked.append(shape)
        ranked = [(p, s) for p, s in ranked if not is_variant(s, shape)]
    return picked
