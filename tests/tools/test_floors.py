"""The floors of the house: which folder of src may include which, and core that sees no Windows."""
import pathlib
import re
import unittest

SOURCE = pathlib.Path(__file__).resolve().parents[2] / "src"

# From the ground up. A folder may include what is below it; side by side they may not, but for what
# is named here.
FLOORS = [
    ["base"],
    ["rtf"],
    ["platform"],
    ["widgets"],
    ["chords", "dictionary", "editing", "find", "present", "sound", "tablature"],
    ["app"],
]
# The dictionary spells chords as the engine does, and the stage takes hold of diagrams. What keys do
# in a song is the same in the editor and on stage.
SIDEWAYS = {
    ("dictionary", "chords"), ("present", "dictionary"),
    ("editing", "chords"), ("editing", "tablature"), ("present", "editing"),
}
# The batch tool stands beside the house and uses the core of some rooms; its entry alone knows the
# system that it runs on.
TOOL = {"base", "rtf", "chords", "dictionary", "find"}
TOOL_ENTRY = {"cli/main.cpp"}

INCLUDE = re.compile(r'^\s*#\s*include\s+[<"]([^>"]+)[>"]', re.M)


def sources():
    return sorted(p for p in SOURCE.rglob("*") if p.suffix in (".h", ".cpp"))


def includes(path):
    return INCLUDE.findall(path.read_text(encoding="utf-8"))


def floor_of(folder):
    return next(i for i, floor in enumerate(FLOORS) if folder in floor)


def listed(folder):
    """The sources that a folder's CMakeLists.txt names, as (core, windows)."""
    text = (SOURCE / folder / "CMakeLists.txt").read_text(encoding="utf-8")
    call = re.search(r"melvorin_folder\((.*?)\)", text, re.S).group(1)
    lists = {"CORE": set(), "WINDOWS": set(), "BELOW": set()}
    current = None
    for word in call.split()[1:]:
        if word in lists:
            current = word
        else:
            lists[current].add(word)
    return lists


class Floors(unittest.TestCase):
    def test_no_arrow_runs_up(self):
        for path in sources():
            folder, name = path.parent.name, path.relative_to(SOURCE).as_posix()
            for include in includes(path):
                other = include.split("/")[0]
                if "/" not in include or not (SOURCE / other).is_dir() or other == folder:
                    continue
                with self.subTest(file=name, includes=include):
                    if folder == "cli":
                        self.assertTrue(other in TOOL or name in TOOL_ENTRY)
                    elif floor_of(folder) == floor_of(other):
                        self.assertIn((folder, other), SIDEWAYS)
                    else:
                        self.assertGreater(floor_of(folder), floor_of(other))

    def test_the_build_links_what_may_be_included(self):
        for floor in FLOORS:
            for folder in floor:
                for below in listed(folder)["BELOW"]:
                    with self.subTest(folder=folder, below=below):
                        if below in floor:
                            self.assertIn((folder, below), SIDEWAYS)
                        else:
                            self.assertGreater(floor_of(folder), floor_of(below))

    def test_core_sees_no_windows(self):
        windows = {"windows.h", "commctrl.h", "richedit.h", "shellapi.h", "windowsx.h", "commdlg.h"}
        for folder in (f for floor in FLOORS for f in floor if f != "platform"):
            lists = listed(folder)
            window_headers = {pathlib.Path(name).stem + ".h" for name in lists["WINDOWS"]}
            for name in lists["CORE"]:
                seen = set()
                queue = [SOURCE / folder / name]
                while queue:
                    path = queue.pop()
                    if path in seen or not path.is_file():
                        continue
                    seen.add(path)
                    self.assertNotEqual(path.parent.name, "platform", f"{folder}/{name}")
                    for include in includes(path):
                        with self.subTest(core=f"{folder}/{name}", through=path.name):
                            self.assertNotIn(include, windows)
                        queue.append(SOURCE / include)
                self.assertFalse({p.name for p in seen if p.parent.name == folder} & window_headers)

    def test_every_source_is_built(self):
        entries = {"app/WinMain.cpp", "cli/main.cpp"}
        for path in sources():
            name = path.relative_to(SOURCE).as_posix()
            if path.suffix == ".cpp" and name not in entries:
                built = (path.parent / "CMakeLists.txt").read_text(encoding="utf-8")
                base = (SOURCE / "base" / "CMakeLists.txt").read_text(encoding="utf-8")
                self.assertTrue(path.name in built or f"../{name}" in base, name)


if __name__ == "__main__":
    unittest.main()
