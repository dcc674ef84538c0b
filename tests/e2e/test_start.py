"""What the program finds beside itself when it starts."""

import pathlib
import re
import shutil
import struct

from program import (
    BOX, EMPTY_TITLE, MELVORIN, WIN_BUILD, Case, drive, enter, expect, expect_that, press, wait_box,
    wait_title, windows_path, wine,
)

MANIFEST = """\
<?xml version="1.0" encoding="UTF-8" standalone="yes"?>
<assembly xmlns="urn:schemas-microsoft-com:asm.v1" manifestVersion="1.0">
     <assemblyIdentity version="1.0.0.0" processorArchitecture="X86" name="Tessaly.WindowsXP.Example" type="win32" />
     <description>Windows XP Theme.</description>
     <dependency>
          <dependentAssembly>
               <assemblyIdentity type="win32" name="Microsoft.Windows.Common-Controls" version="6.0.0.0" processorArchitecture="X86" publicKeyToken="6595b64144ccf1df" language="*" />
          </dependentAssembly>
     </dependency>
</assembly>
"""

# A few more are looked for by Wine's libraries on ways of their own.
PLANTED = (
    "winmm.dll", "msftedit.dll", "riched20.dll", "usp10.dll", "msacm32.dll", "dwmapi.dll",
    "mciseq.dll", "hhctrl.ocx",
)


def is_64_bit(program):
    """By its header."""
    head = program.read_bytes()[:4096]
    return struct.unpack_from("<H", head, struct.unpack_from("<I", head, 0x3C)[0] + 4)[0] == 0x8664


def attributes(file):
    return wine("attrib", windows_path(file)).out.splitlines()[0][:11]


class Start(Case):
    def test_manifest(self):
        """The first start puts the theme manifest beside the program; the next ones find it."""
        folder = self.work / "program"
        folder.mkdir()
        melvorin = pathlib.Path(shutil.copy(MELVORIN, folder))
        manifest = folder / "Melvorin.exe.manifest"
        expected = MANIFEST.replace("\n", "\r\n")
        # A 64-bit build writes the manifest that it can start with.
        if is_64_bit(melvorin):
            expected = expected.replace('Architecture="X86"', 'Architecture="amd64"')
        program = self.start(program=melvorin)
        wait_title(EMPTY_TITLE)
        drive("close")
        program.expect_end()
        expect_that(manifest.exists(), "nothing was written")
        expect("content", expected.encode(), manifest.read_bytes())

        # As many of the attributes as this disk keeps under Wine, compared with a file that was
        # given all of them by hand.
        probe = folder / "probe"
        probe.touch()
        for attribute in ("+a", "+s", "+h", "+r"):  # Wine's attrib takes one at a time
            wine("attrib", attribute, windows_path(probe))
        shown = attributes(probe)
        expect_that("R" in shown, f"attrib shows no attributes: {shown}")
        expect("attributes", shown, attributes(manifest))

        before = manifest.stat()
        program = self.start(program=melvorin)
        wait_title(EMPTY_TITLE)
        enter("Am7/G", to=EMPTY_TITLE)
        drive("wait-text", "Am7/G", "menu", "Undo", "close")
        wait_box()
        press("alt+n", to=BOX)
        program.expect_end()
        expect("content after the second start", expected.encode(), manifest.read_bytes())
        after = manifest.stat()
        expect(
            "file after the second start",
            (before.st_ino, before.st_mtime_ns), (after.st_ino, after.st_mtime_ns),
        )

    def test_planted_libraries(self):
        """Libraries beside the program and in the current folder that are called like the system's
        own are not even looked at."""
        folder = self.work / "planted"
        folder.mkdir()
        melvorin = pathlib.Path(shutil.copy(MELVORIN, folder))
        shutil.copytree(WIN_BUILD / "Msnds", folder / "Msnds")
        for name in PLANTED:
            shutil.copy(WIN_BUILD / "planted.dll", folder / name)
        (folder / "song.txt").write_bytes(b"C  G\r\n")
        with open(self.work / "loaded", "w+b") as log:
            program = self.start(
                "song.txt", program=melvorin, cwd=folder, errors=log, debug="+loaddll"
            )
            wait_title("song.txt - Melvorin")
            # The tuner needs the library of sounds, at the latest when it closes.
            drive("post", "Melvorin Guitar Tuner", "wait-front", "Melvorin Guitar Tuner")
            press("Escape", to="Melvorin Guitar Tuner")
            drive("wait-no-window", "Melvorin Guitar Tuner", "close")
            program.expect_end()
            log.seek(0)
            loaded = log.read().decode("utf-8", "replace")
        for name in ("msftedit", "winmm"):
            expect_that(
                re.search(rf'Loaded L"C:.*system32.*{name}\.dll"', loaded, re.IGNORECASE),
                f"{name} was not loaded",
            )
        found = re.findall(r'Loaded L"Z:.*planted.*\\([^"\\]*)"', loaded, re.IGNORECASE)
        expect("loaded from beside the program", ["Melvorin.exe"], sorted(set(found)))
