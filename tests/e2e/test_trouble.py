"""What goes wrong around the program: disks, folders, and its own sudden end."""

import os
import pathlib
import shutil
import unittest

from program import (
    BOX, EMPTY_TITLE, MELVORIN, WIN_BUILD, Case, drive, enter, expect, expect_same_file, expect_that,
    mounted, only_by_name, press, snapshots, wait_box, wait_boxes, wait_title, windows_path, wine,
)

FAULTS = WIN_BUILD / "melvorin-faults.exe"
LINES = ["C  G la la"] * 500


def let_faults(*arguments):
    """What melvorin-faults tells (see Faults.cpp), which must find nothing."""
    result = wine(FAULTS, *arguments, limit=3000)
    told = result.errors + result.out
    expect_that(result.code == 0, "\n".join(told.splitlines()[-3:]) or f"exit code {result.code}")
    return told


class Trouble(Case):
    def test_full_disk(self):
        """A disk that is full: the file stays whole, the song stays open, and it can be saved
        later."""
        disk = self.work / "disk"
        disk.mkdir()
        self.afterwards.enter_context(mounted(disk, "size=256k"))
        plain = "".join(line + "\r\n" for line in LINES)
        for name, content in (
            ("song.txt", plain),
            ("song.rtf", r"{\rtf1\ansi %s}" % r"\par ".join(LINES)),
        ):
            song = disk / name
            song.write_text(content, encoding="ascii", newline="")
            self.work_on_full_disk(song)
            song.unlink()

    def work_on_full_disk(self, song):
        title = f"{song.name} - Melvorin"
        changed = "Am " + "\n".join(LINES)
        before = pathlib.Path(shutil.copy(song, self.work / "before"))
        filler = song.parent / "filler"
        try:
            filler.write_bytes(bytes(1 << 20))
        except OSError:
            pass  # that is what it is for
        program = self.start(song)
        wait_title(title)
        enter("Am ", to=title)
        drive("wait-text", changed)
        press("ctrl+s", to=title)
        message = wait_box()
        expect_that(
            "The disk is full." in message.partition(song.name)[2],
            f"{song.name}: the message is {message}",
        )
        press("Return", to=BOX)
        drive("wait-no-window", BOX)
        expect_same_file(song.name, before, song)
        expect("files on the disk", ["filler", song.name], sorted(os.listdir(song.parent)))
        wait_title(title)
        drive("wait-text", changed)
        press("alt+F4", to=title)
        expect("question", f"Save changes to {song.name}?", wait_box())
        press("Escape", to=BOX)
        drive("wait-no-window", BOX)
        wait_title(title)

        filler.unlink()
        press("ctrl+s", "alt+F4", to=title)
        program.expect_end()
        program = self.start(song)
        wait_title(title)
        drive("wait-text", changed, "close")
        program.expect_end()

    def test_kills(self):
        """Killed while it works: the file is whole, and the next start has the last change. More
        often with MELVORIN_KILLS."""
        kills = os.environ.get("MELVORIN_KILLS")
        told = let_faults(
            "kills", windows_path(MELVORIN), windows_path(self.work / "song.mvt"),
            kills or "3", os.environ.get("MELVORIN_SEED") or "1",
        )
        if kills:
            print(told, end="")

    @only_by_name
    def test_snapshots_run_out(self):
        """As many changes as its history counts, and more; takes minutes."""
        print(let_faults("snapshots", windows_path(MELVORIN)), end="")

    def folder_of_snapshots(self):
        program = self.start()
        wait_title(EMPTY_TITLE)
        found = snapshots()
        drive("close")
        program.expect_end()
        expect_that(found, "a running program has no snapshot")
        return pathlib.Path(found[0]).parent

    def work_without_copies(self, trouble):
        song = self.work / "song.txt"
        song.write_bytes(b"C  G\r\n")
        program = self.start(song)
        try:
            # One for the empty document, one for the copies.
            wait_boxes("Unable to ", ends="!")
            press("Return", to=BOX)
            wait_boxes("Melvorin cannot keep a copy of this change for Undo.")
            press("Return", to=BOX)
            wait_title("song.txt - Melvorin")
            enter("Am ", to="song.txt - Melvorin")
            drive("wait-text", "Am C G")
            press("ctrl+s", "alt+F4", to="song.txt - Melvorin")
            program.expect_end()
            expect(f"file, {trouble}", b"Am C G\r\n", song.read_bytes())
        finally:
            program.kill()

    def test_temporary_folder(self):
        """Without a place for snapshots the program says so, once, and the song can still be
        written."""
        folder = self.folder_of_snapshots()
        away = folder.with_name(folder.name + ".away")
        folder.rename(away)
        try:
            self.work_without_copies("missing")
        finally:
            shutil.rmtree(folder, ignore_errors=True)
            away.rename(folder)
        try:
            with mounted(folder, "ro"):
                self.work_without_copies("read-only")
        except unittest.SkipTest as skipped:
            print(f"skipped temporary_folder, read-only: {skipped}")
