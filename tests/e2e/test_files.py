"""Songs as files: what is saved, under which names, and what is asked before."""

import pathlib

from program import (
    BOX, COMMAND_LINE_TOOL, EMPTY_TITLE, ROOT, Case, done, drive, enter, expect, expect_same_file,
    expect_that, forget_paths, paths_known, press, remembered_path, snapshots, wait_box, wait_title,
    windows_path,
)

SNOW = "Am      E7/G#\r\nСнег идёт и тает,\r\nDm   B°\r\nКапель поёт.\r\n"

# As people have them.
NAMES = (
    "my song.txt", "it's a 'song'.txt", "100% [live] & #1, part;2.txt", "Ωδή 中文 песня.txt",
    "two  words/song", ".txt",
)


class Files(Case):
    def test_main_job(self):
        """Every example, and a song in another script, goes up by the real program exactly as the
        batch tool takes it there."""
        snow = self.work / "Снег.txt"
        snow.write_text(SNOW, encoding="utf-8", newline="")
        examples = sorted((ROOT / "data/examples").glob("*.txt"))
        expect_that(examples, "there are no examples")
        for song in [*examples, snow]:
            folder = self.work / "job" / song.stem
            done(ROOT / "tools/main-job.sh", folder, song, limit=300)
            # Both keep the encoding and the line ends of the file.
            expected = folder / "expected"
            done(COMMAND_LINE_TOOL, "transpose", "--up", "--sharps", "--output", expected, song)
            expect_same_file(song.name, expected, folder / "song.txt")
            expect_that((folder / "melvorin.png").stat().st_size > 0, "no screenshot")

        # By hand, so that program and tool are not wrong together.
        def lines(name):
            return (self.work / "job" / name / "song.txt").read_text(encoding="utf-8").split("\n")

        house = lines("House by the River")
        expect("House, line 6", "G#                         A#m7/G#", house[5])
        expect("House, line 7", "There is a house where the river bends wide,", house[6])
        expect("House, line 30", "D#7M       E°          A#/F        G7 ", house[29])
        expect("Снег, line 1", "A#m     F7/A ", lines("Снег")[0])
        expect("Снег, line 4", "Капель поёт.", lines("Снег")[3])

    def test_close_prompt(self):
        """Closing with unsaved changes asks; only a window that stays open remembers its paths."""
        song = self.work / "prompt.txt"
        song.write_bytes(b"C  G\r\n")
        before = snapshots()
        forget_paths()
        self.afterwards.callback(forget_paths)
        program = self.start(song)
        wait_title("prompt.txt - Melvorin")
        press("alt+F4", to="prompt.txt - Melvorin")
        program.expect_end()
        expect_that(not paths_known(), "a clean document wrote its paths on closing")

        program = self.start(song)
        wait_title("prompt.txt - Melvorin")
        enter("D ", to="prompt.txt - Melvorin")
        drive("wait-text", "D C G")
        expect_that(snapshots() != before, "no snapshot was found while the program ran")
        press("alt+F4", to="prompt.txt - Melvorin")
        expect("question", "Save changes to prompt.txt?", wait_box())
        expect_that(not paths_known(), "the paths were written before the answer")
        press("Escape", to=BOX)
        drive("wait-no-window", BOX)
        wait_title("prompt.txt - Melvorin")
        expect("text after Escape", "D C G", drive("text"))
        expect_that(paths_known(), "the paths were not written")
        expect("LastOpened", windows_path(self.work), remembered_path("LastOpened"))
        expect("LastOpenedEXT", "txt", remembered_path("LastOpenedEXT"))
        expect("Lastsaved", "", remembered_path("Lastsaved"))
        press("alt+F4", to="prompt.txt - Melvorin")
        wait_box()
        press("alt+n", to=BOX)
        program.expect_end()
        expect("snapshots left", before, snapshots())
        expect("file", b"C  G\r\n", song.read_bytes())

        # Yes saves, and that is the end.
        program = self.start(song)
        wait_title("prompt.txt - Melvorin")
        enter("D ", to="prompt.txt - Melvorin")
        drive("wait-text", "D C G")
        press("alt+F4", to="prompt.txt - Melvorin")
        wait_box()
        press("alt+y", to=BOX)
        program.expect_end()
        expect("file after Yes", b"D C G\r\n", song.read_bytes())
        expect("snapshots left after Yes", before, snapshots())

    def test_names(self):
        """Names as people have them, and one that is not there."""
        songs = self.work / "songs"
        (songs / "two  words").mkdir(parents=True)
        for name in NAMES:
            last = pathlib.Path(name).name
            (songs / name).write_text(f"C  G\r\n{last}\r\n", encoding="utf-8", newline="")
            program = self.start(songs / name)
            wait_title(f"{last} - Melvorin")
            expect(name, f"C  G\n{last}", drive("text"))
            drive("close")
            program.expect_end()

        # From the folder it is in, by its bare name; it is saved where it came from.
        program = self.start("my song.txt", cwd=songs)
        wait_title("my song.txt - Melvorin")
        enter("A ", to="my song.txt - Melvorin")
        drive("wait-text", "A C G\nmy song.txt")
        press("ctrl+s", "alt+F4", to="my song.txt - Melvorin")
        program.expect_end()
        first = (songs / "my song.txt").read_bytes().split(b"\r\n")[0]
        expect("saved by its bare name", b"A C G", first)

        program = self.start(songs / "Ω none.txt")
        message = wait_box()
        for part in (
            "Ω none.txt", "    Please verify that the correct path and file name are given.",
        ):
            expect_that(part in message, f"missing file: the message is {message}")
        press("Return", to=BOX)
        wait_title(EMPTY_TITLE)
        expect("text after a missing file", "", drive("text"))
        enter("Em", to=EMPTY_TITLE)
        drive("wait-text", "Em", "close")
        expect("question", "Save changes to Chord Notation?", wait_box())
        press("alt+n", to=BOX)
        program.expect_end()
