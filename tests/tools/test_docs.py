#!/usr/bin/python3
"""Holds docs/names.md and docs/kept.md to the code. Run: /usr/bin/python3 tests/tools/test_docs.py"""

import pathlib
import re
import unittest

TREE = pathlib.Path(__file__).resolve().parent.parent.parent
KEPT = re.compile(r"//\s*kept:\s*(\S+)")
# A vocabulary name in a declaration: a menu entry; an id, a member or a type that ends in a number;
# a member or an enumerator in capitals. Members of our own begin small and are words.
MENU = re.compile(r"^ +((?:mnu|ExMovie)\w+|Exibir|About),", re.MULTILINE)
WINDOW = re.compile(r"^class ((?:[Ff]rm|Form|Cls|Tarnel)\w+)", re.MULTILINE)
CAPITAL_MEMBER = re.compile(r"\b([A-Z]\w*|(?:cmd|lbl|txt|dta)[A-Z]\w*)_\b")
NUMBERED = re.compile(r"^ +([A-Za-z]+[0-9]+[a-z]?)_?(?: = [^,;]+)?[,;]", re.MULTILINE)
# Numbers that belong to a word of everyone's.
PLAIN = {"Utf8", "Utf16"}


def rows(text):
    """The cells of every table row but heads and rules; "\\|" is a bar within a cell."""
    for line in text.splitlines():
        if line.startswith("| ") and not line.startswith(("| Name ", "| --- ")):
            cells = re.split(r"(?<!\\)\|", line.strip())[1:-1]
            yield [cell.strip() for cell in cells]


def quoted(cell):
    return re.findall(r"`([^`]+)`", cell)


def sources(*endings):
    for path in sorted((TREE / "src").rglob("*")):
        if path.suffix in endings:
            yield path.relative_to(TREE).as_posix(), path.read_text(encoding="utf-8")


def holds(text, name):
    """The name as a word, as a member with "_", as an id with "k"."""
    return re.search(rf"(?<![A-Za-z0-9])k?{re.escape(name)}_?(?![A-Za-z0-9])", text) is not None


def declared(text):
    code = re.sub(r"//[^\n]*", "", text)
    for pattern in (MENU, WINDOW, CAPITAL_MEMBER, NUMBERED):
        yield from pattern.findall(code)


class Pages(unittest.TestCase):
    def read(self, name, columns):
        table = list(rows((TREE / "docs" / name).read_text(encoding="utf-8")))
        self.assertGreater(len(table), 20)
        for row in table:
            self.assertEqual(len(row), columns, row)
            self.assertTrue(all(row), row)
        return table

    def test_every_oddity_is_marked_where_the_page_says_and_nowhere_else(self):
        table = self.read("kept.md", 4)
        names = [row[0] for row in table]
        self.assertEqual(len(names), len(set(names)), "a name stands twice")
        told = {(row[0], file) for row in table for file in quoted(row[2])}
        marked = {(name, file) for file, text in sources(".h", ".cpp") for name in KEPT.findall(text)}
        self.assertEqual(told - marked, set(), "no such comment")
        self.assertEqual(marked - told, set(), "not on the page")

    def test_every_name_stands_in_its_file(self):
        for cell, _, place in self.read("names.md", 3):
            files = quoted(place)
            self.assertEqual(len(files), 1, place)
            self.assertTrue((TREE / files[0]).is_file(), files[0])
            text = (TREE / files[0]).read_text(encoding="utf-8")
            self.assertTrue(quoted(cell), cell)
            for name in quoted(cell):
                self.assertTrue(holds(text, name), f"{name} is not in {files[0]}")

    def test_no_name_of_the_vocabulary_is_missing(self):
        known = {name for row in self.read("names.md", 3) for name in quoted(row[0])}
        known |= {name[1:] for name in known if re.match(r"k[A-Z]", name)} | PLAIN
        missing = {
            (name, file)
            for file, text in sources(".h")
            for name in declared(text)
            if name not in known and not (name.startswith("k") and name[1:] in known)
        }
        self.assertEqual(missing, set())


if __name__ == "__main__":
    unittest.main()
