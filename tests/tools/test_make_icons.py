#!/usr/bin/python3
"""Tests for tools/make-icons.py. Run: /usr/bin/python3 tests/tools/test_make_icons.py"""

import functools
import importlib.util
import pathlib
import shutil
import struct
import subprocess
import sys
import tempfile
import unittest
import zlib

TREE = pathlib.Path(__file__).resolve().parent.parent.parent
TOOL = TREE / "tools" / "make-icons.py"
PICTURES = 25
BUTTON_FACES = ((240, 240, 240), (255, 255, 255), (0, 0, 0))  # the last is high contrast


def run(outdir, tool=TOOL, **options):
    return subprocess.run(
        [sys.executable, str(tool), str(outdir)], capture_output=True, text=True, **options
    )


def read_bitmap(data):
    """Width, height, bits and rows of (blue, green, red[, alpha]) from the top down."""
    mark, size, _, _, at = struct.unpack("<2sIHHI", data[:14])
    header, width, height, planes, bits, packing, body = struct.unpack("<IiiHHII", data[14:38])
    assert (mark, size, at, header) == (b"BM", len(data), 54, 40), "file header"
    assert (planes, packing, body) == (1, 0, size - at), "picture header"
    step = bits // 8
    stride = (width * step + 3) // 4 * 4
    assert body == stride * height, "size of the picture"
    rows = []
    for y in reversed(range(height)):
        start = at + y * stride
        rows.append([tuple(data[i : i + step]) for i in range(start, start + width * step, step)])
    return width, height, bits, rows


@functools.lru_cache(None)
def luminance(colour):
    parts = [c / 255 for c in colour]
    parts = [c / 12.92 if c <= 0.04045 else ((c + 0.055) / 1.055) ** 2.4 for c in parts]
    return 0.2126 * parts[0] + 0.7152 * parts[1] + 0.0722 * parts[2]


@functools.lru_cache(None)
def contrast(one, other):
    low, high = sorted((luminance(one), luminance(other)))
    return (high + 0.05) / (low + 0.05)


