"""The part of the program's suffix rewriting that every search text passes, as far as it can
touch a symbol of the chord book. A symbol that would come out changed could never be found."""

import re

SUFFIXES = (
    "b- bm|A- Am|B- Bm|C- Cm|D- Dm|E- Em|F- Fm|G- Gm|C- Cm|9/6 6/9|9- 9b|-4 m4|-6 m6|-7 m7|-9 m9|"
    "-7/4 m4/7|7M 7+|7/4 4/7|-6/7 m6/7|7/6 6/7|m6/7 m6/7|-7/9 m7/9|-9/7 m7/9|9+ 9#|11+ 9#|-/7 m/7|"
    "5+ 5#|5+/4 5#/4|4/5+ 5#/4|4/5# 5#/4|-7/9 m7/9"
)

NOTES = "A A# Bb B C C# Db D D# Eb E F F# Gb G G# Ab".split()
THIRDS = "C# D D D# E F F F# G G G# A A# Bb B C C".split()

# A minor chord over its sixth becomes a half-diminished chord where there is room behind it.
SIXTHS = (
    "A F#|A Gb|A# G|Bb G|B G#|B Ab|C A|C# A#|C# Bb|Db A#|Db Bb|D B|D# C|Eb C|E C#|E Db|F D|"
    "F# D#|F# Eb|Gb D#|Gb Eb|G E|G# F|Ab F"
)

SHARP_BASS_ROOTS = "A B D E G Am Bm Dm Em Gm".split()
FLAT_BASS_ROOTS = "C F Cm Fm".split()
SHARPS = "A# C# D# F# G#".split()
FLATS = "Bb Db Eb Gb Ab".split()

BASSES = (
    "A/A# A/Bb|Am/A# Am/Bb|C/C# C/Db|Cm/C# Cm/Db|D/D# D/Eb|Dm/D# Dm/Eb|F/F# F/Gb|Fm/F# Fm/Gb|"
    "G/G# G/Ab|Gm/G# Gm/Ab|C9/A# C9/Bb|Cm9/A# Cm9/Bb|F9/D# F9/Eb|Fm9/D# Cm9/Eb|A6/A# A6/Bb|"
    "Am6/A# Am6/Bb|C6/C# C6/Db|Cm6/C# Cm6/Db|D6/D# D6/Eb|Dm6/D# Dm6/Eb|F6/F# F6/Gb|"
    "Fm6/F# Fm6/Gb|G6/G# G6/Ab|Gm6/G# Gm6/Ab|A6/Ab A6/G#|B6/Bb B6/A#|D6/Db D6/C#|E6/Eb E6/D#|"
    "G6/Gb G6/F#|G7/D# G7/Eb|Gm7/D# Gm7/Eb|G/A# G/Bb|Gm/A# Gm/Bb|G/C# G/Db|Gm/C# Gm/Db|G/D# G/Eb"
)


def pairs(text):
    return [tuple(pair.split(" ")) for pair in text.split("|")]


def bass_rules():
    """Step by step: roots that have sharps and those that have flats as their basses."""
    for roots, wrong, right in (
        (SHARP_BASS_ROOTS, FLATS, SHARPS),
        (FLAT_BASS_ROOTS, SHARPS, FLATS),
    ):
        for root in roots:
            for tail in ("7+/", "7/", "/"):
                for one, other in zip(wrong, right):
                    yield root + tail + one, root + tail + other


RULES = [
    *[("#- ", "#m "), ("Cb", "B"), ("Fb", "E")],
    *pairs(SUFFIXES),
    ("9+ ", "9#"),
    *[(f"{note}/3", f"{note}/{third}") for note, third in zip(NOTES, THIRDS)],
    *bass_rules(),
    *pairs(BASSES),
]

# What is rewritten in ways that depend on the text around it; the book has none of it.
SHIFTING = [f"{note}m/{sixth} " for note, sixth in pairs(SIXTHS)]
SHIFTING_FORMS = re.compile(r"[()]|[Aa]d+9")


def normalised(text):
    """The text as the search sees it."""
    text += " "
    for find, replacement in RULES:
        text = text if find == replacement else text.replace(find, replacement)
    return text.strip()


def is_stable(text):
    """True if the text is found as it stands, however it is typed, in capitals too."""
    return all(
        normalised(form) == form
        and not SHIFTING_FORMS.search(form)
        and not any(find in form + " " for find in SHIFTING)
        for form in (text, text.upper())
    )
