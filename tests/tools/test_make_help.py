"""The help: every page that the program opens is there, and every command is explained."""

import pathlib
import re
import subprocess
import sys
import tempfile
import unittest

ROOT = pathlib.Path(__file__).resolve().parent.parent.parent
SOURCE = ROOT / "src" / "app"


class Help(unittest.TestCase):
    """What the build makes of data/help."""

    @classmethod
    def setUpClass(cls):
        cls.folder = tempfile.TemporaryDirectory()
        cls.out = pathlib.Path(cls.folder.name)
        # Ends with a message where a link, a picture or a page is loose.
        subprocess.run(
            [sys.executable, ROOT / "tools" / "make-help.py", cls.out],
            check=True,
            capture_output=True,
        )

    @classmethod
    def tearDownClass(cls):
        cls.folder.cleanup()

    def test_pages_of_the_program_are_there(self):
        table = (SOURCE / "ShippedPages.h").read_text(encoding="utf-8")
        pages = set(re.findall(r'u"([a-z0-9-]+\.html)"', table))
        self.assertGreater(len(pages), 10)
        for page in pages:
            self.assertTrue((self.out / "Help" / page).exists(), page)
        for file in re.findall(r'u"([^"]+\.chm)"', table):
            compiled = self.out / file.replace("\\\\", "/")
            self.assertEqual(compiled.read_bytes()[:4], b"ITSF", file)

    def test_a_loose_link_ends_it(self):
        with tempfile.TemporaryDirectory() as folder:
            copy = pathlib.Path(folder)
            subprocess.run(["cp", "-r", ROOT / "tools", ROOT / "data", copy], check=True)
            for damage in ("[x](nowhere.md)", "![x](pictures/none.png)", "![](pictures/a.png)"):
                page = copy / "data" / "help" / "font.md"
                page.write_text(f"# Font\n\n{damage}\n", encoding="utf-8")
                done = subprocess.run(
                    [sys.executable, copy / "tools" / "make-help.py", copy / "out"],
                    capture_output=True,
                    text=True,
                    check=False,
                )
                self.assertEqual(done.returncode, 1, damage)
                self.assertIn("make-help: ", done.stderr)


if __name__ == "__main__":
    unittest.main()
