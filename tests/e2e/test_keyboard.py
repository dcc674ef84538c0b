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
        enter(text, to=EMPTY_TITLE)
        self.typed += text
        drive("wait-text", self.typed)

    def new_line(self):
        press("Return", to=EMPTY_TITLE)
        self.typed += "\n"
        drive("wait-text", self.typed)


def open_file_menu(title):
    press("alt+i", to=title)
    drive("wait-menu")


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
        press("ctrl+s", to=EMPTY_TITLE)
        drive("wait-front", " Save As", "wait-field", "Chord Notation")
        press("Home", "shift+End", to=" Save As")
        enter(windows_path(folder / "My song.mvt"), to=" Save As")
        drive("wait-field", windows_path(folder / "My song.mvt"))
        press("Return", to=" Save As")
        wait_title_after_file_dialog("My song.mlv - Melvorin")
        expect("what was saved", [song], list(folder.iterdir()))
        expect("begins with", rb"{\rtf", song.read_bytes()[:5])
        press("alt+F4", to="My song.mlv - Melvorin")
        program.expect_end()

        program = self.start(song)
        wait_title("My song.mlv - Melvorin")
        expect("text after reopening", typist.typed, drive("text"))

        # The File menu: "Save As" is its fourth entry, "Exit" its last.
        open_file_menu("My song.mlv - Melvorin")
        press("Down", "Down", "Down", "Return", to="My song.mlv - Melvorin")
        drive("wait-front", " Save As", "wait-field", "My song.mlv")
        press("Escape", to=" Save As")
        wait_title_after_file_dialog("My song.mlv - Melvorin")
        open_file_menu("My song.mlv - Melvorin")
        press("Up", "Return", to="My song.mlv - Melvorin")
        program.expect_end()

    def test_by_keyboard(self):
        """A song edited without the mouse: find and replace, cut and paste, a menu, the recent
        files."""
        song = self.work / "keys.txt"
        song.write_bytes(b"C  G\r\nlove love\r\n")
        program = self.start(song)
        wait_title("keys.txt - Melvorin")
        press("ctrl+f", to="keys.txt - Melvorin")
        drive("wait-front", "Find and Replace")
        enter("love", to="Find and Replace")
        press("Tab", to="Find and Replace")
        enter("light", to="Find and Replace")
        press("Tab", "Tab", "Tab", "Tab", "Tab", "Tab", "space", to="Find and Replace")
        drive("wait-front", "Melvorin")
        replaced = drive("message").splitlines()[-1]
        expect("what was replaced", "  and 2 items were replaced.  ", replaced)
        press("Return", to="Melvorin")
        drive("wait-text", "C  G\nlight light")
        wait_title("keys.txt - Melvorin")
        press("ctrl+End", "ctrl+shift+Left", "ctrl+x", to="keys.txt - Melvorin")
        drive("wait-text", "C  G\nlight ")
        press("ctrl+Home", "ctrl+v", to="keys.txt - Melvorin")
        drive("wait-text", "lightC G\nlight ")
        press("ctrl+z", to="keys.txt - Melvorin")
        drive("wait-text", "C  G\nlight ")
        press("ctrl+a", "alt", to="keys.txt - Melvorin")
        drive("wait-menu")
        press("Right", "Right", "Down", "Up", "Up", "Return", to="keys.txt - Melvorin")
        press("ctrl+End", to="keys.txt - Melvorin")
        drive("wait-text", "C  G\nLIGHT ")
        press("ctrl+s", "alt+F4", to="keys.txt - Melvorin")
        program.expect_end()
        expect("saved", b"LIGHT ", song.read_bytes().split(b"\r\n")[1])
        self.open_again(song)

    def open_again(self, song):
        program = self.start()
        wait_title(EMPTY_TITLE)
        press("ctrl+o", to=EMPTY_TITLE)
        enter(windows_path(song), to=" Open")
        drive("wait-field", windows_path(song))
        press("Return", to=" Open")
        drive("wait-no-window", " Open", "wait", "keys.txt - Melvorin", "close")
        program.expect_end()

        program = self.start()
        wait_title(EMPTY_TITLE)
        open_file_menu(EMPTY_TITLE)
        press(*["Down"] * 9, "Right", "Return", to=EMPTY_TITLE)
        wait_title("keys.txt - Melvorin")
        drive("wait-text", "C  G\nLIGHT ", "close")
        program.expect_end()
