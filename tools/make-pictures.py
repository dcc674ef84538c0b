#!/usr/bin/python3 -Xutf8
"""Take the pictures of the help anew, of every window of the program as it is built now.

    tools/make-pictures.py [NAME...]

Writes to data/help/pictures. With names only those are kept; the walk is the same. The program
stands in a prefix of this script alone, so that no picture shows another path.
"""

import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
import time

ROOT = pathlib.Path(__file__).resolve().parent.parent
PREFIX = ROOT / "build/wine-pictures"
# Set where the display and the prefix are those of this script.
READY = "MELVORIN_PICTURES"

if os.environ.get(READY):
    sys.path.insert(0, str(ROOT / "tests/e2e"))
    from program import (
        BOX, DRIVER, WIN_BUILD, WINE, WINE_SERVER, Program, click, drive, enter, picture_of_screen,
        press, ran, wait_title,
    )

PICTURES = ROOT / "data/help/pictures"
SHIPPED = (
    "Melvorin.exe", "Melvorin.chm", "Dbase", "Fonts", "Msnds", "Song", "Strings", "Examples",
    "Help",
)
SCREEN = "1024x700+0+0"
# The song and the menus over it.
SONG_PART = "620x330+0+0"
# The first lines of the song.
LINES_PART = "420x150+0+0"

# A song as it is found on the web.
WEB_SONG = """\
{title: The Lantern}
[Verse 1]
      Am            C/G
Over the hill the lights go out,
[F]Somebody [G]sings us [Am]home.
e|--0--1--3--|
"""

LEFT_OVER_SONG = """\
The Lantern

Am     G   | F   E7 |
Over the hill the lights go out,
F      G      Am
somebody sings us home.
Cmaj7  G/B    Am
Nobody walks the village lane,
[F]nobody [G7sus4]climbs the mill.
"""


def start(*arguments):
    return Program(r"C:\Melvorin\Melvorin.exe", *arguments, limit=600)


def title_of(song):
    return f"{song} - Melvorin"


def wait_song(name):
    wait_title(title_of(name))


def open_menu(title, menus, *keys):
    """The menu of the main window this far to the right, and keys in it."""
    press("alt", to=title)
    drive("wait-menu")
    press(*["Right"] * menus, "Down", *keys, to=title, delay=80)


def convert(*arguments):
    subprocess.run(["convert", *map(str, arguments)], check=True)


def differing_pixels(one, other):
    told = ran("compare", "-metric", "AE", one, other, "null:").errors
    return float(told) if re.fullmatch(r"[0-9.e+]+", told) else float("inf")


class Album:
    """The pictures that are kept; `wanted` names them, or all where it is empty."""

    def __init__(self, work, wanted):
        self.work, self.wanted = work, wanted

    def wants(self, name):
        return not self.wanted or name in self.wanted

    def still(self, file, part):
        """That part of the screen, when nothing in it has moved for a moment (the cursor may
        blink)."""
        former = self.work / "former.png"
        former.unlink(missing_ok=True)
        for _ in range(40):
            picture_of_screen(file, "-crop", part, "+repage")
            if former.exists() and differing_pixels(former, file) <= 60:
                return
            shutil.copy(file, former)
            time.sleep(0.2)

    def keep(self, name, part=SCREEN):
        if self.wants(name):
            shot = self.work / "shot.png"
            self.still(shot, part)
            target = f"PNG8:{PICTURES / name}.png"
            convert(shot, "-strip", "+dither", "-colors", "64", target)

    def keep_window(self, name):
        """The window in front."""
        self.keep(name, drive("place"))

    def frame(self, frames, hundredths, part=SONG_PART):
        """One more of a moving picture, and how long it is shown."""
        file = self.work / f"frame-{len(frames):03}.png"
        self.still(file, part)
        frames.append((hundredths, file))

    def keep_moving(self, name, frames, *options):
        if self.wants(name):
            shown = [part for delay, file in frames for part in ("-delay", delay, file)]
            small = ("+dither", "-colors", "32", "-layers", "optimize", "-loop", "0")
            convert(*shown, *options, *small, PICTURES / f"{name}.gif")


