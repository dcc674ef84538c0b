"""How wide and how high text is, as fontTools reads the fonts: nothing of this comes from the
program."""
import functools
import pathlib
import typing

from fontTools.ttLib import TTFont

SYSTEM = pathlib.Path("/usr/share/fonts/truetype")
# Each face by its files: plain, bold, italic, both. Where a style has no file the program takes the
# plain or the bold one.
FILES = {
    "Liberation Mono": [f"liberation/LiberationMono-{style}.ttf"
                        for style in ("Regular", "Bold", "Italic", "BoldItalic")],
    "Liberation Sans": [f"liberation/LiberationSans-{style}.ttf"
                        for style in ("Regular", "Bold", "Italic", "BoldItalic")],
    "Liberation Serif": [f"liberation/LiberationSerif-{style}.ttf"
                         for style in ("Regular", "Bold", "Italic", "BoldItalic")],
    "DejaVu Sans Mono": ["dejavu/DejaVuSansMono.ttf", "dejavu/DejaVuSansMono-Bold.ttf"] * 2,
    "DejaVu Sans": ["dejavu/DejaVuSans.ttf", "dejavu/DejaVuSans-Bold.ttf"] * 2,
}
TEXT_FACES = list(FILES)
ONE_WIDTH = [face for face in FILES if face.endswith("Mono")]
# The chord book's fonts, set by the run.
diagram_folder = pathlib.Path()


class Look(typing.NamedTuple):
    face: str
    points: float
    bold: bool = False
    italic: bool = False
    underline: bool = False
    colour: int = 0

    @property
    def is_diagram(self):
        return self.face.startswith("Melvorin ")


def file_of(look):
    if look.is_diagram:
        return diagram_folder / f"{look.face.replace(' ', '')}.ttf"
    return SYSTEM / FILES[look.face][look.bold + 2 * look.italic]


class Metrics:
    """Lengths in em."""

    def __init__(self, file):
        font = TTFont(file, lazy=True)
        units = font["head"].unitsPerEm
        glyphs = font.getBestCmap()
        self.advances = {code: font["hmtx"][name][0] / units for code, name in glyphs.items()}
        self.ascent = font["hhea"].ascent / units
        self.descent = -font["hhea"].descent / units


@functools.lru_cache(maxsize=None)
def metrics_of_file(file):
    return Metrics(file)


@functools.lru_cache(maxsize=None)
def metrics(look):
    return metrics_of_file(file_of(look))


def advance(look, character):
    return metrics(look).advances[ord(character)] * look.points
