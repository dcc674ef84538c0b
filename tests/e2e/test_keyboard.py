"""Songs written and changed by keyboard alone."""

from program import (
    EMPTY_TITLE, Case, done, drive, enter, expect, press, wait_title,
    wait_title_after_file_dialog, windows_path,
)


class Typist:
    """Knows what the editor must hold by now."""

    def __init__(self):
        self.typed = ""

    def enter_on(self, layout, text):
        """Goes on typing on a keyboard of this layout: a letter that a keyboard does not have would
        get a key only while it is down, and a busy program may look too late."""
        done("setxkbmap", layout)
        enter(text)
        self.typed += text
        drive("wait-text", self.typed)

    def new_line(self):
        press("Return")
        self.typed += "\n"
        drive("wait-text", self.typed)


class Keyboard(Case):
    def test_typed_song(self):
        """A song typed by hand, saved, and opened again."""
        folder = self.work / "typed"
        folder.mkdir()
        song = folder / "My song.mlv"
        program = self.start()
        wait_title(EMPTY_TITLE)
        typist = Typist()
        typist.enter_on("us", "C#m7     F#7/A#   G7(b9)")
        typist.new_line()
        typist.enter_on("ch", "Café à l'été, über Land ")
        typist.enter_on("us", r"{\b #1}")
        typist.new_line()
        typist.new_line()
        typist.enter_on("us", "Dm  E/G#")
        press("ctrl+s")
        drive("wait-front", " Save As", "wait-field", "Chord Notation")
        press("Home", "shift+End")
        enter(windows_path(folder / "My song.mvt"))
        drive("wait-field", windows_path(folder / "My song.mvt"))
        press("Return")
        wait_title_after_file_dialog("My song.mlv - Melvorin")
        expect("what was saved", [song], list(folder.iterdir()))
        expect("begins with", rb"{\rtf", song.read_bytes()[:5])
        press("alt+F4")
        program.expect_end()

        program = self.start(song)
        wait_title("My song.mlv - Melvorin")
        expect("text after reopening", typist.typed, drive("text"))

        # The File menu: "Save As" is its fourth entry, "Exit" its last.
        press("alt+i")
        drive("wait-menu")
        press("Down", "Down", "Down", "Return")
        drive("wait-front", " Save As", "wait-field", "My song.mlv")
        press("Escape")
        wait_title_after_file_dialog("My song.mlv - Melvorin")
        press("alt+i")
        drive("wait-menu")
        press("Up", "Return")
        program.expect_end()

    def test_by_keyboard(self):
        """A song edited without the mouse: find and replace, cut and paste, a menu, the recent
        files."""
        song = self.work / "keys.txt"
        song.write_bytes(b"C  G\r\nlove love\r\n")
        program = self.start(song)
        wait_title("keys.txt - Melvorin")
        press("ctrl+f")
        drive("wait-front", "Find and Replace")
        enter("love")
        press("Tab")
        enter("light")
        press("Tab", "Tab", "Tab", "Tab", "Tab", "space")
        drive("wait-front", "Melvorin")
        replaced = drive("message").splitlines()[-1]
        expect("what was replaced", "  and 2 items were replaced.  ", replaced)
        press("Return")
        drive("wait-text", "C  G\nlight light")
        wait_title("keys.txt - Melvorin")
        press("ctrl+End", "ctrl+shift+Left", "ctrl+x")
        drive("wait-text", "C  G\nlight ")
        press("ctrl+Home", "ctrl+v")
        drive("wait-text", "lightC  G\nlight ")
        press("ctrl+z")
        drive("wait-text", "C  G\nlight ")
        press("ctrl+a", "alt", "Right", "Right", "Down", "Up", "Up", "Return")
        press("ctrl+End")
        drive("wait-text", "C  G\nLIGHT ")
        press("ctrl+s", "alt+F4")
        program.expect_end()
        expect("saved", b"LIGHT ", song.read_bytes().split(b"\r\n")[1])
        self.open_again(song)

    def open_again(self, song):
        program = self.start()
        wait_title(EMPTY_TITLE)
        press("ctrl+o")
        drive("wait-front", " Open")
        enter(windows_path(song))
        drive("wait-field", windows_path(song))
        press("Return")
        drive("wait-no-window", " Open", "wait", "keys.txt - Melvorin", "close")
        program.expect_end()

        program = self.start()
        wait_title(EMPTY_TITLE)
        press("alt+i")
        drive("wait-menu")
        press("Down", "Down", "Down", "Down", "Right", "Return")
        wait_title("keys.txt - Melvorin")
        drive("wait-text", "C  G\nLIGHT ", "close")
        program.expect_end()
