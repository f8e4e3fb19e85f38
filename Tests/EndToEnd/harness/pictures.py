"""Boxes and pictures of the screen."""

import os
import struct
import zlib
from typing import NamedTuple


class Box(NamedTuple):
    x: int
    y: int
    width: int
    height: int

    @property
    def right(self):
        return self.x + self.width

    @property
    def bottom(self):
        return self.y + self.height

    @property
    def middle(self):
        return (self.x + self.width // 2, self.y + self.height // 2)

    def contains(self, other):
        return (self.x <= other.x and self.y <= other.y
                and other.right <= self.right and other.bottom <= self.bottom)


class Picture:
    """Pixels of a part of the screen, four bytes each: blue, green, red, and zero."""

    def __init__(self, box, data):
        self.box = box
        pixels = bytearray(data)
        pixels[3::4] = bytes(len(pixels) // 4)  # what the server leaves there has no meaning
        self.data = bytes(pixels)

    def row(self, y):
        start = (y - self.box.y) * self.box.width * 4
        return self.data[start:start + self.box.width * 4]

    def _differences(self, colour):
        """Of each row from the top, the columns whose pixels do not have the colour, given as red, green, blue."""
        red, green, blue = colour
        pixel = bytes((blue, green, red, 0))
        plain = pixel * self.box.width
        number = memoryview(pixel).cast("I")[0]
        for row in map(self.row, range(self.box.y, self.box.bottom)):
            same = row == plain  # most rows are: comparing pixels is slow
            yield [] if same else [x for x, value in enumerate(memoryview(row).cast("I")) if value != number]

    def share(self, colour):
        """The share of all pixels that have the colour."""
        return 1 - sum(map(len, self._differences(colour))) / (self.box.width * self.box.height)

    def outline(self, background):
        """The smallest box around all pixels that do not have the colour `background`; None without any."""
        rows = [(y, columns) for y, columns in enumerate(self._differences(background), self.box.y) if columns]
        if not rows:
            return None
        left, right = min(columns[0] for _, columns in rows), max(columns[-1] for _, columns in rows)
        top, bottom = rows[0][0], rows[-1][0]
        return Box(self.box.x + left, top, right - left + 1, bottom - top + 1)

    def save(self, path):
        """Writes a PNG."""
        lines = bytearray()
        for row in map(self.row, range(self.box.y, self.box.bottom)):
            line = bytearray(1 + 3 * self.box.width)  # begins with the number of its filter: none
            line[1::3], line[2::3], line[3::3] = row[2::4], row[1::4], row[0::4]
            lines += line
        header = struct.pack(">IIBBBBB", self.box.width, self.box.height, 8, 2, 0, 0, 0)

        def chunk(kind, content):
            return struct.pack(">I", len(content)) + kind + content + struct.pack(">I", zlib.crc32(kind + content))

        os.makedirs(os.path.dirname(path), exist_ok=True)
        with open(path, "wb") as file:
            file.write(b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", header) + chunk(b"IDAT", zlib.compress(lines, 1))
                       + chunk(b"IEND", b""))
