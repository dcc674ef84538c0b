"""Checks what the search for shapes came up with, by counting again from the printed frets and
fingers. It shares no tables and no code with the search."""

OPEN_STRINGS = (40, 45, 50, 55, 59, 64)  # half steps, middle C = 60
LETTERS = {"C": 0, "D": 2, "E": 4, "F": 5, "G": 7, "A": 9, "B": 11}
MAJOR_SCALE = (0, 2, 4, 5, 7, 9, 11)
HAND = 3  # frets between the index and the little finger


def half_steps(note):
    return (LETTERS[note[0]] + note.count("#") - note[1:].count("b")) % 12


def degree_steps(degree):
    """Half steps of a degree such as "b9": its place in the major scale, then the accidentals."""
    number = int(degree.strip("b#"))
    return (MAJOR_SCALE[(number - 1) % 7] + degree.count("#") - degree.count("b")) % 12


def read_frets(text):
    """Six numbers, None for a string that is not played."""
    frets = text.split("-") if "-" in text else list(text)
    return [None if f == "x" else int(f) for f in frets]


def sound_faults(frets, root, degrees, bass):
    """What is wrong with the notes of a shape; degrees are those of the chord, bass is a note."""
    notes = [open_string + f for open_string, f in zip(OPEN_STRINGS, frets) if f is not None]
    wanted = {(half_steps(root) + degree_steps(d)) % 12: d for d in degrees}
    wanted.setdefault(half_steps(bass), "bass")
    sounding = {n % 12 for n in notes}
    for foreign in sorted(sounding - set(wanted)):
        yield f"{foreign} does not belong to the chord"
    for missing in sorted(set(wanted) - sounding):
        if wanted[missing] != "5" or len(wanted) < 4:
            yield f"{wanted[missing]} is missing"
    if min(notes) % 12 != half_steps(bass):
        yield f"the lowest note is not {bass}"
    if len(notes) < 3:
        yield "fewer than three strings"


def hand_faults(frets, fingers):
    """What a hand cannot do; fingers is a text such as "-32-1-"."""
    fretted = [f for f in frets if f]
    if len(frets) != 6 or len(fingers) != 6:
        yield "not six strings"
        return
    for fret, finger in zip(frets, fingers):
        if bool(fret) != (finger in "1234"):
            yield "a finger where there is no fret, or the other way round"
    if not fretted:
        return
    if max(fretted) - min(fretted) > HAND:
        yield "too long a stretch"
    if max(fretted) > 15:
        yield "beyond the fifteenth fret"
    if 0 in frets and max(fretted) > 5:
        yield "open strings far from the hand"
    places = {}
    for string, (fret, finger) in enumerate(zip(frets, fingers)):
        if finger != "-":
            places.setdefault(finger, []).append((fret, string))
    for finger, spots in places.items():
        yield from barre_faults(frets, finger, spots)
    hand = [places[finger][0][0] for finger in sorted(places)]
    if hand != sorted(hand):
        yield "crossed fingers"
    for one, other in zip(sorted(places), sorted(places)[1:]):
        if places[other][0][0] - places[one][0][0] > int(other) - int(one) + 1:
            yield f"fingers {one} and {other} too far apart"
    if any(hand.count(f) > 3 for f in hand):
        yield "four fingertips in one fret"


def barre_faults(frets, finger, spots):
    if len({fret for fret, _ in spots}) > 1:
        yield f"finger {finger} at two frets"
    fret, first, last = spots[0][0], spots[0][1], spots[-1][1]
    if first == last:
        return
    for string in range(first, last + 1):
        if frets[string] is None or frets[string] < fret:
            yield f"finger {finger} lies over string {string + 1}"
    for string in range(last + 1, 6):
        if frets[string] is not None and frets[string] < (1 if finger == "1" else fret):
            yield f"finger {finger} damps string {string + 1}"
    if finger != "1" and (last - first > 2 or len(spots) != last - first + 1):
        yield f"finger {finger} cannot reach so far"


def slot_faults(slot, shapes):
    """What is wrong with the shapes of one chord as a set; shapes are lists of frets."""
    if len(slot) != len(shapes):
        yield f"{len(shapes)} shapes for {len(slot)} characters"
    for k, one in enumerate(shapes):
        for other in shapes[:k]:
            if all(a == b or None in (a, b) for a, b in zip(one, other)):
                yield f"{one} is {other} again"


def faults(entry, frets_text, fingers_text):
    """All that is wrong with one entry of the book, in words."""
    kind = entry.kind
    named_bass = entry.symbol.rpartition("/")[2]
    bass = entry.root if kind.bass == "1" else named_bass
    if kind.bass != "1" and (half_steps(entry.root) + degree_steps(kind.bass)) % 12 != half_steps(
        bass
    ):
        yield f"{entry.symbol}: the bass is not the {kind.bass}"
    shapes = [read_frets(frets_text(shape)) for shape in entry.shapes]
    for fault in slot_faults(kind.slot, shapes):
        yield f"{entry.symbol}: {fault}"
    for shape, frets in zip(entry.shapes, shapes):
        found = [
            *sound_faults(frets, entry.root, kind.degrees, bass),
            *hand_faults(frets, fingers_text(shape)),
        ]
        for fault in found:
            yield f"{entry.symbol} {frets_text(shape)}: {fault}"
