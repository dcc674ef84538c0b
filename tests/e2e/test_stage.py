"""A song on stage."""

import itertools
import shutil
import subprocess

from PIL import Image

from program import (
    DRIVER, ROOT, WINE, Case, drive, expect, expect_that, picture_of_screen, press, wait_title,
)

LINES = 14
# From 4 to 1 once, from 9 to 6 once; a step goes one line beyond the jump's.
PASS = [1, 2, 3, 4, 2, 3, 4, 5, 6, 7, 8, 9, 7, 8, 9, 10, 11, 12, 13, 14]


def numbered_song():
    """Every line begins with its number as four blocks, black for 1 and white for 0, as high as the
    line, so that a picture tells which line is on top."""
    def line(number):
        blocks = (r"\u9608?" if number & bit else " " for bit in (8, 4, 2, 1))
        return f" {''.join(blocks)} Line {number}"

    lines = r"\par".join(map(line, range(1, LINES + 1)))
    return r"{\rtf1\ansi{\fonttbl{\f0 Lucida Console;}}\f0\fs160" + lines + "}"


def number_on_top(picture):
    with Image.open(picture) as screen:
        blocks = screen.convert("L").crop((6, 12, 262, 18))
    bits = blocks.resize((4, 1), Image.Resampling.BOX).tobytes()
    return int("".join("1" if grey < 128 else "0" for grey in bits), 2)


def without_repeats(numbers):
    return [number for number, _ in itertools.groupby(numbers)]


class Stage(Case):
    def film(self, folder):
        """A picture at each second of the run until its end."""
        shutil.rmtree(folder, ignore_errors=True)
        folder.mkdir(parents=True)
        pictures = []
        with subprocess.Popen(
            ["timeout", "200", WINE, DRIVER, "film"],
            stdout=subprocess.PIPE, stderr=subprocess.DEVNULL,
        ) as told:
            for _ in told.stdout:
                pictures.append(folder / f"{len(pictures):03}.png")
                for _ in range(5):
                    picture_of_screen(pictures[-1])
                    if number_on_top(pictures[-1]) != 0:
                        break  # else it was taken while the line was drawn
        return pictures

    def test_stage_run(self):
        """A run with two jumps and two passes, filmed. The pictures stay in build/stage-film."""
        song = self.work / "stage.rtf"
        song.write_text(numbered_song(), encoding="ascii")
        program = self.start(song)
        wait_title("stage.rtf - Melvorin")
        drive("post", "Full Screen", "wait-front", "Full Screen")
        # Every 2 seconds a line, 2 passes, the jumps.
        drive(
            *"choose 101=2 click 104 choose 103=2".split(),
            *"click 301 choose 201=4 choose 202=1 choose 211=1".split(),
            *"click 305 choose 209=9 choose 210=6 choose 215=1".split(),
        )
        drive("click", "108", "wait-front", " 0:00 ")
        pictures = self.film(ROOT / "build/stage-film")
        drive("wait-front", "Full Screen")
        expect_that(len(pictures) >= 84, f"the run had {len(pictures)} pictures")

        # At the end of the text nothing moves any more.
        seen = without_repeats(number_on_top(picture) for picture in pictures)
        highest = max(seen)
        expected = without_repeats(min(line, highest) for line in PASS + PASS)
        expect("lines on top", expected, seen)
        expect_that(5 <= highest <= 13, f"the last screenful begins at {highest}")
        press("Escape", to="Full Screen")
        drive("wait-front", "stage.rtf - Melvorin", "close")
        program.expect_end()
