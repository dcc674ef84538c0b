"""The real program from outside: start it under Wine, take it step by step, wait for what it does.

Needs a private display and the Wine prefix (tools/with-display.sh --own, tools/wine-prefix.sh). A
step that cannot be done, or finds something else than expected, raises Failed.
"""

import contextlib
import os
import pathlib
import signal
import subprocess
import tempfile
import time
import unittest

ROOT = pathlib.Path(__file__).resolve().parents[2]


def wine_environment():
    """What tools/wine-env.sh sets, which is the one place that knows how Wine is run here."""
    script = '. "$0" && export wine wineserver && env -0'
    told = subprocess.run(
        ["bash", "-c", script, ROOT / "tools/wine-env.sh"], stdout=subprocess.PIPE, check=True
    )
    return dict(line.split("=", 1) for line in os.fsdecode(told.stdout).split("\0") if "=" in line)


os.environ.update(wine_environment())
# Names in any script on command lines and disk.
os.environ["LC_ALL"] = "C.UTF-8"
WINE = os.environ["wine"]
WINE_SERVER = os.environ["wineserver"]
PREFIX = pathlib.Path(os.environ["WINEPREFIX"])
# Other builds, or the installed program.
WIN_BUILD = pathlib.Path(os.environ.get("MELVORIN_WIN_BUILD") or ROOT / "build/win-x64")
NATIVE_BUILD = pathlib.Path(os.environ.get("MELVORIN_NATIVE_BUILD") or ROOT / "build/native")
MELVORIN = WIN_BUILD / "Melvorin.exe"
DRIVER = WIN_BUILD / "melvorin-driver.exe"
COMMAND_LINE_TOOL = NATIVE_BUILD / "melvorin-cli"

EMPTY_TITLE = "Chord Notation - Melvorin"
BOX = " Melvorin"  # the title of every message box
PATHS_KEY = r"HKCU\Software\Melvorin\Paths"


class Failed(AssertionError):
    """What went otherwise than expected, in a sentence."""


def expect(what, expected, found):
    if expected != found:
        raise Failed(f'{what}: expected "{expected}", found "{found}"')


def expect_that(condition, complaint):
    if not condition:
        raise Failed(complaint)


def expect_same_file(what, expected, found):
    """Byte for byte."""
    one, other = expected.read_bytes(), found.read_bytes()
    if one != other:
        at = len(os.path.commonprefix([one, other]))
        raise Failed(
            f"{what}: {expected} and {found} differ at byte {at}: "
            f"{one[at : at + 20]} and {other[at : at + 20]}"
        )


# ---- Processes ----------------------------------------------------------------------------------


class Result:
    """A process that has ended: its exit code, and what it wrote as text."""

    def __init__(self, code, out, errors):
        self.code, self.out, self.errors = code, out, errors


def ran(*command, limit=60, **options):
    """Runs a command to its end; the options are those of subprocess. What takes longer than the
    limit (s) is killed and fails. Files take the output, because a pipe lasts as long as the last
    of Wine's own processes that holds it."""
    with tempfile.TemporaryFile() as out, tempfile.TemporaryFile() as errors:
        try:
            code = subprocess.run(
                command, stdin=subprocess.DEVNULL, stdout=out, stderr=errors, timeout=limit,
                **options,
            ).returncode
        except subprocess.TimeoutExpired:
            raise Failed(f"{command} takes longer than {limit} s") from None
        texts = []
        for file in (out, errors):
            file.seek(0)
            texts.append(file.read().decode("utf-8", "replace").replace("\r", ""))
    return Result(code, *texts)


def done(*command, limit=60):
    """The output of a command that must succeed."""
    result = ran(*command, limit=limit)
    expect_that(
        result.code == 0, f"{command} ended with {result.code}: {result.errors or result.out}"
    )
    return result.out


def wine(*arguments, limit=60):
    """Runs a Windows program to its end."""
    return ran(WINE, *arguments, limit=limit)


def windows_path(path):
    return "Z:" + os.path.abspath(path).replace("/", "\\")


class Program:
    """A program under Wine, from its start to its end."""

    def __init__(self, *command, limit=300, cwd=None, errors=subprocess.DEVNULL, debug=None):
        environment = {**os.environ, **({"WINEDEBUG": debug} if debug else {})}
        self.process = subprocess.Popen(
            ["timeout", str(limit), WINE, *command],
            cwd=cwd, env=environment, stdin=subprocess.DEVNULL, stderr=errors,
        )

    def expect_end(self, exit_code=0):
        """Until it has come to its end by itself, and well; None where the code is another's."""
        drive("wait-gone")
        try:
            code = self.process.wait(60)
            expect("exit code", exit_code, code if exit_code is not None else None)
        except subprocess.TimeoutExpired:
            raise Failed("the window is gone, but the program goes on") from None

    def kill(self):
        if self.process.poll() is None:
            self.process.terminate()  # timeout hands it on
            with contextlib.suppress(subprocess.TimeoutExpired):
                self.process.wait(20)
            if self.process.poll() is None:
                self.process.kill()
                self.process.wait()


