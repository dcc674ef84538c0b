#!/usr/bin/python3
"""Tests for tools/make-tunes.py. Run: /usr/bin/python3 tests/tools/test_make_tunes.py"""

import pathlib
import shutil
import struct
import subprocess
import sys
import tempfile
import unittest
import wave

import mido
import numpy

TREE = pathlib.Path(__file__).resolve().parent.parent.parent
TOOL = TREE / "tools" / "make-tunes.py"
RATE = 44100
GENERAL_MIDI = "/usr/share/sounds/sf2/TimGM6mb.sf2"
STEEL_GUITAR = 25

# Semitones above A4 = 440 Hz, from the thin string to the thick one.
GUITAR = (-5, -10, -14, -19, -24, -29)
TUNINGS = {
    ".": GUITAR,
    "Bass": (-26, -31, -36, -41),
    "Small Guitar": (5, 2, -2, -7),
    "Guitar Half Step Down": tuple(k - 1 for k in GUITAR),
    "Guitar Drop D": GUITAR[:5] + (-31,),
    "Guitar DADGAD": (-7, -12, -14, -19, -24, -31),
    "Guitar Open D": (-7, -12, -15, -19, -24, -31),
    "Guitar Open G": (-7, -10, -14, -19, -26, -31),
}
FLATS = "A Bb B C Db D Eb E F Gb G Ab".split()
SHARPS = "A A# B C C# D D# E F F# G G#".split()


def run(outdir, tool=TOOL):
    return subprocess.run([sys.executable, tool, outdir], capture_output=True, text=True)


def exact_soundfont():
    """A bank whose only instrument, the steel guitar, is a string tuned to no measurable error.

    Banks of recorded guitars are two or three cents off by themselves, which would hide an error
    of the files or pass for one.
    """
    rate, period = 44000, 100  # A4 = 440 Hz in whole samples, looped over whole periods
    phase = 2 * numpy.pi * numpy.arange(80 * period) / period
    string = sum(numpy.sin(k * phase) / k for k in range(1, 9))
    samples = numpy.round(string * 12000).astype("<i2").tobytes() + bytes(92)
    end = 80 * period

    def chunk(name, data):
        return name + struct.pack("<I", len(data)) + data + bytes(len(data) % 2)

    def name(text):
        return text.encode().ljust(20, b"\0")

    def generator(kind, value):
        return struct.pack("<HH", kind, value)

    # Decays to 60 dB less within four seconds, as a string does, and loops meanwhile.
    decay, sustain, loop, sample, instrument = (36, 2400), (37, 600), (54, 1), (53, 0), (41, 0)
    hydra = {
        b"phdr": name("Exact")
        + struct.pack("<HHHIII", STEEL_GUITAR, 0, 0, 0, 0, 0)
        + name("EOP")
        + struct.pack("<HHHIII", 0, 0, 1, 0, 0, 0),
        b"pbag": struct.pack("<HHHH", 0, 0, 1, 0),
        b"pmod": bytes(10),
        b"pgen": generator(*instrument) + bytes(4),
        b"inst": name("Exact") + struct.pack("<H", 0) + name("EOI") + struct.pack("<H", 1),
        b"ibag": struct.pack("<HHHH", 0, 0, 4, 0),
        b"imod": bytes(10),
        b"igen": b"".join(generator(*g) for g in (decay, sustain, loop, sample)) + bytes(4),
        b"shdr": name("A4")
        + struct.pack("<IIIIIBbHH", 0, end, period, end - period, rate, 69, 0, 0, 1)
        + name("EOS")
        + bytes(26),
    }
    info = chunk(b"ifil", struct.pack("<HH", 2, 1))
    info += chunk(b"isng", b"EMU8000\0") + chunk(b"INAM", b"Exact\0")
    body = (
        chunk(b"LIST", b"INFO" + info)
        + chunk(b"LIST", b"sdta" + chunk(b"smpl", samples))
        + chunk(b"LIST", b"pdta" + b"".join(chunk(*part) for part in hydra.items()))
    )
    return chunk(b"RIFF", b"sfbk" + body)


def rendered(midi, soundfont):
    """The sound of a MIDI file as one channel, without reverb and chorus."""
    with tempfile.TemporaryDirectory() as folder:
        out = pathlib.Path(folder) / "out.wav"
        command = ["fluidsynth", "-ni", "-q", "-R0", "-C0", "-g", "0.5", "-r", str(RATE)]
        command += ["-F", out, soundfont, midi]
        subprocess.run(command, check=True, capture_output=True, timeout=60)
        with wave.open(str(out)) as file:
            samples = numpy.frombuffer(file.readframes(file.getnframes()), "<i2")
    return samples.reshape(-1, 2).mean(axis=1) / 32768