@functools.lru_cache(None)
def on_face(pixel, face):
    blue, green, red, alpha = pixel
    return tuple((c * alpha + f * (255 - alpha)) // 255 for c, f in zip((red, green, blue), face))


class MakeIcons(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.folder = tempfile.TemporaryDirectory()
        cls.out = pathlib.Path(cls.folder.name) / "new" / "icons"
        cls.result = run(cls.out)
        assert cls.result.returncode == 0, cls.result.stderr

    @classmethod
    def tearDownClass(cls):
        cls.folder.cleanup()

    def files(self):
        return {path.name: path.read_bytes() for path in self.out.iterdir()}

    def pictures(self, size):
        width, height, bits, rows = read_bitmap((self.out / f"toolbar{size}.bmp").read_bytes())
        self.assertEqual((width, height, bits), (size * PICTURES, size, 32))
        return [
            [pixel for row in rows for pixel in row[k * size : (k + 1) * size]]
            for k in range(PICTURES)
        ]

    def test_toolbar_pictures_can_be_seen_and_told_apart(self):
        for size in (16, 20, 24, 32, 40, 48):
            pictures = self.pictures(size)
            for k, picture in enumerate(pictures):
                for face in BUTTON_FACES:
                    with self.subTest(size=size, picture=k, face=face):
                        seen = sum(contrast(on_face(p, face), face) >= 2.5 for p in picture)
                        self.assertGreater(seen, size * size / 14)
                face = BUTTON_FACES[0]
                for other in range(k):
                    with self.subTest(size=size, pictures=(other, k)):
                        different = sum(
                            contrast(on_face(p, face), on_face(q, face)) > 1.5
                            for p, q in zip(picture, pictures[other])
                        )
                        self.assertGreater(different, size * size / 20)

    def test_toolbar_pictures_are_upright_in_order_and_in_their_colours(self):
        pictures = self.pictures(32)

        def mean(picture, rows):
            cut = [p for p in picture[rows.start * 32 : rows.stop * 32] if p[3] == 255]
            return [sum(p[c] for p in cut) / len(cut) for c in range(3)]

        blue, _, red = mean(pictures[24], range(32))  # Help: a blue disc
        self.assertGreater(blue, red)
        blue, _, red = mean(pictures[6], range(32))  # Delete: a red cross
        self.assertGreater(red, blue)
        blue, _, red = mean(pictures[12], range(24, 28))  # Underline: a red line at the foot
        self.assertGreater(red, blue)
        blue, _, red = mean(pictures[12], range(4, 16))
        self.assertGreater(blue, red)
        for picture in pictures:
            self.assertTrue(all(p == (0, 0, 0, 0) for p in picture if p[3] == 0))
        # Not multiplied by alpha: the soft edge of the disc is as blue as the disc.
        edge = [p for p in pictures[24] if 60 < p[3] < 200]
        self.assertTrue(edge)
        for pixel in edge:
            self.assertGreater(pixel[0], 140)

    def test_program_icon(self):
        data = (self.out / "melvorin.ico").read_bytes()
        self.assertEqual(struct.unpack("<HHH", data[:6]), (0, 1, 8))
        end = 6 + 8 * 16
        sides = []
        for k in range(8):
            width, height, colours, _, planes, bits, size, at = struct.unpack(
                "<BBBBHHII", data[6 + 16 * k : 22 + 16 * k]
            )
            side = width or 256
            sides.append(side)
            self.assertEqual((height, colours, planes, bits, at), (width, 0, 1, 32, end))
            end = at + size
            entry = data[at:end]
            with self.subTest(side=side):
                if side == 256:
                    self.assertEqual(entry[:8], b"\x89PNG\r\n\x1a\n")
                    self.assertEqual(
                        struct.unpack(">IIBBBBB", entry[16:29]), (256, 256, 8, 6, 0, 0, 0)
                    )
                    continue
                head = struct.unpack("<IiiHHI", entry[:20])
                self.assertEqual(head, (40, side, side * 2, 1, 32, 0))
                stride = (side + 31) // 32 * 4
                self.assertEqual(size, 40 + side * side * 4 + stride * side)
                mask = entry[40 + side * side * 4 :]
                drawn = 0
                for pixel in range(side * side):
                    y, x = divmod(pixel, side)
                    hidden = mask[y * stride + x // 8] >> (7 - x % 8) & 1
                    alpha = entry[40 + pixel * 4 + 3]
                    self.assertEqual(hidden, alpha == 0)
                    drawn += alpha == 255
                self.assertGreater(drawn, side * side * 0.8)
        self.assertEqual(sides, [16, 20, 24, 32, 40, 48, 64, 256])
        self.assertEqual(end, len(data))

    def test_splash_leaves_room_for_the_version(self):
        for dpi, size in ((96, (420, 240)), (144, (630, 360)), (192, (840, 480))):
            with self.subTest(dpi=dpi):
                data = (self.out / f"melvorin-splash-{dpi}.bmp").read_bytes()
                width, height, bits, rows = read_bitmap(data)
                self.assertEqual((width, height, bits), (*size, 24))
                rim = 2 * dpi // 96
                free = rows[-(40 * dpi // 96) + rim : -rim]
                colours = {pixel for row in free for pixel in row[rim:-rim]}
                self.assertEqual(len(colours), 1)
                self.assertGreater(len({pixel for row in rows for pixel in row}), 50)

    def test_same_drawings_give_same_bytes(self):
        before = self.files()
        self.assertEqual(len(before), 11)
        self.assertEqual(run(self.out).returncode, 0)
        self.assertEqual(self.files(), before)

    def test_failures_name_the_cause_and_keep_the_old_files(self):
        before = self.files()
        result = run(self.out, env={"PATH": self.folder.name})
        self.assertEqual(result.returncode, 1)
        self.assertIn("librsvg2-bin", result.stderr)
        self.assertEqual(self.files(), before)

        copy = pathlib.Path(self.folder.name) / "copy"
        shutil.copytree(TREE / "data" / "icons", copy / "data" / "icons")
        (copy / "tools").mkdir()
        tool = copy / "tools" / TOOL.name
        shutil.copy(TOOL, tool)
        for name, spoil in (
            ("toolbar/help.svg", lambda path: path.write_text("<svg")),
            ("toolbar/new.svg", lambda path: path.unlink()),
        ):
            with self.subTest(drawing=name):
                path = copy / "data" / "icons" / name
                good = path.read_bytes()
                spoil(path)
                result = run(self.out, tool)
                path.write_bytes(good)
                self.assertEqual(result.returncode, 1)
                self.assertIn(name, result.stderr)
                self.assertNotIn("Traceback", result.stderr)
                self.assertEqual(self.files(), before)

        result = run(TOOL)  # a file where the folder should be
        self.assertEqual(result.returncode, 1)
        self.assertNotIn("Traceback", result.stderr)

    def test_every_png_row_filter(self):
        spec = importlib.util.spec_from_file_location("make_icons", TOOL)
        tool = importlib.util.module_from_spec(spec)
        spec.loader.exec_module(tool)

        def predict(kind, left, up, corner):
            if kind == 4:
                estimate = left + up - corner
                return min((left, up, corner), key=lambda c: abs(estimate - c))
            return (0, left, up, (left + up) // 2)[kind]

        width, height = 5, 10
        for colour, step in ((2, 3), (6, 4)):
            stride = width * step
            rows = [
                [(x * x * 7 + y * 83 + x * y * 11) % 256 for x in range(stride)]
                for y in range(height)
            ]
            packed = bytearray()
            for y, row in enumerate(rows):
                above = rows[y - 1] if y else [0] * stride
                kind = (y * 3 + 1) % 5
                packed.append(kind)
                for x, value in enumerate(row):
                    left, corner = (row[x - step], above[x - step]) if x >= step else (0, 0)
                    packed.append((value - predict(kind, left, above[x], corner)) % 256)
            png = b"\x89PNG\r\n\x1a\n"
            header = struct.pack(">IIBBBBB", width, height, 8, colour, 0, 0, 0)
            body = zlib.compress(bytes(packed))
            for name, part in ((b"IHDR", header), (b"IDAT", body[:20]), (b"IDAT", body[20:])):
                png += struct.pack(">I", len(part)) + name + part
                png += struct.pack(">I", zlib.crc32(name + part))
            with self.subTest(colour=colour):
                image = tool.decode_png(png)
                self.assertEqual((image.width, image.height), (width, height))
                for y, row in enumerate(rows):
                    got = list(image.row(y))
                    if step == 3:
                        self.assertEqual(set(got[3::4]), {255})
                        got = [value for i, value in enumerate(got) if i % 4 != 3]
                    self.assertEqual(got, row)


if __name__ == "__main__":
    unittest.main()
