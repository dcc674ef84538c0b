#!/usr/bin/python3
"""Compute the two short sounds of the picture buttons.

    tools/make-sounds.py OUTDIR

Writes OUTDIR/Msnds/Click.WAV and OUTDIR/Msnds/over.WAV (16 bits, mono, 44100 Hz). The same
program gives the same bytes. Both are soft: they accompany a pointer that moves all day.
"""

import array
import math
import pathlib
import sys
import wave

RATE = 44100
ATTACK = 0.0015  # seconds in which a sound fades in, so that it does not crack
RELEASE = 0.004

# Duration in seconds, and the partials: frequency in Hz, loudness (1 is the loudest possible),
# time in seconds in which it falls to a third.
SOUNDS = {
    "Click.WAV": (0.060, ((1046.5, 0.16, 0.010), (1568.0, 0.08, 0.006), (392.0, 0.10, 0.014))),
    "over.WAV": (0.035, ((1318.5, 0.05, 0.007), (2637.0, 0.015, 0.004))),
}


def samples(duration, partials):
    count = round(duration * RATE)
    for i in range(count):
        t = i / RATE
        value = sum(
            loudness * math.exp(-t / fall) * math.sin(2 * math.pi * hertz * t)
            for hertz, loudness, fall in partials
        )
        fade = min(1.0, t / ATTACK, (duration - t) / RELEASE)
        yield round(32767 * value * fade)


def write(path, duration, partials):
    data = array.array("h", samples(duration, partials))
    if sys.byteorder == "big":
        data.byteswap()
    with wave.open(str(path), "wb") as file:
        file.setnchannels(1)
        file.setsampwidth(2)
        file.setframerate(RATE)
        file.writeframes(data.tobytes())


def main(arguments):
    if len(arguments) != 1:
        print(__doc__.strip(), file=sys.stderr)
        return 2
    folder = pathlib.Path(arguments[0]) / "Msnds"
    folder.mkdir(parents=True, exist_ok=True)
    for name, (duration, partials) in SOUNDS.items():
        write(folder / name, duration, partials)
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
