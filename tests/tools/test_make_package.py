#!/usr/bin/python3
"""Tests for tools/make-package.py. Run: /usr/bin/python3 tests/tools/test_make_package.py

What the installer does is tested by tools/test-x86.sh."""

import importlib.util
import pathlib
import tempfile
import unittest
import zipfile

TREE = pathlib.Path(__file__).resolve().parent.parent.parent
SPEC = importlib.util.spec_from_file_location("package", TREE / "tools" / "make-package.py")
package = importlib.util.module_from_spec(SPEC)
SPEC.loader.exec_module(package)


class MakePackage(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.root = pathlib.Path(folder.name)
        self.add("build/Dbase/MlvDbase.db", b"db")
        self.add("build/Strings/Bass/1 G.mid", b"g")
        self.add("build/Strings/1 E.mid", b"e")
        self.add("build/core.o", b"not for users")
        self.add("readme.txt", "Version @VERSION@\n".encode())

    def add(self, name, content):
        path = self.root / name
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_bytes(content)

    def stage(self, *lines):
        (self.root / "files.txt").write_text("\n".join(lines))
        staged = self.root / "Melvorin"
        package.stage(self.root / "build", self.root / "files.txt", staged, "1.2.3", 1700000000)
        return package.tree_files(staged)

    def test_holds_what_is_listed_and_nothing_else(self):
        names = self.stage(
            "# a remark", "Dbase/MlvDbase.db", "Strings/", f"README.txt < {self.root}/readme.txt"
        )
        self.assertEqual(
            names, ["Dbase/MlvDbase.db", "README.txt", "Strings/1 E.mid", "Strings/Bass/1 G.mid"]
        )
        self.assertEqual(
            (self.root / "Melvorin/README.txt").read_bytes(), b"Version 1.2.3\r\n"
        )

    def test_names_everything_that_is_missing(self):
        self.add("build/empty.db", b"")
        (self.root / "build" / "Song").mkdir()
        with self.assertRaises(package.PackageError) as failure:
            self.stage("Dbase/MlvDbase.db", "Melvorin.chm", "empty.db", "Song/", "Help/")
        for name in ("Melvorin.chm", "empty.db", "Song/", "Help/"):
            self.assertIn(f"no {name}", str(failure.exception))
        self.assertNotIn("MlvDbase", str(failure.exception))

    def test_same_files_give_the_same_zip(self):
        self.stage("Dbase/MlvDbase.db", "Strings/")
        archives = []
        for name in ("one.zip", "two.zip"):
            (self.root / "Melvorin/Strings/1 E.mid").touch()
            package.write_zip(self.root / "Melvorin", self.root / name, 1700000000)
            archives.append((self.root / name).read_bytes())
        self.assertEqual(archives[0], archives[1])
        with zipfile.ZipFile(self.root / "one.zip") as archive:
            self.assertEqual(archive.namelist()[0], "Melvorin/Dbase/MlvDbase.db")
            self.assertEqual(archive.read("Melvorin/Strings/Bass/1 G.mid"), b"g")

    def test_removal_takes_files_before_their_folders(self):
        self.stage("Strings/")
        package.write_removal(self.root / "Melvorin", self.root / "removal.nsh")
        self.assertEqual(
            (self.root / "removal.nsh").read_text().splitlines(),
            [
                r'Delete "$INSTDIR\Strings\1 E.mid"',
                r'Delete "$INSTDIR\Strings\Bass\1 G.mid"',
                r'RMDir "$INSTDIR\Strings\Bass"',
                r'RMDir "$INSTDIR\Strings"',
            ],
        )
        self.add("Melvorin/Strings/$x.mid", b"x")
        with self.assertRaises(package.PackageError):
            package.write_removal(self.root / "Melvorin", self.root / "removal.nsh")


if __name__ == "__main__":
    unittest.main()