def fundamental(sound):
    """The frequency in Hz of the lowest strong partial, the string's own pitch."""
    size = 1 << (len(sound) - 1).bit_length() + 2
    spectrum = numpy.abs(numpy.fft.rfft(sound * numpy.hanning(len(sound)), size))
    spectrum[: 30 * size // RATE] = 0  # recordings are not quite centred
    strong = numpy.flatnonzero(spectrum > spectrum.max() / 20)
    first = strong[0]
    # Up the slope to its peak, whose top is between the bins.
    while spectrum[first + 1] > spectrum[first]:
        first += 1
    left, top, right = numpy.log(spectrum[first - 1 : first + 2])
    return (first + 0.5 * (left - right) / (left - 2 * top + right)) * RATE / size


def decibels(sound):
    return 10 * numpy.log10(numpy.mean(sound**2) + 1e-12)


class MakeTunes(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.folder = tempfile.TemporaryDirectory()
        cls.out = pathlib.Path(cls.folder.name) / "sounds"
        result = run(cls.out)
        assert result.returncode == 0, result.stderr
        cls.exact = pathlib.Path(cls.folder.name) / "exact.sf2"
        cls.exact.write_bytes(exact_soundfont())

    @classmethod
    def tearDownClass(cls):
        cls.folder.cleanup()

    def files(self):
        return {
            str(path.relative_to(self.out)): path.read_bytes()
            for path in self.out.rglob("*")
            if path.is_file()
        }

    def strings(self):
        """Folder, path and semitones above A4 of every string."""
        for folder, tuning in TUNINGS.items():
            paths = sorted((self.out / "Strings" / folder).glob("*.*"))
            self.assertEqual(len(paths), len(tuning), folder)
            yield from ((folder, *pair) for pair in zip(paths, tuning))

    def test_names_say_number_letter_and_end(self):
        for folder, path, semitones in self.strings():
            last = len(TUNINGS[folder])
            number, rest = path.stem.split(" ", 1)
            letter, _, end = rest.partition(" ")
            with self.subTest(folder=folder, file=path.name):
                self.assertIn(letter, (FLATS[semitones % 12], SHARPS[semitones % 12]))
                expected = {1: "(thin, high)", last: "(thick, low)"}.get(int(number), "")
                self.assertEqual(end, expected)
        self.assertEqual(
            [p.name for p in sorted((self.out / "Strings").glob("*.mid"))],
            ["1 E (thin, high).mid", *(f"{s}.mid" for s in ("2 B", "3 G", "4 D", "5 A"))]
            + ["6 E (thick, low).mid"],
        )

    def test_every_string_is_in_tune(self):
        measured = {}
        for folder, path, semitones in self.strings():
            data = path.read_bytes()
            if data not in measured:
                sound = rendered(path, self.exact)
                # The first pluck and a late one, each from after its attack up to the next.
                measured[data] = [
                    fundamental(sound[int((at + 0.2) * RATE) : int((at + 1.9) * RATE)])
                    for at in (0, 20)
                ]
            for hertz in measured[data]:
                cents = 1200 * numpy.log2(hertz / 440) - 100 * semitones
                self.assertLess(abs(cents), 1, f"{folder}/{path.name}: {cents:+.2f} cents")

    def test_every_string_rings_long_enough_to_tune_to(self):
        done = set()
        for folder, path, semitones in self.strings():
            if semitones in done:
                continue
            done.add(semitones)
            sound = rendered(path, GENERAL_MIDI)
            with self.subTest(folder=folder, file=path.name):
                self.assertLess(numpy.abs(sound).max(), 0.99)
                half = RATE // 2
                levels = [decibels(sound[k * half : (k + 1) * half]) for k in range(60)]
                self.assertGreater(max(levels), -45)
                self.assertGreater(min(levels), max(levels) - 25)
                # A recorded guitar: a few cents off, but the same string.
                hertz = fundamental(sound[int(0.2 * RATE) : int(1.9 * RATE)])
                self.assertLess(abs(1200 * numpy.log2(hertz / 440) - 100 * semitones), 5)

    def test_songs_are_whole_and_audible(self):
        songs = sorted((self.out / "Song").glob("*.mid"))
        self.assertGreaterEqual(len(songs), 1)
        for path in songs:
            with self.subTest(song=path.name):
                sounding = set()
                for message in mido.MidiFile(path):
                    if message.type in ("note_on", "note_off"):
                        key = (message.channel, message.note)
                        starts = message.type == "note_on"
                        self.assertNotEqual(starts, key in sounding, message)
                        sounding ^= {key}
                self.assertFalse(sounding)
                sound = rendered(path, GENERAL_MIDI)
                length = mido.MidiFile(path).length
                self.assertGreater(length, 45)
                self.assertLess(numpy.abs(sound).max(), 0.99)
                seconds = [
                    decibels(sound[k * RATE : (k + 1) * RATE]) for k in range(int(length) - 2)
                ]
                self.assertGreater(min(seconds), max(seconds) - 30)

    def test_same_sources_give_same_bytes_and_nothing_old_stays(self):
        before = self.files()
        (self.out / "Strings" / "7 X.mid").write_bytes(b"old")
        self.assertEqual(run(self.out).returncode, 0)
        self.assertEqual(self.files(), before)

    def test_failures_name_the_cause_and_keep_the_old_files(self):
        before = self.files()
        copy = pathlib.Path(self.folder.name) / "copy"
        shutil.copytree(TREE / "data" / "tunes", copy / "data" / "tunes")
        (copy / "tools").mkdir()
        tool = shutil.copy(TOOL, copy / "tools")
        song, strings = "songs/Greensleeves.txt", "strings.txt"
        for name, good, bad, cause in (
            (song, "D5/2 B4", "D5/3 B4", "bar 3 has 7 beats"),
            (song, "\nE     B4", "\nFm    B4", '"Fm" is not defined'),
            (song, "G#4/1.5", "H4/1.5", '"H4" is no note'),
            (song, "\npattern ", "\n# pattern ", "a pattern of strings"),
            (song, "\ntempo ", "\ntempo 0 # ", "tempo"),
            (strings, "A1 E1", "A1 H1", '"H1" is no note'),
        ):
            with self.subTest(bad=bad):
                path = copy / "data" / "tunes" / name
                text = path.read_text()
                self.assertIn(good, text)
                path.write_text(text.replace(good, bad, 1))
                result = run(self.out, tool)
                path.write_text(text)
                self.assertEqual(result.returncode, 1)
                self.assertIn(cause, result.stderr)
                self.assertNotIn("Traceback", result.stderr)
                self.assertEqual(self.files(), before)


if __name__ == "__main__":
    unittest.main()
