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
    """Pixels of a part of the screen, four bytes each: blue, green, red, unused."""

    def __init__(self, box, data):
        self.box = box
        self.data = data

    def row(self, y):
        start = (y - self.box.y) * self.box.width * 4
        return self.data[start:start + self.box.width * 4]

    def _row_pixels(self, y):
        row = self.row(y)
        return (row[start:start + 3] for start in range(0, len(row), 4))

    def share(self, colour):
        """The share of all pixels that have the colour, given as red, green, blue."""
        red, green, blue = colour
        wanted = bytes((blue, green, red))
        count = sum(pixel == wanted for y in range(self.box.y, self.box.bottom) for pixel in self._row_pixels(y))
        return count / (self.box.width * self.box.height)

    def outline(self, background):
        """The smallest box around all pixels that do not have the colour `background`; None without any."""
        red, green, blue = background
        empty = bytes((blue, green, red))
        places = [(x, y) for y in range(self.box.y, self.box.bottom) for x, pixel in enumerate(self._row_pixels(y))
                  if pixel != empty]
        if not places:
            return None
        columns, rows = [x for x, _ in places], [y for _, y in places]
        return Box(self.box.x + min(columns), min(rows), max(columns) - min(columns) + 1, max(rows) - min(rows) + 1)

    def save(self, path):
        """Writes a PNG."""
        lines = b"".join(b"\0" + bytes(byte for pixel in zip(row[2::4], row[1::4], row[0::4]) for byte in pixel)
                         for row in map(self.row, range(self.box.y, self.box.bottom)))
        header = struct.pack(">IIBBBBB", self.box.width, self.box.height, 8, 2, 0, 0, 0)

        def chunk(kind, content):
            return struct.pack(">I", len(content)) + kind + content + struct.pack(">I", zlib.crc32(kind + content))

        os.makedirs(os.path.dirname(path), exist_ok=True)
        with open(path, "wb") as file:
            file.write(b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", header) + chunk(b"IDAT", zlib.compress(lines, 1))
                       + chunk(b"IEND", b""))