# ---- The walk -----------------------------------------------------------------------------------


def key_change(album, song):
    """A moving picture of the song and the menu."""
    frames = []
    album.frame(frames, 150)
    open_menu(title_of(song), 4, "Down", "Down", "Down", "Down", "Right", "Down")
    album.frame(frames, 120)
    press("Return", to=title_of(song))
    wait_song(song)
    album.frame(frames, 180)
    drive("menu", "Go Up a Half Step")
    album.frame(frames, 180)
    album.keep_moving("key-change", frames)
    drive("menu", "Undo", "menu", "Undo")


def following(album):
    """A moving picture of a line that is written, gets its chords and is written anew."""
    program = start()
    title = title_of("Chord Notation")
    wait_song("Chord Notation")
    frames = []

    def shown(hundredths, *keys, typed=""):
        for key in keys:
            press(key, to=title, delay=80)
        for letter in typed:
            enter(letter, to=title)
            album.frame(frames, 25, LINES_PART)
        album.frame(frames, hundredths, LINES_PART)

    enter("Over the hills and far away", to=title)
    shown(120)
    # Up to the place of each chord, and back to its word.
    press("Home", to=title)
    for words, chord in ((0, "Am"), (2, "G"), (2, "C")):
        shown(60, *["ctrl+Right"] * words, "ctrl+Return")
        shown(70, typed=chord)
        shown(40, "Return")
    shown(80, "Home", "ctrl+Right", "ctrl+Right")
    shown(120, typed="misty ")
    shown(120, "ctrl+Right")
    shown(180, "Return")
    shown(180, "BackSpace")
    album.keep_moving("following", frames)
    drive("close", "wait-front", BOX)
    press("n", to=BOX)
    program.expect_end()


def left_over(album):
    """A song with lines that a key change passes over, and the line that tells so."""
    song = "The Lantern.txt"
    (PREFIX / "drive_c/Songs" / song).write_text(LEFT_OVER_SONG, encoding="utf-8")
    program = start("C:\\Songs\\" + song)
    wait_song(song)
    drive("menu", "Go Up a Half Step")
    # The lines of the song and, without the empty page between, the foot of the window.
    top, foot = (album.work / name for name in ("top.png", "foot.png"))
    album.still(top, "720x260+0+0")
    album.still(foot, "720x36+0+664")
    if album.wants("status-line"):
        both = ("-append", "-strip", "+dither", "-colors", "64")
        convert(top, foot, *both, f"PNG8:{PICTURES / 'status-line.png'}")
    drive("close", "wait-front", BOX)
    press("n", to=BOX)
    program.expect_end()


def windows_of_song(album, song):
    for name, command, title, *steps in (
        ("find", "Find and Replace", "Find and Replace"),
        ("font", "Font and Colors", "Fonte"),
        ("tablature", "Insert Tablature", "Insert Tablature", "click", "103"),
        ("to-key", "To Another Key...", "To Another Key"),
        ("preview", "Print Preview", "Print Preview"),
        ("tuner", "Melvorin Guitar Tuner", "Melvorin Guitar Tuner"),
        ("about", "About Melvorin", "About Melvorin"),
    ):
        drive("post", command, "wait-front", title, *steps)
        album.keep_window(name)
        press("Escape", to=title)
        wait_song(song)


def dictionary(album, song):
    drive("post", "Dictionary")
    drive("wait-field", "")
    enter("Am7", to=title_of(song))
    press("Return", to=title_of(song))
    album.keep("main-window")
    # "Expand Window"; away from it, no tip comes up.
    click(791, 644)
    ran("xdotool", "mousemove", "400", "690")
    time.sleep(1)
    album.keep("dictionary")


def first_song(album):
    song = "Abc Song.mvt"
    program = start("C:\\Songs\\" + song)
    wait_song(song)
    key_change(album, song)
    windows_of_song(album, song)
    dictionary(album, song)
    # A change that nobody saves, and the end of the program without a warning.
    drive("menu", "Go Up a Half Step")
    ran(WINE_SERVER, "-k", limit=30)
    program.kill()


