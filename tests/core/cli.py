"""Runs the built batch tool on real files: cli.py PATH-OF-MELVORIN-CLI"""

import os
import pathlib
import re
import resource
import stat
import subprocess
import sys
import tempfile
import unittest

MANUAL = pathlib.Path(__file__).resolve().parents[2] / "docs/melvorin-cli.1"
SONG = "C   G\nOld folks\n"
UP = ("transpose", "--up", "--sharps")
RAISED = "C#  G#\nOld folks\n"


class Cli(unittest.TestCase):
    """Each case works in a folder of its own that holds song.txt."""

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.addCleanup(os.chdir, os.getcwd())
        os.chdir(folder.name)
        self.write("song.txt", SONG)

    def write(self, name, text):
        data = text.encode() if isinstance(text, str) else text
        pathlib.Path(os.fsdecode(name)).write_bytes(data)

    def read(self, name):
        return pathlib.Path(os.fsdecode(name)).read_bytes().decode()

    def cli(self, *arguments, data=None, **options):
        """The exit code, with the output in `out` and the messages in `errors`, as text."""
        options = {"stdout": subprocess.PIPE, "stderr": subprocess.PIPE, **options}
        if data is None:
            options["stdin"] = subprocess.DEVNULL
        result = subprocess.run([TOOL, *arguments], input=data, timeout=60, **options)
        self.raw = result.stdout
        self.out = (result.stdout or b"").decode("utf-8", "surrogateescape")
        self.errors = (result.stderr or b"").decode("utf-8", "surrogateescape")
        return result.returncode

    def expect_one_message(self, part):
        found = [line for line in self.errors.splitlines() if re.search(part, line)]
        self.assertEqual(1, len(found), self.errors)

    def expect_nothing_left(self):
        """No temporary file may be left in the folder."""
        self.assertEqual([], list(pathlib.Path().rglob(".melvorin-*")))

    def test_streams(self):
        self.assertEqual((0, RAISED), (self.cli(*UP, "song.txt"), self.out))
        self.assertEqual((0, RAISED), (self.cli(*UP, data=SONG.encode()), self.out))
        self.assertEqual(0, self.cli(*UP, data=b"C\r\n\351\r"))
        self.assertEqual(b"C#\r\n\351\r", self.raw)
        self.assertEqual((0, "C\t0:C\t4:G\nL\n"), (self.cli("lines", "song.txt"), self.out))
        with open("/dev/full", "wb") as full:
            self.assertEqual(1, self.cli(*UP, "song.txt", stdout=full))
        self.expect_one_message("standard output: The disk is full")

    def test_left_over(self):
        self.write("song.txt", "C\nCmaj7  G\n")
        self.assertEqual((3, "C#\nCmaj7  G\n"), (self.cli(*UP, "--strict", "song.txt"), self.out))
        self.assertEqual("song.txt: 1 line of chords left: 2\n", self.errors)
        self.assertEqual(0, self.cli(*UP, "--strict", "--others", "move", "song.txt"))
        self.assertEqual(("C#\nC#maj7 G#\n", ""), (self.out, self.errors))

    def test_usage(self):
        self.assertEqual(0, self.cli("--version"))
        self.assertEqual(2, self.cli(*UP, "--steps", "12", "song.txt"))
        self.expect_one_message('"12"')

    def test_manual_page(self):
        """It is well-formed and has the options and commands that the tool's own help has."""
        checked = subprocess.run(
            ["mandoc", "-T", "lint", MANUAL], stdout=subprocess.PIPE, stderr=subprocess.STDOUT
        )
        self.assertEqual(b"", checked.stdout)
        shown = subprocess.run(
            ["mandoc", "-T", "ascii", MANUAL], stdout=subprocess.PIPE, check=True
        ).stdout.decode()
        self.assertEqual(0, self.cli("--help"))
        own_help = self.out
        self.assertEqual(0, self.cli("pdf", "--help"))
        own_help += self.out

        def words(text):
            commands = re.findall(r"melvorin-cli ([a-z][a-z-]*)", text)
            return {*re.findall(r"--[a-z][a-z-]*", text), *commands} - {"does"}

        self.assertIn("--output-dir", words(own_help))
        # Bold letters are overstruck.
        self.assertEqual(words(own_help), words(re.sub(r".\x08", "", shown)))

    def test_pdf(self):
        """As another program reads it: chords over their syllables, words, book and what it says."""
        tab = "e|" + 150 * "-" + "|\n"
        self.write("b.txt", "Tune\n\nC        Am      G7\nOld folks at home again\n\n" + tab)
        self.write("a.cho", "{title: Äpfel}\n[C]Red [F]apples\n")
        self.write("r.rtf", r"{\rtf1\ansi{\fonttbl{\f0 Courier New;}}\f0\fs24 D\par  x Gr\'fcn\par}")
        made = ("pdf", "--sort", "title", "--author", "Nobody", "-o", "book.pdf")
        self.assertEqual(0, self.cli(*made, "b.txt", "a.cho", "r.rtf"), self.errors)
        first = pathlib.Path("book.pdf").read_bytes()
        self.assertEqual(0, self.cli(*made, "b.txt", "a.cho", "r.rtf"))
        self.assertEqual(first, pathlib.Path("book.pdf").read_bytes())
        shown = subprocess.run(
            ["pdftotext", "-bbox", "book.pdf", "-"], stdout=subprocess.PIPE, check=True
        ).stdout.decode()
        pages = [
            {
                word: (float(x), float(y))
                for x, y, word in re.findall(r'xMin="(.*?)" yMin="(.*?)".*?>(.*?)</word>', page)
            }
            for page in shown.split("<page ")[1:]
        ]
        self.assertEqual(4, len(pages))
        self.assertLessEqual({"Contents", "Tune", "Äpfel", "r", "2", "4"}, pages[0].keys())
        r, tune, apples = pages[1], pages[2], pages[3]
        cell = 0.6 * 11
        for chord, word, cells in (("C", "Old", 0), ("Am", "folks", 5), ("G7", "again", -1)):
            self.assertAlmostEqual(tune[word][0] + cells * cell, tune[chord][0], delta=0.5)
            self.assertLess(0, tune[word][1] - tune[chord][1])
        self.assertAlmostEqual(apples["apples"][0], apples["F"][0], delta=0.5)
        self.assertAlmostEqual(r["D"][0] + 7.2, r["x"][0], delta=0.5)
        self.assertIn("Grün", r)
        self.assertTrue(any(tab.strip() == word for word in tune), tune.keys())
        told = subprocess.run(["pdfinfo", "book.pdf"], stdout=subprocess.PIPE).stdout.decode()
        self.assertRegex(told, r"Author: +Nobody")
        for arguments, code, message in (
            (("-o", "x.pdf"), 2, "needs songs"),
            (("b.txt",), 2, "needs -o"),
            (("--columns", "5", "-o", "x.pdf", "b.txt"), 2, '"5"'),
            (("-o", "b.txt", "r.rtf", "b.txt"), 2, "one of the songs"),
            (("-o", "x.pdf", "none.txt"), 1, "none.txt"),
            (("--font", "b.txt", "-o", "x.pdf", "b.txt"), 1, "not a TrueType font"),
            (("-o", "none/x.pdf", "b.txt"), 1, "none/x.pdf"),
        ):
            self.assertEqual(code, self.cli("pdf", *arguments))
            self.expect_one_message(message)
            self.assertFalse(pathlib.Path("x.pdf").exists())
        self.write("odd.txt", "one\ntwo \U0001F600\n")
        self.assertEqual(0, self.cli("pdf", "-o", "x.pdf", "odd.txt"))
        self.expect_one_message(r"odd.txt: .*U\+1F600 \(line 2\)")
        self.expect_nothing_left()

    def rows(self):
        return [line.split("\t") for line in self.out.splitlines()]

    def test_chords(self):
        """From the database beside the tool."""
        self.assertEqual(0, self.cli("chord", "C", "a minor", "Cmaj7"))
        rows = self.rows()
        self.assertEqual(["C", "C Major", "09", "a", "x32010", "-32-1-"], rows[0][:6])
        minor = next(row for row in rows if row[0].startswith("Am"))
        self.assertEqual(["Am", "A Minor", "01", "d", "x02210"], minor[:5])
        self.assertEqual(["Cmaj7", "C Major Seventh"], rows[-1][:2])

        self.assertEqual(1, self.cli("chord", "C7", "H7", "C'", "Em"))
        unknown = re.findall(r"cannot find the chord ([^:]*):", self.errors)
        self.assertEqual(["C'"], unknown)
        self.assertEqual(1, len(self.errors.splitlines()))
        known = [row[0] for row in self.rows()]
        self.assertEqual(["C7", "B7", "Em"], [n for i, n in enumerate(known) if known[i - 1 : i] != [n]])

        self.assertEqual((0, ""), (self.cli("chord", "--output", "chords.txt", "Am"), self.out))
        self.assertEqual("x02210", self.read("chords.txt").splitlines()[0].split("\t")[4])

    def test_capos(self):
        self.write("song.txt", "Capo 1\nA  F#m  D  E7\nla\nA  D  E7  A\n")
        self.write("words.txt", "la")
        self.assertEqual(1, self.cli("capo", "song.txt", "words.txt", "gone.txt"))
        rows = self.rows()
        self.assertEqual(["song.txt", "3", "G", "Bb", "4", "0", "0", "0"], rows[0])
        self.assertIn(["song.txt", "1", "A", "Bb", "3", "1", "0", "0"], rows)
        self.assertEqual((11, ["words.txt", "?"]), (len(rows), rows[-1]))
        self.expect_one_message("gone.txt")

    def test_all_chords(self):
        self.assertEqual(0, self.cli("chord", "--list"))
        rows = self.rows()
        self.assertEqual(1, sum(row[:5] == ["C", "C Major", "09", "a", "A"] for row in rows))
        self.assertEqual({8}, {len(row) for row in rows})
        self.assertGreater(len(rows), 1580)

    def test_encodings(self):
        """And results of other commands in a folder."""
        os.mkdir("new")
        self.write("koi.txt", b"Am7\n\360\305\323\316\321\n")
        self.write("plain.txt", "C7M\n")
        into = ("--encoding", "koi8-r", "--output-dir", "new")
        self.assertEqual(0, self.cli("normalize", *into, "koi.txt", "plain.txt"))
        self.assertEqual(
            pathlib.Path("koi.txt").read_bytes(), pathlib.Path("new/koi.txt").read_bytes()
        )
        self.assertEqual("C7+\n", self.read("new/plain.txt"))
        self.assertEqual(0, self.cli("replace", "--find", "7", "--with", "á", "plain.txt"))
        self.assertEqual("CáM\n", self.out, "ASCII is UTF-8")
        self.assertEqual(2, self.cli("lines", "--encoding", "klingon", "koi.txt"))
        self.expect_one_message("shift-jis")

    def test_names(self):
        """With blanks, quotes, other letters, and bytes that are not UTF-8."""
        os.mkdir("out")
        for name in (b"two  words", b'it\'s "it"', "песня".encode(), b"caf\351"):
            with self.subTest(name):
                self.write(name, SONG)
                self.assertEqual(0, self.cli(*UP, "--output-dir", "out", name))
                self.assertEqual(RAISED, self.read(b"out/" + name))

    def test_ways(self):
        """Whatever way a name leads, --output-dir keeps its last part only."""
        os.makedirs("out/deep")
        os.mkdir("in")
        self.write("in/up.txt", SONG)
        whole = os.path.abspath("in/up.txt")
        for name in ("out/../in/up.txt", "./in//up.txt", whole, "out/deep/../../in/up.txt"):
            with self.subTest(name):
                self.assertEqual(0, self.cli(*UP, "--output-dir", "out/deep", name))
                self.assertEqual(["up.txt"], os.listdir("out/deep"))
                self.assertEqual(RAISED, self.read("out/deep/up.txt"))
                os.remove("out/deep/up.txt")
        for name in ("..", "out/..", ".", "/"):
            with self.subTest(name):
                self.assertEqual(1, self.cli(*UP, "--output-dir", "out/deep", name))
                self.assertEqual([], os.listdir("out/deep"))
        self.assertEqual(SONG, self.read("in/up.txt"))

    def test_replacing(self):
        """The file itself, a link to it, its permissions."""
        def up_to(target):
            self.assertEqual(0, self.cli(*UP, "--output", target, "song.txt"), self.errors)

        self.write("own.txt", SONG)
        os.chmod("own.txt", 0o640)
        os.symlink("own.txt", "link.txt")
        self.assertEqual(0, self.cli(*UP, "--output", "link.txt", "link.txt"))
        self.assertEqual(RAISED, self.read("own.txt"))
        self.assertEqual("own.txt", os.readlink("link.txt"), "a link stays a link")
        self.assertEqual(0o640, stat.S_IMODE(os.stat("own.txt").st_mode))
        os.mkdir("out")
        os.symlink("out/new.txt", "dangling.txt")
        up_to("dangling.txt")
        self.assertEqual(RAISED, self.read("out/new.txt"))
        self.assertEqual(0, self.cli(*UP, "--output", "fresh.txt", "song.txt", umask=0o027))
        self.assertEqual(0o640, stat.S_IMODE(os.stat("fresh.txt").st_mode))
        up_to("/dev/null")
        self.assertTrue(stat.S_ISCHR(os.stat("/dev/null").st_mode), "a device stays a device")
        os.mkfifo("pipe")
        with subprocess.Popen(["cat", "pipe"], stdout=subprocess.PIPE) as reader:
            self.addCleanup(reader.kill)
            up_to("pipe")
            self.assertEqual(RAISED.encode(), reader.communicate(timeout=60)[0])
        self.expect_nothing_left()

    def test_several(self):
        """One bad file does not stop the others."""
        os.mkdir("out")
        os.mkdir("folder")
        self.write("tune.txt", "E\n")
        files = ("missing.txt", "folder", "song.txt", "tune.txt")
        self.assertEqual(1, self.cli(*UP, "--output-dir", "out", *files))
        self.assertEqual((RAISED, "F\n"), (self.read("out/song.txt"), self.read("out/tune.txt")))
        self.assertEqual(2, len(self.errors.splitlines()))
        self.expect_one_message(r"cannot read missing\.txt: .*not exist")

    def test_full_disk(self):
        """Whatever goes wrong while writing, the old file stays whole and nothing is left
        behind."""
        self.write("big.txt", "C   G   Am  F\n" * 4000)
        self.write("old.txt", "as before\n")
        code = self.cli(
            *UP, "--output", "old.txt", "big.txt",
            preexec_fn=lambda: resource.setrlimit(resource.RLIMIT_FSIZE, (4096, 4096)),
        )
        self.assertEqual((1, "as before\n"), (code, self.read("old.txt")))
        self.expect_one_message(r"cannot write old\.txt: .*too large")
        self.expect_nothing_left()

    def test_unwritable(self):
        os.mkdir("folder")
        for target in ("nowhere/new.txt", "folder", "/proc/new.txt", "song.txt/new.txt"):
            with self.subTest(target):
                self.assertEqual(1, self.cli(*UP, "--output", target, "song.txt"))
                self.expect_one_message(re.escape(f"cannot write {target}: "))

    @unittest.skipIf(os.geteuid() == 0, "the administrator may write everywhere")
    def test_protected(self):
        os.mkdir("closed")
        self.write("closed/song.txt", "as before\n")
        os.chmod("closed", 0o555)
        self.addCleanup(os.chmod, "closed", 0o755)
        self.assertEqual(1, self.cli(*UP, "--output-dir", "closed", "song.txt"))
        self.assertEqual("as before\n", self.read("closed/song.txt"))
        self.write("protected.txt", "as before\n")
        os.chmod("protected.txt", 0o444)
        self.assertEqual(1, self.cli(*UP, "--output", "protected.txt", "song.txt"))
        self.assertEqual("as before\n", self.read("protected.txt"))


if __name__ == "__main__":
    TOOL = os.path.abspath(sys.argv.pop(1))
    unittest.main()