# ---- Steps --------------------------------------------------------------------------------------


def drive(*steps):
    """Steps of melvorin-driver (see Driver.cpp); what they print, without its last line end."""
    result = wine(DRIVER, *steps, limit=120)
    expect_that(
        result.code == 0, result.errors.strip() or f"the driver ended with {result.code}: {steps}"
    )
    return result.out.removesuffix("\n")


def reach(title):
    """Until keys come to the window of this title. A Shift that it has seen is still held then."""
    with tempfile.TemporaryFile() as errors, subprocess.Popen(
        ["timeout", "120", WINE, DRIVER, "reach", title], stdout=subprocess.PIPE, stderr=errors
    ) as driver:
        for word in map(bytes.strip, driver.stdout):
            if word == b"held":
                return
            done("xdotool", "keydown" if word == b"press" else "keyup", "Shift_L")
        done("xdotool", "keyup", "Shift_L")
        errors.seek(0)
        raise Failed(errors.read().decode() or f'the driver ended before it reached "{title}"')


def press(*keys, to, delay=60):
    """Keys to the window of this title, once it has the keyboard. Menus and dialogs take one key at
    a time; nobody types faster than this (ms)."""
    reach(to)
    done("xdotool", "keyup", "Shift_L", "key", "--delay", str(delay), *keys)


def enter(text, to, delay=30):
    """As press, for a text."""
    reach(to)
    done("xdotool", "keyup", "Shift_L", "type", "--delay", str(delay), text)


def click(left, top):
    done("xdotool", "mousemove", str(left), str(top), "click", "1")


def picture_of_screen(file, *options):
    done("import", "-window", "root", *options, file, limit=30)


def wait_title(title):
    """Until the main window is in front under this title."""
    drive("wait", title, "wait-front", title)


def wait_box():
    """Until a box of the program's is in front; its text."""
    return drive("wait-front", BOX, "message")


def wait_boxes(begins, ends=""):
    """Until a box whose text begins and ends like that is in front, behind others maybe."""
    for _ in range(100):
        shown = wait_box()
        if shown.startswith(begins) and shown.endswith(ends):
            return
        time.sleep(0.1)
    raise Failed(f"the message is {shown}")


def wait_title_after_file_dialog(title):
    """Without a window manager a closing file dialog may leave the keyboard with nobody, whatever
    program it belongs to; a click gets it back."""
    drive("wait-no-window", " Save As", "wait", title)
    for _ in range(30):
        click(640, 700)
        if drive("front", title) == "yes":
            return
    raise Failed(f'"{title}" does not get the keyboard')


# ---- What the program keeps ---------------------------------------------------------------------


def snapshots():
    return sorted(
        os.path.join(folder, name)
        for folder, _, names in os.walk(PREFIX / "drive_c")
        for name in names
        if name.lower().startswith("bb") and name.lower().endswith(".tmp")
    )


def remembered_path(name):
    """What the settings store holds under this name; None where there is nothing."""
    for line in wine("reg", "query", PATHS_KEY, "/v", name).out.splitlines():
        words = line.split(maxsplit=2)
        if words[:2] == [name, "REG_SZ"]:
            return "".join(words[2:])
    return None


def forget_paths():
    wine("reg", "delete", PATHS_KEY, "/f")


def paths_known():
    return wine("reg", "query", PATHS_KEY).code == 0


# ---- Cases --------------------------------------------------------------------------------------


def only_by_name(case):
    """Marks a case that runs only where its name is given."""
    case.only_by_name = True
    return case


@contextlib.contextmanager
def mounted(folder, *options):
    """A file system in memory at this folder; skips the case where that cannot be."""
    try:
        done("mount", "-t", "tmpfs", "-o", ",".join(options), "tmpfs", folder)
    except (Failed, OSError):
        raise unittest.SkipTest("nothing can be mounted here (needs root)") from None
    try:
        yield folder
    finally:
        ran("umount", folder)


class Case(unittest.TestCase):
    """A whole run of the program. `work` is a folder of its own; what the case starts ends with
    it."""

    def run(self, result=None):
        # Whatever ends the case, an interrupt too.
        with contextlib.ExitStack() as self.afterwards:
            self.work = pathlib.Path(
                self.afterwards.enter_context(
                    tempfile.TemporaryDirectory(ignore_cleanup_errors=True)
                )
            )
            # What a case that failed left is not offered to the next one.
            for snapshot in snapshots():
                os.unlink(snapshot)
            return super().run(result)

    def start_under_wine(self, *command, **options):
        program = Program(*command, **options)
        self.afterwards.callback(program.kill)
        return program

    def start(self, *arguments, program=MELVORIN, **options):
        """The program, from now in the background; arguments that are paths become Windows' own."""
        return self.start_under_wine(
            program,
            *(windows_path(a) if isinstance(a, pathlib.Path) else a for a in arguments),
            **options,
        )


def end_like_an_interrupt():
    """Lets a run that is told to end put away what it made, a mounted disk above all."""
    signal.signal(signal.SIGTERM, signal.default_int_handler)
