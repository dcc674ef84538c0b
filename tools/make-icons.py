#!/usr/bin/python3
"""Render the drawings in data/icons to the bitmaps and the icon that the program links in.

    tools/make-icons.py OUTDIR

Writes to OUTDIR, which is made if it does not exist:

    toolbar16.bmp toolbar20.bmp toolbar24.bmp toolbar32.bmp toolbar40.bmp toolbar48.bmp
        The toolbar pictures side by side, in the order of TOOLBAR below; 32 bits a pixel,
        bottom-up, straight alpha.
    melvorin.ico
        The program icon at 16 to 64 pixels as bitmaps with a mask, and at 256 pixels as PNG.
    melvorin-splash-96.bmp melvorin-splash-144.bmp melvorin-splash-192.bmp
        The splash picture for these screen resolutions; 24 bits a pixel, bottom-up.
    melvorin-installer.bmp
        The picture on the installer's last page, in the same format.

Needs rsvg-convert (Debian package librsvg2-bin). The drawings use no fonts. The same drawings
and the same rsvg-convert give the same bytes.
"""

import argparse
import os
import pathlib
import shutil
import struct
import subprocess
import sys
import tempfile
import zlib

ICONS = pathlib.Path(__file__).resolve().parent.parent / "data" / "icons"

# One picture for each toolbar button that is not a separator, in the order of the toolbar.
TOOLBAR = (
    "New Open Save Cut Copy Paste Delete Find Undo Redo Bold Italic Underline Left Center Right "
    "Cifra Tab Font Tune ChgTune1 ChgTune2 Dic FScreen Help"
).split()
TOOLBAR_SIZES = (16, 20, 24, 32, 40, 48)

PROGRAM_SIZES = (16, 20, 24, 32, 40, 48, 64, 256)
SMALL_DRAWING_UP_TO = 32  # below 40 pixels the full drawing is too fine to be told apart
PNG_FROM = 256  # bitmaps of this size would be a quarter of a megabyte

SPLASH_SIZE = (420, 240)
SPLASH_DPIS = (96, 144, 192)
INSTALLER_SIZE = (164, 314)  # what the installer's window leaves for it

PNG_SIGNATURE = b"\x89PNG\r\n\x1a\n"


class IconError(Exception):
    """What went wrong, in words for the person who runs the build."""


class Image:
    """Pixels from the top row down, four bytes each: red, green, blue, straight alpha."""

    def __init__(self, width, height, pixels):
        self.width = width
        self.height = height
        self.pixels = pixels

    def row(self, y):
        return self.pixels[y * self.width * 4 : (y + 1) * self.width * 4]


def paeth(left, up, corner):
    estimate = left + up - corner
    distances = (abs(estimate - left), abs(estimate - up), abs(estimate - corner))
    return (left, up, corner)[distances.index(min(distances))]