def recovery_and_creator(album):
    program = start()
    drive("wait-front", BOX)
    album.keep_window("recovery")
    press("n", to=BOX)
    wait_song("Chord Notation")
    # The song on its way to a chart.
    creator = " Create Chord Notation"
    drive("post", "Create Chord Notation", "wait-front", creator)
    for line in WEB_SONG.splitlines():
        enter(line, to=creator)
        press("Return", to=creator)
    press("ctrl+Home", to=creator)
    album.keep_window("creator")
    press("Escape", to=creator)
    wait_song("Chord Notation")
    drive("close")
    program.expect_end()


def rows_of_page():
    """Steps that put the jumps of the page about this song into the panel's lists and boxes."""
    page = (ROOT / "data/help/example-2.md").read_text(encoding="utf-8")
    rows = re.findall(r"^\| [0-9][^|]*\| *(\d+)[^|]*\| *(\d+)[^|]*\| *(\d+)", page, re.MULTILINE)
    for number, (start_line, end_line, times) in enumerate(rows, 1):
        yield from ("click", f"{300 + number}", "choose", f"{199 + 2 * number}={start_line}")
        yield from ("choose", f"{200 + 2 * number}={end_line}", "choose", f"{210 + number}={times}")


def on_stage(album):
    song = "Greensleeves.mvt"
    program = start("C:\\Songs\\" + song)
    wait_song(song)
    drive("post", "Full Screen", "wait-front", "Full Screen")
    drive("choose", "101=4", *rows_of_page())
    album.keep_window("panel")
    album.keep("on-stage")
    pedals = "Pedals and Keys"
    drive("click", "128", "wait-front", pedals)
    for row, key in enumerate(("Return", "Right", "", "Left", "F9", "F9")):
        if key:
            press("Home", *["Down"] * row, "alt+l", key, to=pedals)
    album.keep_window("pedals")
    press("Escape", to=pedals)
    drive("wait-front", "Full Screen")
    # Larger letters, and a line each second: the first verse, its jump to the chorus, and, without
    # the seconds in which the chorus stands still, the jump back to the second verse.
    press(*["ctrl+plus"] * 5, to="Full Screen", delay=80)
    drive("wait-front", "Full Screen", "choose", "101=1", "click", "108", "wait-front", " 0:00 ")
    frames = []
    with subprocess.Popen(
        ["timeout", "200", WINE, DRIVER, "film"], stdout=subprocess.PIPE, stderr=subprocess.DEVNULL
    ) as film:
        for second in range(29):
            film.stdout.readline()
            file = album.work / f"stage-{second}.png"
            picture_of_screen(file)
            if not 17 <= second <= 23:
                frames.append((70, file))
        film.terminate()
    album.keep_moving("on-stage", frames, "-resize", "60%")
    program.kill()


def main(names):
    if not os.environ.get(READY):
        shutil.rmtree(PREFIX, ignore_errors=True)
        # The scripts about display and prefix are to see the same prefix.
        os.environ.update({READY: "1", "MELVORIN_WINEPREFIX": str(PREFIX)})
        display = str(ROOT / "tools/with-display.sh")
        os.execv(display, [display, "--own", "--size", "1024x700", __file__, *names])
    subprocess.run([ROOT / "tools/wine-prefix.sh"], check=True)
    home = PREFIX / "drive_c/Melvorin"
    home.mkdir()
    for name in SHIPPED:
        subprocess.run(["cp", "-r", WIN_BUILD / name, home], check=True)
    shutil.copytree(home / "Examples", PREFIX / "drive_c/Songs")
    with tempfile.TemporaryDirectory() as work:
        album = Album(pathlib.Path(work), names)
        following(album)
        left_over(album)
        first_song(album)
        recovery_and_creator(album)
        on_stage(album)


if __name__ == "__main__":
    main(sys.argv[1:])
