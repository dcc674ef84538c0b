"""The installer that MELVORIN_SETUP names, whose content is the folder MELVORIN_CONTENT.

These cases run only by name. Each leaves the prefix as it found it.
"""

import difflib
import os
import pathlib
import re
import shutil
import time

from program import (
    BOX, COMMAND_LINE_TOOL, EMPTY_TITLE, PREFIX, Case, done, drive, enter, expect, expect_that,
    only_by_name, press, wait_box, wait_title, windows_path, wine,
)

CLASSES = r"HKCU\Software\Classes"
UNINSTALL_ENTRIES = r"HKCU\Software\Microsoft\Windows\CurrentVersion\Uninstall"
ENTRY = UNINSTALL_ENTRIES + r"\Melvorin"
DRIVE = PREFIX / "drive_c"

# What is ours, and what the case made; a program that has run leaves traces of Windows' own making.
OWN_TRACES = re.compile(r"melvorin|\.mlv|\.mvt|Other.Program", re.IGNORECASE)


def dos_path(path):
    return "C:\\" + str(path.relative_to(DRIVE)).replace("/", "\\")


# ---- The registry -------------------------------------------------------------------------------


def value(key, name=None):
    """A value in the registry, the key's own without a name; "none" where it is not."""
    told = wine("reg", "query", key, *(("/v", name) if name else ("/ve",)))
    if told.code != 0:
        return "none"
    found = re.search(r"^.*  REG_[A-Z]* *(.*)$", told.out, re.MULTILINE)
    return found[1] if found else ""


def value_of_extensions():
    return value(CLASSES + r"\.mlv"), value(CLASSES + r"\.mvt")


def set_value(key, text):
    expect_that(wine("reg", "add", key, "/ve", "/d", text, "/f").code == 0, f"reg add {key}")


def forget(key):
    wine("reg", "delete", key, "/f")


def registry_of_user(file):
    """As lines, but what is temporary."""
    told = wine("reg", "export", "HKCU", windows_path(file), "/y")
    expect_that(told.code == 0, f"reg export: {told.errors}")
    lines, kept = [], True
    for line in file.read_text(encoding="utf-16").splitlines():
        if line.startswith("["):
            kept = "Temporary System Parameters" not in line
        if kept:
            lines.append(line)
    return lines


# ---- Files --------------------------------------------------------------------------------------


def files_of_machine():
    """But what is temporary."""
    found = []
    for folder, folders, names in os.walk(DRIVE):
        if os.path.basename(folder) == "Temp":
            folders.clear()
        else:
            found += [os.path.join(folder, name) for name in folders + names]
    return sorted(found)


def content_of(folder):
    return {
        str(path.relative_to(folder)): path.read_bytes() if path.is_file() else None
        for path in folder.rglob("*")
    }


def expect_no_difference(what, before, after):
    difference = list(difflib.unified_diff(before, after, lineterm="", n=0))
    expect_that(not difference, f"{what}: " + "\n".join(difference[2:14]))


