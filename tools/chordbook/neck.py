"""Finds the ways to grip a chord on a guitar in standard tuning, and how to finger them.

A shape is a tuple of six frets, lowest string first; 0 is the open string, MUTED is not played.
"""

import dataclasses
import functools
import itertools

MUTED = -1
TUNING = (4, 9, 2, 7, 11, 4)  # E A D G B E as pitch classes, C = 0
LAST_FRET = 15
REACH = 3  # highest less lowest fret under the fingers
OPEN_REACH = 5  # shapes with open strings stay below this fret
MOST_FINGERS = 4
INDEX = 1
MIDDLE = 2
LONGEST_BARRE = {2: 2, 3: 3, 4: 2}  # strings under one finger other than the index


@dataclasses.dataclass(frozen=True)
class Grip:
    """Which finger holds which string (0: none), and what that costs the hand."""

    fingers: tuple
    hand: float  # without the index barre
    used: int
    barre: tuple  # (first string, last string) under the index finger, or ()
    second_barres: int  # under other fingers


def runs_of(notes):
    """All ways to share out the notes, sorted by fret and string, to fingers one after another."""
    if not notes:
        yield []
        return
    for size in range(1, len(notes) + 1):
        if notes[size - 1][0] != notes[0][0]:
            break
        for rest in runs_of(notes[size:]):
            yield [notes[:size], *rest]


def lies_flat(shape, run, finger):
    """True if one finger can hold the run down without damping what must sound."""
    fret, first, last = run[0][0], run[0][1], run[-1][1]
    under = shape[first : last + 1]
    above = [f for f in shape[last + 1 :] if f != MUTED]
    if finger == INDEX:
        return min(under) >= fret and 0 not in above
    if last - first + 1 > LONGEST_BARRE[finger] or any(f != fret for f in under):
        return False
    return all(f >= fret for f in above)


def stretch(low, high):
    """What it costs to have the second finger so many frets above the first; None: impossible."""
    (finger, fret), (next_finger, next_fret) = low, high
    gap, natural = next_fret - fret, next_finger - finger
    if gap > natural + 1:
        return None
    if gap == natural + 1:
        wide = 0.5 if finger == INDEX else 2.0
        return wide * (1.0 if fret > 4 else 1.5)
    return 0.35 * (natural - gap)


@functools.lru_cache(maxsize=None)
def grip(shape):
    """The easiest fingering of a shape, or None if no hand can hold it."""
    notes = sorted((f, s) for s, f in enumerate(shape) if f > 0)
    if not notes:
        return Grip((0,) * 6, 0.0, 0, (), 0)
    at_nut = 0 in shape or notes[-1][0] <= 4
    best = None
    for runs in runs_of(notes):
        if len(runs) > MOST_FINGERS:
            continue
        for fingers in itertools.combinations(range(1, MOST_FINGERS + 1), len(runs)):
            cost = hold_cost(shape, runs, fingers, at_nut)
            if cost is None:
                continue
            key = (round(cost, 6), [-f for f in fingers])
            if best is None or key < best[0]:
                best = (key, runs, fingers)
    if best is None:
        return None
    (cost, _), runs, fingers = best
    held = [0] * 6
    for run, finger in zip(runs, fingers):
        for _, string in run:
            held[string] = finger
    barre = ()
    hand = cost
    if fingers[0] == INDEX and len(runs[0]) > 1:
        barre = (runs[0][0][1], runs[0][-1][1])
        hand -= index_barre_cost(*barre)
    others = sum(len(run) > 1 for run in runs) - bool(barre)
    return Grip(tuple(held), hand, len(runs), barre, others)


def index_barre_cost(first, last):
    return 0.8 + 0.12 * (last - first)


def hold_cost(shape, runs, fingers, at_nut):
    cost = 0.0
    for run, finger in zip(runs, fingers):
        if len(run) > 1:
            if not lies_flat(shape, run, finger):
                return None
            first, last = run[0][1], run[-1][1]
            if finger == INDEX:
                cost += index_barre_cost(first, last)
            else:
                cost += 0.6 + 0.2 * (last - first)
        if at_nut:
            cost += 0.05 * abs(run[0][0] - finger)
    held = [(finger, run[0][0]) for finger, run in zip(fingers, runs)]
    for low, high in zip(held, held[1:]):
        step = stretch(low, high)
        if step is None:
            return None
        cost += step
    same = [f for f in (run[0][0] for run in runs)]
    if any(same.count(f) == MOST_FINGERS for f in same):
        return None  # four fingertips do not fit into one fret
    return cost


def mute_patterns():
    """Sets of strings that may be silent: the lowest, the highest, and one beside the bass."""
    for low in range(0, 4):
        for high in range(0, 4):
            silent = set(range(low)) | set(range(6 - high, 6))
            if 6 - len(silent) >= 3:
                yield frozenset(silent)
            inner = silent | {low + 1}
            if low < 2 and 6 - len(inner) >= 4:
                yield frozenset(inner)


MUTES = sorted(set(mute_patterns()), key=lambda silent: (len(silent), sorted(silent)))


def shapes(tones, essential, bass, fewest):
    """Every playable shape that sounds these pitch classes and no other, with the bass lowest."""
    found = set()
    for lowest in range(1, LAST_FRET - REACH + 1):
        choices = []
        for string in range(6):
            frets = [
                f for f in range(lowest, lowest + REACH + 1) if (TUNING[string] + f) % 12 in tones
            ]
            if lowest <= OPEN_REACH and TUNING[string] in tones:
                frets.append(0)
            choices.append(frets)
        for silent in MUTES:
            if 6 - len(silent) < fewest:
                continue
            first = min(set(range(6)) - silent)
            options = [
                [MUTED] if s in silent
                else [f for f in choices[s] if s != first or (TUNING[s] + f) % 12 == bass]
                for s in range(6)
            ]  # fmt: skip
            for shape in itertools.product(*options):
                fretted = [f for f in shape if f > 0]
                if fretted and min(fretted) != lowest:
                    continue
                if 0 in shape and fretted and max(fretted) > OPEN_REACH:
                    continue
                sounds = {(TUNING[s] + f) % 12 for s, f in enumerate(shape) if f != MUTED}
                if essential <= sounds and is_playable(shape):
                    found.add(shape)
    return found


@functools.lru_cache(maxsize=None)
def is_playable(shape):
    return grip(shape) is not None