def unfilter(data, stride, step):
    """Undo the PNG row filters; step is the number of bytes of one pixel."""
    rows = []
    above = bytearray(stride)
    for start in range(0, len(data), stride + 1):
        kind = data[start]
        row = bytearray(data[start + 1 : start + 1 + stride])
        if kind == 1:
            for i in range(step, stride):
                row[i] = (row[i] + row[i - step]) & 255
        elif kind == 2:
            for i in range(stride):
                row[i] = (row[i] + above[i]) & 255
        elif kind == 3:
            for i in range(stride):
                left = row[i - step] if i >= step else 0
                row[i] = (row[i] + (left + above[i]) // 2) & 255
        elif kind == 4:
            for i in range(stride):
                left = row[i - step] if i >= step else 0
                corner = above[i - step] if i >= step else 0
                row[i] = (row[i] + paeth(left, above[i], corner)) & 255
        elif kind != 0:
            raise IconError(f"PNG row filter {kind} does not exist")
        rows.append(row)
        above = row
    return b"".join(rows)


def decode_png(data):
    """Read an 8-bit RGB or RGBA PNG, the two kinds that rsvg-convert writes."""
    if not data.startswith(PNG_SIGNATURE):
        raise IconError("not a PNG picture")
    header = None
    packed = b""
    at = len(PNG_SIGNATURE)
    while at + 8 <= len(data):
        length, kind = struct.unpack(">I4s", data[at : at + 8])
        body = data[at + 8 : at + 8 + length]
        if kind == b"IHDR":
            header = struct.unpack(">IIBBBBB", body)
        elif kind == b"IDAT":
            packed += body
        at += 12 + length
    if header is None:
        raise IconError("PNG picture without a header")
    width, height, depth, colour, _, _, interlace = header
    if depth != 8 or colour not in (2, 6) or interlace:
        raise IconError(f"unexpected kind of PNG: depth {depth}, colour type {colour}")
    step = 4 if colour == 6 else 3
    try:
        plain = zlib.decompress(packed)
    except zlib.error as error:
        raise IconError(f"broken PNG picture: {error}") from error
    if len(plain) != (width * step + 1) * height:
        raise IconError("PNG picture cut short")
    pixels = unfilter(plain, width * step, step)
    if step == 3:
        opaque = bytearray(b"\xff" * (width * height * 4))
        for channel in range(3):
            opaque[channel::4] = pixels[channel::3]
        pixels = bytes(opaque)
    return Image(width, height, pixels)


def encode_png(image):
    """An RGBA PNG with unfiltered rows and nothing in it that changes from day to day."""

    def chunk(kind, body):
        check = zlib.crc32(kind + body)
        return struct.pack(">I", len(body)) + kind + body + struct.pack(">I", check)

    rows = b"".join(b"\0" + image.row(y) for y in range(image.height))
    header = struct.pack(">IIBBBBB", image.width, image.height, 8, 6, 0, 0, 0)
    return (
        PNG_SIGNATURE
        + chunk(b"IHDR", header)
        + chunk(b"IDAT", zlib.compress(rows, 9))
        + chunk(b"IEND", b"")
    )


def render(drawing, width, height):
    if not drawing.is_file():
        raise IconError(f"no drawing {drawing}")
    command = ["rsvg-convert", "--width", str(width), "--height", str(height), str(drawing)]
    result = subprocess.run(command, capture_output=True, check=False)
    if result.returncode != 0:
        reason = result.stderr.decode(errors="replace").strip()
        raise IconError(f"rsvg-convert cannot draw {drawing}: {reason}")
    try:
        image = decode_png(result.stdout)
    except IconError as error:
        raise IconError(f"{drawing}: {error}") from error
    if (image.width, image.height) != (width, height):
        raise IconError(
            f"{drawing}: asked for {width}x{height}, got {image.width}x{image.height}"
        )
    return image


def bgra(row):
    """Blue, green, red, alpha; what cannot be seen is zero, as masks and blending expect."""
    out = bytearray(row)
    out[0::4], out[2::4] = row[2::4], row[0::4]
    for i in range(3, len(out), 4):
        if out[i] == 0:
            out[i - 3 : i] = b"\0\0\0"
    return bytes(out)


def info_header(width, height, bits, size):
    return struct.pack("<IiiHHIIiiII", 40, width, height, 1, bits, 0, size, 0, 0, 0, 0)


def bitmap_file(width, height, bits, rows):
    """A .bmp file of rows that are given from the top down, without their padding."""
    padding = bytes(-len(rows[0]) % 4)
    body = b"".join(row + padding for row in reversed(rows))
    headers = 14 + 40
    return (
        struct.pack("<2sIHHI", b"BM", headers + len(body), 0, 0, headers)
        + info_header(width, height, bits, len(body))
        + body
    )


def toolbar_strip(size):
    images = [render(ICONS / "toolbar" / f"{key.lower()}.svg", size, size) for key in TOOLBAR]
    rows = [b"".join(bgra(image.row(y)) for image in images) for y in range(size)]
    return bitmap_file(size * len(images), size, 32, rows)


def splash(dpi):
    return opaque_picture("splash.svg", *(length * dpi // 96 for length in SPLASH_SIZE))


def opaque_picture(name, width, height):
    image = render(ICONS / name, width, height)
    if min(image.pixels[3::4]) != 255:
        raise IconError(f"{name} must cover its whole area")
    rows = []
    for y in range(height):
        row = image.row(y)
        out = bytearray(width * 3)
        for channel in range(3):
            out[channel::3] = row[2 - channel :: 4]
        rows.append(bytes(out))
    return bitmap_file(width, height, 24, rows)


def icon_bitmap(image):
    """An icon entry: the picture, then a mask with a bit set for each pixel not to be drawn."""
    colours = b"".join(bgra(image.row(y)) for y in reversed(range(image.height)))
    mask = bytearray()
    for y in reversed(range(image.height)):
        bits = bytearray((image.width + 31) // 32 * 4)
        for x, alpha in enumerate(image.row(y)[3::4]):
            if alpha == 0:
                bits[x // 8] |= 0x80 >> x % 8
        mask += bits
    size = len(colours) + len(mask)
    return info_header(image.width, image.height * 2, 32, size) + colours + bytes(mask)


def program_icon():
    entries = []
    for size in PROGRAM_SIZES:
        name = "melvorin-small.svg" if size <= SMALL_DRAWING_UP_TO else "melvorin.svg"
        image = render(ICONS / name, size, size)
        entries.append(encode_png(image) if size >= PNG_FROM else icon_bitmap(image))
    directory = struct.pack("<HHH", 0, 1, len(entries))
    at = len(directory) + 16 * len(entries)
    for size, entry in zip(PROGRAM_SIZES, entries):
        side = size % 256  # 256 is written as 0
        directory += struct.pack("<BBBBHHII", side, side, 0, 0, 1, 32, len(entry), at)
        at += len(entry)
    return directory + b"".join(entries)


def write_whole(path, data):
    """Write beside the target and put it in place in one step, so no half file is ever seen."""
    handle, temporary = tempfile.mkstemp(dir=path.parent, prefix=f".{path.name}.")
    try:
        with os.fdopen(handle, "wb") as file:
            file.write(data)
        os.chmod(temporary, 0o644)
        os.replace(temporary, path)
    except BaseException:
        os.unlink(temporary)
        raise


def make_icons(folder):
    if shutil.which("rsvg-convert") is None:
        raise IconError("rsvg-convert is missing; on Debian: apt-get install librsvg2-bin")
    folder.mkdir(parents=True, exist_ok=True)
    # Everything is drawn before anything is written: a broken drawing leaves the old set whole.
    files = {f"toolbar{size}.bmp": toolbar_strip(size) for size in TOOLBAR_SIZES}
    files["melvorin.ico"] = program_icon()
    files["melvorin-installer.bmp"] = opaque_picture("installer.svg", *INSTALLER_SIZE)
    files.update({f"melvorin-splash-{dpi}.bmp": splash(dpi) for dpi in SPLASH_DPIS})
    for name, data in files.items():
        write_whole(folder / name, data)


def main():
    parser = argparse.ArgumentParser(
        description="Render data/icons to toolbar strips, the program icon and splash pictures."
    )
    parser.add_argument("outdir", metavar="OUTDIR", type=pathlib.Path)
    try:
        make_icons(parser.parse_args().outdir)
    except (IconError, OSError) as error:
        print(f"make-icons: {error}", file=sys.stderr)
        return 1
    return 0


if __name__ == "__main__":
    sys.exit(main())
