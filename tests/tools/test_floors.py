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
    ["chords", "dictionary", "editing", "find", "paper", "present", "sound",
     "tablature"],
    ["app"],
]
# The dictionary spells chords as the engine does, and the stage takes hold of diagrams and
# keeps chords with their words. What keys do
# in a song is the same in the editor and on stage.
SIDEWAYS = {
    ("dictionary", "chords"), ("find", "chords"), ("paper", "chords"), ("editing", "chords"),
    ("editing", "tablature"), ("present", "chords"), ("present", "dictionary"),
    ("present", "editing"),
}
# The batch tool stands beside the house and uses the core of some rooms; its entry alone knows the
# system that it runs on.
TOOL = {"base", "rtf", "chords", "dictionary", "find", "paper"}
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


def is_standard(include):
    """A header of the language's own library, of the database, or of what writes PDF."""
    return "." not in include or include == "sqlite3.h" or include.startswith("hpdf")


class Floors(unittest.TestCase):
    def test_no_arrow_runs_up(self):
        for path in sources():
            folder, name = path.parent.name, path.relative_to(SOURCE).as_posix()
            for include in includes(path):
                other = include.split("/")[0]
                if "/" not in include or other == folder:
                    continue
                with self.subTest(file=name, includes=include):
                    self.assertNotIn(other, (".", ".."), "by its folder, from src on")
                    if not (SOURCE / other).is_dir():
                        continue
                    self.assertNotEqual(other, "cli", "the tool stands beside the house")
                    if folder == "cli":
                        self.assertTrue(other in TOOL or name in TOOL_ENTRY)
                    elif floor_of(folder) == floor_of(other):
                        self.assertIn((folder, other), SIDEWAYS)
                    else:
                        self.assertGreater(floor_of(folder), floor_of(other))

    def test_no_folders_go_round_in_a_circle(self):
        below = {folder: set(listed(folder)["BELOW"]) for floor in FLOORS for folder in floor}
        for path in sources():
            if path.parent.name in below:
                below[path.parent.name].update(
                    other
                    for other in (include.split("/")[0] for include in includes(path))
                    if other in below and other != path.parent.name
                )
        left = dict(below)
        while free := [folder for folder, others in left.items() if not others & left.keys()]:
            for folder in free:
                del left[folder]
        self.assertEqual(left, {})

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
        for folder in [f for floor in FLOORS for f in floor] + ["cli"]:
            lists = listed(folder)
            window_headers = {pathlib.Path(name).stem + ".h" for name in lists["WINDOWS"]}
            for name in sorted(lists["CORE"]):
                seen = set()
                queue = [SOURCE / folder / name]
                while queue:
                    path = queue.pop()
                    if path in seen:
                        continue
                    seen.add(path)
                    if folder != "platform":
                        self.assertNotEqual(path.parent.name, "platform", f"{folder}/{name}")
                    for include in includes(path):
                        if (SOURCE / include).is_file():
                            queue.append(SOURCE / include)
                            continue
                        with self.subTest(core=f"{folder}/{name}", through=path.name):
                            self.assertTrue(is_standard(include), include)
                self.assertFalse({p.name for p in seen if p.parent.name == folder} & window_headers)

    # Two services of the system come with the ground that they are for: its code pages, and the
    # files of the tool where there is no Windows.
    def test_every_source_is_built(self):
        entries = {"app/WinMain.cpp", "cli/main.cpp", "cli/NativeFiles.cpp"}
        pages = {"platform/SystemAnsiCodec.cpp", "cli/NativeCodePages.cpp"}
        ground = (SOURCE / "base" / "CMakeLists.txt").read_text(encoding="utf-8")
        for path in sources():
            name = path.relative_to(SOURCE).as_posix()
            if path.suffix != ".cpp" or name in entries:
                continue
            with self.subTest(source=name):
                if name in pages:
                    self.assertIn(f"../{name}", ground)
                else:
                    lists = listed(path.parent.name)
                    self.assertIn(path.name, lists["CORE"] | lists["WINDOWS"])


if __name__ == "__main__":
    unittest.main()