@only_by_name
class Installer(Case):
    def setUp(self):
        self.setup = os.environ.get("MELVORIN_SETUP")
        expect_that(self.setup, "MELVORIN_SETUP names no installer")
        self.content = pathlib.Path(os.environ["MELVORIN_CONTENT"])
        # Beside that of everybody, where a prefix has one.
        homes = sorted(folder.parents[1] for folder in DRIVE.glob("users/*/AppData/Local"))
        home = next(folder for folder in homes if folder.name != "Public")
        self.installed = home / "AppData/Local/Programs/Melvorin"
        self.desktop = home / "Desktop"
        programs = home / "AppData/Roaming/Microsoft/Windows/Start Menu/Programs"
        self.start_menu = programs / "Melvorin"

    def state(self):
        """Every file of the machine and the user's registry, but what is temporary."""
        return files_of_machine() + registry_of_user(self.work / "export.reg")

    def install(self, *switches):
        """Silently; the exit code."""
        return wine(self.setup, "/S", *switches, limit=120).code

    def uninstall(self, installed=None):
        """Silently. The uninstaller goes on in a copy of itself, so its end is when the entry is
        gone."""
        uninstaller = (installed or self.installed) / "Uninstall.exe"
        wine(uninstaller, "/S")
        for _ in range(300):
            if not uninstaller.exists() and wine("reg", "query", ENTRY).code != 0:
                return
            time.sleep(0.1)
        self.fail("the uninstaller does not end")

    def uninstaller_says(self):
        """The exit code of the uninstaller itself, which then is not deleted."""
        return wine(
            self.installed / "Uninstall.exe", "/S", f"_?={dos_path(self.installed)}"
        ).code

    def expect_installed(self, installed=None):
        """What was packed, and nothing but the uninstaller besides."""
        found = content_of(installed or self.installed)
        found.pop("Uninstall.exe", None)
        packed = content_of(self.content)
        names = sorted(packed.keys() | found.keys())
        others = [name for name in names if packed.get(name, 0) != found.get(name, 0)]
        expect("files that are not what was packed", [], others)

    def expect_shortcuts(self, when):
        """On the desktop, as it was chosen, and not in the Start menu."""
        link = self.desktop / "Melvorin.lnk"
        expect_that(link.exists(), f"no shortcut on the desktop {when}")
        expect_that(not self.start_menu.exists(), f"entries in the Start menu {when}")

    def test_setup_plain(self):
        """Without any switch: the program and the Start menu, nothing else; and gone again without
        a trace."""
        # What any other program's installer would have made.
        self.installed.parent.mkdir(parents=True, exist_ok=True)
        wine("reg", "add", UNINSTALL_ENTRIES, "/f")
        before = self.state()
        expect("exit code", 0, self.install())
        self.expect_installed()
        version = done(COMMAND_LINE_TOOL, "--version").split()[1]
        expect("version", version, value(ENTRY, "DisplayVersion"))
        expect("place", dos_path(self.installed), value(ENTRY, "InstallLocation"))
        size = sum(len(content or b"") for content in content_of(self.content).values())
        expect("size in KB", (size + 1023) // 1024, int(value(ENTRY, "EstimatedSize"), 0))
        links = ["Melvorin.lnk", "Uninstall Melvorin.lnk"]
        expect("Start menu", links, sorted(os.listdir(self.start_menu)))
        # Where a first song is offered to be saved.
        link = (self.start_menu / "Melvorin.lnk").read_bytes().replace(b"\0", b"")
        expect_that(rb"\Documents" in link, "no start in Documents")
        expect("desktop", [], [name for name in os.listdir(self.desktop) if "Melvorin" in name])
        expect("associations", ("none", "none"), value_of_extensions())
        self.uninstall()
        expect_no_difference("traces", before, self.state())

    def test_setup_associations(self):
        """Associations by a switch, kept by an update, and given back without harm to other
        programs."""
        set_value(CLASSES + r"\.mvt", "Other.Program")
        before = self.state()
        self.install("/ASSOC=1", "/DESKTOP=1", "/STARTMENU=0")
        expect("extensions", ("Melvorin.Song", "Melvorin.Song"), value_of_extensions())
        program = dos_path(self.installed / "Melvorin.exe")
        song = CLASSES + r"\Melvorin.Song"
        expect("command", f'"{program}" "%1"', value(song + r"\shell\open\command"))
        expect("icon", f"{program},0", value(song + r"\DefaultIcon"))
        self.expect_shortcuts("at first")
        self.open_with_installed()
        self.update()

        # Switched off, and on again.
        self.install("/ASSOC=0")
        expect("given back", ("none", "Other.Program"), value_of_extensions())
        self.install("/ASSOC=1")
        # Another program takes one: it keeps it.
        set_value(CLASSES + r"\.mlv", "New.Program")
        (self.installed / "mine.txt").write_text("mine")
        self.uninstall()
        expect(
            "extensions after uninstalling", ("New.Program", "Other.Program"), value_of_extensions()
        )
        expect("what stays", ["mine.txt"], os.listdir(self.installed))
        shutil.rmtree(self.installed)
        forget(CLASSES + r"\.mlv")
        own = [list(filter(OWN_TRACES.search, state)) for state in (before, self.state())]
        expect_no_difference("traces", *own)
        forget(CLASSES + r"\.mvt")

    def open_with_installed(self):
        """The command of the association; Wine's own shell does not look for the user's."""
        song = self.work / "my song.mlv"
        song.write_text("C  G")
        program = self.start(song, program=self.installed / "Melvorin.exe")
        wait_title("my song.mlv - Melvorin")
        drive("close")
        program.expect_end()

    def update(self):
        """A file of the former version goes, the user's own and his choices stay."""
        own_file = self.installed / "Fonts/mine.txt"
        settings = self.installed / "Melvorin.ini"
        own_file.write_text("mine\n")
        settings.write_text("[Tela]\n")
        (self.installed / "Dbase/MlvDbase.db").unlink()
        expect("exit code of the update", 0, self.install())
        mvt = CLASSES + r"\.mvt"
        expect("extension after the update", "Melvorin.Song", value(mvt))
        expect("the program before", "Other.Program", value(mvt, "Melvorin.before"))
        kept = own_file.read_text() + settings.read_text()
        expect("mine after the update", "mine\n[Tela]\n", kept)
        self.expect_shortcuts("after the update")
        settings.unlink()
        own_file.unlink()
        manifest = self.installed / "Melvorin.exe.manifest"
        aside = shutil.move(manifest, self.work)
        self.expect_installed()
        shutil.move(aside, manifest)

    def test_setup_running(self):
        """Over a running program nothing is installed and nothing removed."""
        self.install()
        program = self.start_under_wine(
            "start", "/wait", "/unix", self.start_menu / "Melvorin.lnk"
        )
        wait_title(EMPTY_TITLE)
        before = self.state()
        expect("exit code of the installer", 2, self.install("/ASSOC=1"))
        expect("exit code of the uninstaller", 2, self.uninstaller_says())
        expect_no_difference("state", before, self.state())
        enter("Em", to=EMPTY_TITLE)
        drive("wait-text", "Em", "close")
        wait_box()
        press("alt+n", to=BOX)
        # What started it has an exit code of its own, which is not the program's everywhere.
        program.expect_end(exit_code=None)
        # In two words, because the installer wants it without quotes.
        expect("exit code of the move", 0, self.install(r"/D=C:\My", r"music\Melvorin"))
        expect_that(not self.installed.exists(), f"left behind by a move: {self.installed}")
        moved = DRIVE / "My music/Melvorin"
        self.expect_installed(moved)
        self.uninstall(moved)
        expect_that(not moved.exists(), "the moved program stays")
        moved.parent.rmdir()
