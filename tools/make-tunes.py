#!/usr/bin/python3
"""Write the MIDI files of the tuner and the song player from data/tunes.

    tools/make-tunes.py OUTDIR

Writes OUTDIR/Strings, one file per string of each tuning in strings.txt, and OUTDIR/Song, one
file per tune in songs/. Both folders are the tool's own: MIDI files in them that have no source
any more are removed. The same sources give the same bytes.

A tune is made of lines:

    tempo N         beats a minute
    beats N         beats of a whole bar
    pattern 1 2 3   the strings that accompany a bar, evenly spread over it
    repeat N        how often the whole tune is played
    chord Am A2 ... the notes of a chord, string 1 first
    Am  C5/2 D5     a bar: its chord, then the notes of the tune with their beats (1 without "/")

Two chords joined by "+" share a bar; "-" is a bar without one (a pickup), which may be short, as
may the last bar. A note "z" is a rest. "#" at the start of a line begins a comment.

Needs mido (Debian package python3-mido).
"""

import argparse
import io
import pathlib
import re
import sys

import mido

SOURCES = pathlib.Path(__file__).resolve().parent.parent / "data" / "tunes"

TICKS = 480  # per beat
STEEL_GUITAR = 25  # General MIDI, counted from 0
NYLON_GUITAR = 24

# Most instruments have died away two seconds after a high string was plucked.
PLUCKS = 16
PLUCK_SECONDS = 2
STRING_VELOCITY = 110

TUNE_CHANNEL, CHORD_CHANNEL = 0, 1
TUNE_VELOCITY, CHORD_VELOCITY, BAR_VELOCITY = 104, 62, 76
LAST_BEATS = 4  # that the last notes go on ringing

STEPS = {"C": 0, "D": 2, "E": 4, "F": 5, "G": 7, "A": 9, "B": 11}


class TuneError(Exception):
    """What went wrong, in words for the person who runs the build."""


def note_number(name):
    """The MIDI number of a note name: 69 for A4."""
    match = re.fullmatch(r"([A-G])([#b]?)(\d)", name)
    if match is None:
        raise TuneError(f'"{name}" is no note')
    step = STEPS[match[1]] + {"#": 1, "b": -1, "": 0}[match[2]]
    return 12 * (int(match[3]) + 1) + step


def lines_of(path):
    text = path.read_text(encoding="utf-8")
    lines = (line.strip() for line in text.splitlines())
    return [line for line in lines if line and not line.startswith("#")]


def midi_bytes(events, tempo):
    """A file of one track; `events` are (tick, message) in any order."""
    # Notes end before others begin at the same tick, so that a repeated note sounds again.
    order = {"note_off": 1, "note_on": 2, "end_of_track": 3}
    events = sorted(events, key=lambda event: (event[0], order.get(event[1].type, 0)))
    track = mido.MidiTrack([mido.MetaMessage("set_tempo", tempo=tempo)])
    now = 0
    for tick, message in events:
        track.append(message.copy(time=tick - now))
        now = tick
    file = io.BytesIO()
    mido.MidiFile(type=0, ticks_per_beat=TICKS, tracks=[track]).save(file=file)
    return file.getvalue()


def instrument(channel, program):
    """A plain, dry sound: effects would blur the pitch."""
    controls = ((7, 127), (10, 64), (91, 0), (93, 0))
    return [(0, mido.Message("program_change", channel=channel, program=program))] + [
        (0, mido.Message("control_change", channel=channel, control=control, value=value))
        for control, value in controls
    ]


def note(channel, number, velocity, start, end):
    on = mido.Message("note_on", channel=channel, note=number, velocity=velocity)
    off = mido.Message("note_off", channel=channel, note=number, velocity=0)
    return [(start, on), (end, off)]


# ---- Strings -----------------------------------------------------------------------------------


def string_sound(number):
    events = instrument(0, STEEL_GUITAR)
    length = PLUCK_SECONDS * TICKS  # at one beat a second
    for k in range(PLUCKS):
        events += note(0, number, STRING_VELOCITY, k * length, (k + 1) * length)
    return midi_bytes(events, tempo=1_000_000)


def string_files():
    files = {}
    for line in lines_of(SOURCES / "strings.txt"):
        folder, *names = re.split(r"\s{2,}|(?<=\d)\s", line)
        if len(names) < 2:
            raise TuneError(f"strings.txt: a folder and its strings are needed: {line}")
        for number, name in enumerate(names, 1):
            ends = {1: " (thin, high)", len(names): " (thick, low)"}
            file = f"{number} {name.rstrip('0123456789')}{ends.get(number, '')}.mid"
            files[pathlib.Path("Strings", folder, file)] = string_sound(note_number(name))
    return files


