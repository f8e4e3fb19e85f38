"""An X server of the test's own: its pixels, its windows, its pointer and keyboard."""

import os
import struct
import subprocess
import zlib
from typing import NamedTuple

from Xlib import X, XK
from Xlib import display as xlib
from Xlib import error as xerror
from Xlib.ext import xtest

from .processes import needed
from .waiting import Failure, until


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
    """Pixels of a part of the screen, four bytes each: blue, green, red, nothing."""

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
        """The part of all pixels that has a colour, given as red, green, blue."""
        red, green, blue = colour
        wanted = bytes((blue, green, red))
        count = sum(pixel == wanted for y in range(self.box.y, self.box.bottom) for pixel in self._row_pixels(y))
        return count / (self.box.width * self.box.height)

    def outline(self, background):
        """The smallest box around the pixels that have another colour than `background`; None when all have it."""
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


def virtual_server(size):
    """The command of an X server without a screen of glass, with one of that many pixels."""
    return ["Xvfb", "-screen", "0", f"{size}x24"]


class Display:
    def __init__(self, processes, server):
        """`server`: the command that starts it, without what says where its clients find it."""
        reader, writer = os.pipe()
        processes.start("display", [*server, "-displayfd", str(writer), "-nolisten", "tcp", "-noreset", "-br"],
                        pass_fds=[writer])
        os.close(writer)
        with os.fdopen(reader, encoding="utf-8") as numbers:
            number = numbers.readline().strip()
        if not number:
            raise Failure(f"{server[0]} printed no display number")
        self.name = f":{number}"
        self._connect()

    def _connect(self):
        self.x = xlib.Display(self.name)
        self.root = self.x.screen().root

    @property
    def box(self):
        geometry = self.root.get_geometry()
        return Box(0, 0, geometry.width, geometry.height)

    def picture(self, box=None):
        box = box or self.box
        image = self.root.get_image(box.x, box.y, box.width, box.height, X.ZPixmap, 0xFFFFFFFF)
        return Picture(box, image.data)

    # ---- Windows ----

    def _property(self, window, name):
        value = window.get_full_property(self.x.intern_atom(name), X.AnyPropertyType)
        return value.value if value else None

    def root_property(self, name):
        return self._property(self.root, name)

    def _visible_below(self, window):
        for child in window.query_tree().children:
            try:
                if child.get_attributes().map_state == X.IsViewable:
                    yield child
                    yield from self._visible_below(child)
            except (xerror.BadWindow, xerror.BadDrawable):
                continue

    def windows_of(self, pid):
        """The visible windows of a process, as pairs of the window and its box on the screen."""
        found = []
        for window in self._visible_below(self.root):
            try:
                owner = self._property(window, "_NET_WM_PID")
                if owner is not None and owner[0] == pid:
                    geometry = window.get_geometry()
                    place = window.translate_coords(self.root, 0, 0)
                    found.append((window, Box(-place.x, -place.y, geometry.width, geometry.height)))
            except (xerror.BadWindow, xerror.BadDrawable):
                continue
        return found

    def has_tray(self):
        """Whether somebody embeds the windows of tray icons."""
        owner = self.x.get_selection_owner(self.x.intern_atom("_NET_SYSTEM_TRAY_S0"))
        return owner != X.NONE

    def overlays(self):
        """The visible windows that no window manager cares for: menus, tooltips, popovers."""
        found = []
        for window in self.root.query_tree().children:
            try:
                attributes = window.get_attributes()
            except (xerror.BadWindow, xerror.BadDrawable):
                continue
            if attributes.map_state == X.IsViewable and attributes.override_redirect:
                found.append(window.id)
        return found

    def watch_maps(self):
        """From now on the server tells of windows that appear; those of before are forgotten."""
        self.root.change_attributes(event_mask=X.SubstructureNotifyMask)
        self.x.sync()
        while self.x.pending_events():
            self.x.next_event()

    def has_mapped(self, size):
        """Whether a window of that width and height has appeared that was not asked for yet."""
        while self.x.pending_events():
            event = self.x.next_event()
            if event.type == X.MapNotify:
                geometry = event.window.get_geometry()
                if (geometry.width, geometry.height) == size:
                    return True
        return False

    # ---- Pointer and keyboard ----

    def keyboard_is_taken(self):
        """Whether a program has taken all keys for itself, as an open popup does."""
        self.x.grab_server()  # so that the attempt stands in nobody's way
        try:
            answer = self.root.grab_keyboard(False, X.GrabModeAsync, X.GrabModeAsync, X.CurrentTime)
            self.x.ungrab_keyboard(X.CurrentTime)
        finally:
            self.x.ungrab_server()
            self.x.sync()
        return answer == X.AlreadyGrabbed

    def move(self, place):
        xtest.fake_input(self.x, X.MotionNotify, x=place[0], y=place[1])
        self.x.sync()

    def click(self, place, button=1):
        self.move(place)
        xtest.fake_input(self.x, X.ButtonPress, button)
        xtest.fake_input(self.x, X.ButtonRelease, button)
        self.x.sync()

    def key(self, name):
        """The number of the key with that symbol."""
        code = self.x.keysym_to_keycode(XK.string_to_keysym(name))
        if code == 0:
            raise Failure(f"the keyboard has no key {name}")
        return code

    def press(self, *keys):
        """Presses keys, given by symbol or number, together, the last one last, and lets them go."""
        codes = [key if isinstance(key, int) else self.key(key) for key in keys]
        for code in codes:
            xtest.fake_input(self.x, X.KeyPress, code)
        for code in reversed(codes):
            xtest.fake_input(self.x, X.KeyRelease, code)
        self.x.sync()

    def set_layout(self, *layout):
        """Another layout of the keyboard: its name and variant."""
        subprocess.run([needed("setxkbmap"), "-display", self.name, *layout], check=True)
        self._connect()  # the keys' symbols are those of a connection's start

    def locks(self):
        """The lock modifiers that are on, as bits."""
        return self.root.query_pointer().mask & (X.LockMask | X.Mod2Mask)

    def set_locks(self, wanted):
        for name, bit in (("Caps_Lock", X.LockMask), ("Num_Lock", X.Mod2Mask)):
            if (self.locks() ^ wanted) & bit:
                self.press(name)
        until("the lock keys are as wanted", lambda: self.locks() == wanted)
