#!/usr/bin/python3
"""Tests for tools/make-sounds.py. Run: /usr/bin/python3 tests/tools/test_make_sounds.py"""

import array
import pathlib
import subprocess
import sys
import tempfile
import unittest
import wave

TOOL = pathlib.Path(__file__).resolve().parent.parent.parent / "tools" / "make-sounds.py"


def generate(outdir):
    subprocess.run([sys.executable, str(TOOL), str(outdir)], check=True)
    return {path.name: path.read_bytes() for path in (outdir / "Msnds").iterdir()}


class Sounds(unittest.TestCase):
    def test_short_soft_and_reproducible(self):
        with tempfile.TemporaryDirectory() as one, tempfile.TemporaryDirectory() as other:
            first = generate(pathlib.Path(one))
            self.assertEqual(first, generate(pathlib.Path(other)))
            self.assertEqual(sorted(first), ["Click.WAV", "over.WAV"])
            peaks = {}
            for name in first:
                with wave.open(str(pathlib.Path(one) / "Msnds" / name)) as file:
                    self.assertEqual(file.getparams()[:3], (1, 2, 44100))
                    self.assertLess(file.getnframes() / file.getframerate(), 0.1)
                    values = array.array("h", file.readframes(file.getnframes()))
                # Silence at both ends: no crack. Heard, but far from the loudest possible.
                self.assertEqual(values[0], 0)
                self.assertLess(abs(values[-1]), 30)
                peaks[name] = max(map(abs, values)) / 32767
            self.assertTrue(0.02 < peaks["over.WAV"] < peaks["Click.WAV"] < 0.3, peaks)


if __name__ == "__main__":
    unittest.main()