# ---- Tunes -------------------------------------------------------------------------------------


class Tune:
    def __init__(self, lines):
        self.numbers = {"tempo": 100, "beats": 4, "repeat": 1}
        self.pattern = []
        self.chords = {}
        self.bars = []  # (chord names, [(note name, beats)])
        for line in lines:
            self.read(line)
        self.check()

    def read(self, line):
        word, *rest = line.split()
        if word in self.numbers:
            self.numbers[word] = int(rest[0])
        elif word == "pattern":
            self.pattern = [int(string) for string in rest]
        elif word == "chord":
            self.chords[rest[0]] = [note_number(name) for name in rest[1:]]
        else:
            names = [] if word == "-" else word.split("+")
            self.bars.append((names, [self.timed(token) for token in rest]))

    @staticmethod
    def timed(token):
        name, _, beats = token.partition("/")
        return name, float(beats or 1)

    def check(self):
        if not self.pattern or min(self.pattern) < 1:
            raise TuneError("a pattern of strings, counted from 1, is needed")
        if self.numbers["tempo"] < 1:
            raise TuneError("the tempo is below 1")
        whole = self.numbers["beats"]
        for k, (names, notes) in enumerate(self.bars):
            beats = sum(length for _, length in notes)
            may_be_short = k in (0, len(self.bars) - 1)
            if beats > whole or (beats < whole and not may_be_short):
                raise TuneError(f"bar {k + 1} has {beats:g} beats")
            for name in names:
                if name not in self.chords:
                    raise TuneError(f'bar {k + 1}: the chord "{name}" is not defined')

    def chord_notes(self, names, start, beats):
        """The pattern over one bar; a string rings until it or the next chord is played."""
        if not names:
            return []
        step = self.numbers["beats"] * TICKS // len(self.pattern)
        share = len(self.pattern) // len(names)
        events = []
        ends = {}  # of the notes, as they come from behind
        for k in reversed(range(share * len(names))):
            at = k * step
            chord_end = min((k // share + 1) * share * step, int(beats * TICKS))
            if at >= chord_end:
                continue
            # A second chord begins with its bass, as a bar does.
            number = self.chords[names[k // share]][self.pattern[k % share] - 1]
            velocity = BAR_VELOCITY if k % share == 0 else CHORD_VELOCITY
            end = min(chord_end, ends.get(number, chord_end))
            events += note(CHORD_CHANNEL, number, velocity, start + at, start + end)
            ends[number] = at
        return events

    def sound(self):
        events = instrument(TUNE_CHANNEL, NYLON_GUITAR) + instrument(CHORD_CHANNEL, STEEL_GUITAR)
        now = 0
        for _ in range(self.numbers["repeat"]):
            for names, notes in self.bars:
                events += self.chord_notes(names, now, sum(beats for _, beats in notes))
                for name, beats in notes:
                    end = now + round(beats * TICKS)
                    if name != "z":
                        number = note_number(name)
                        events += note(TUNE_CHANNEL, number, TUNE_VELOCITY, now, end)
                    now = end
        end = now + LAST_BEATS * TICKS
        # The last chord once more, as a strum that rings out.
        for k, number in enumerate(self.chords[self.bars[-1][0][-1]]):
            events += note(CHORD_CHANNEL, number, CHORD_VELOCITY, now + k * TICKS // 16, end)
        return midi_bytes(events, tempo=round(60_000_000 / self.numbers["tempo"]))


def song_files():
    files = {}
    for path in sorted((SOURCES / "songs").glob("*.txt")):
        try:
            sound = Tune(lines_of(path)).sound()
        except (TuneError, ValueError, IndexError) as error:
            raise TuneError(f"{path.name}: {error}") from error
        files[pathlib.Path("Song", path.stem + ".mid")] = sound
    return files


# ---- Files -------------------------------------------------------------------------------------


def make_tunes(folder):
    # Everything is composed before anything is written: a broken tune leaves the old set whole.
    files = {**string_files(), **song_files()}
    for name, data in files.items():
        path = folder / name
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_bytes(data)
    for own in ("Strings", "Song"):
        for path in (folder / own).rglob("*.mid"):
            if path.relative_to(folder) not in files:
                path.unlink()


def main():
    parser = argparse.ArgumentParser(description="Write the sounds of the tuner and the player.")
    parser.add_argument("outdir", metavar="OUTDIR", type=pathlib.Path)
    try:
        make_tunes(parser.parse_args().outdir)
    except (TuneError, OSError) as error:
        print(f"make-tunes: {error}", file=sys.stderr)
        return 1
    return 0


if __name__ == "__main__":
    sys.exit(main())
