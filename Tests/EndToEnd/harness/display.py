"""The X server of one test: its pixels, its windows, its pointer and keyboard."""

import os
import subprocess
import time

from Xlib import X, XK, Xatom, Xutil
from Xlib import display as xlib
from Xlib import error as xerror
from Xlib.ext import xtest
from Xlib.protocol import event

from .pictures import Box, Picture
from .processes import needed
from .waiting import Failure, until


def virtual_server(size):
    """The command of an X server with one virtual screen of that size."""
    return ["Xvfb", "-screen", "0", f"{size}x24"]


class Display:
    def __init__(self, processes, server):
        """`server`: the command that starts it, without a display number."""
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
        value = window.get_full_property(self.x.get_atom(name), X.AnyPropertyType)
        return value.value if value else None

    def root_property(self, name):
        return self._property(self.root, name)

    def atoms(self, window, name):
        """The names in a property that is a list of atoms."""
        return {self.x.get_atom_name(atom) for atom in self._property(window, name) or ()}

    def icon_sizes(self, window):
        """Width and height of each of the window's icons."""
        numbers = list(self._property(window, "_NET_WM_ICON") or ())
        sizes = []
        while numbers:
            width, height = numbers[:2]
            sizes.append((width, height))
            numbers = numbers[2 + width * height:]
        return sizes

    def _windows_below(self, window):
        """The visible windows of programs, with their pids: children of the root or of a window manager's frame."""
        for child in window.query_tree().children:
            try:
                if child.get_attributes().map_state != X.IsViewable:
                    continue
                owner = self._property(child, "_NET_WM_PID")
                if owner is not None:
                    yield child, owner[0]
                else:
                    yield from self._windows_below(child)
            except (xerror.BadWindow, xerror.BadDrawable):
                continue

    def windows_of(self, pid):
        """The visible windows of a process, as pairs of the window and its box on the screen."""
        found = []
        for window, owner in self._windows_below(self.root):
            try:
                if owner == pid:
                    geometry = window.get_geometry()
                    place = window.translate_coords(self.root, 0, 0)
                    found.append((window, Box(-place.x, -place.y, geometry.width, geometry.height)))
            except (xerror.BadWindow, xerror.BadDrawable):
                continue
        return found

    def titles_of(self, pid):
        """The titles of a process's visible windows, as far as they have one."""
        titles = [self._property(window, "_NET_WM_NAME") for window, _ in self.windows_of(pid)]
        return [bytes(title).decode() for title in titles if title is not None]

    def active_window(self):
        """The identifier of the window that the window manager gave the keyboard."""
        return (self.root_property("_NET_ACTIVE_WINDOW") or [None])[0]

    def open_window(self, box, colour, *states):
        """Opens a window of another program, with nothing in it but `colour`, and waits until it is drawn. `states`: its
        states in the window manager."""
        red, green, blue = colour
        window = self.root.create_window(*box, 0, X.CopyFromParent, background_pixel=red << 16 | green << 8 | blue)
        window.set_wm_name("another program")
        window.set_wm_normal_hints(flags=Xutil.USPosition | Xutil.USSize)
        window.change_property(self.x.get_atom("_NET_WM_STATE"), Xatom.ATOM, 32, [*map(self.x.get_atom, states)])
        window.map()
        self.x.sync()
        until("the other window is drawn", lambda: self.picture(Box(*box.middle, 4, 4)).share(colour) == 1)
        return window

    def close(self, pid, title):
        """Closes a window as the close button in its frame does."""
        protocols, closing = (self.x.intern_atom(name) for name in ("WM_PROTOCOLS", "WM_DELETE_WINDOW"))
        for window, _ in self.windows_of(pid):
            name = self._property(window, "_NET_WM_NAME")
            if name is not None and bytes(name).decode() == title:
                window.send_event(event.ClientMessage(window=window, client_type=protocols,
                                                      data=(32, [closing, X.CurrentTime, 0, 0, 0])))
        self.x.sync()

    def has_tray(self):
        """Whether there is a system tray, which embeds the windows of tray icons."""
        owner = self.x.get_selection_owner(self.x.intern_atom("_NET_SYSTEM_TRAY_S0"))
        return owner != X.NONE

    def watch_maps(self):
        """Starts recording windows that appear, for `has_mapped`; forgets earlier ones."""
        self.root.change_attributes(event_mask=X.SubstructureNotifyMask)
        self.x.sync()
        while self.x.pending_events():
            self.x.next_event()

    def has_mapped(self, size):
        """Whether a window of that width and height has appeared since the last call."""
        while self.x.pending_events():
            received = self.x.next_event()
            if received.type == X.MapNotify:
                geometry = received.window.get_geometry()
                if (geometry.width, geometry.height) == size:
                    return True
        return False

    # ---- Pointer and keyboard ----

    def move(self, place):
        xtest.fake_input(self.x, X.MotionNotify, x=place[0], y=place[1])
        self.x.sync()

    def click(self, place, button=1):
        self.move(place)
        xtest.fake_input(self.x, X.ButtonPress, button)
        xtest.fake_input(self.x, X.ButtonRelease, button)
        self.x.sync()

    def drag(self, start, end):
        """Presses the button at one place and releases it at another, with steps in between and no faster than a quick
        hand: a window manager grabs the pointer after the press, and misses what happens before."""
        self.move(start)
        xtest.fake_input(self.x, X.ButtonPress, 1)
        self.x.sync()
        for step in range(1, 6):
            time.sleep(0.04)
            self.move(tuple(start[axis] + (end[axis] - start[axis]) * step // 5 for axis in (0, 1)))
        xtest.fake_input(self.x, X.ButtonRelease, 1)
        self.x.sync()

    def key(self, name):
        """The keycode of the key with that symbol."""
        code = self.x.keysym_to_keycode(XK.string_to_keysym(name))
        if code == 0:
            raise Failure(f"the keyboard has no key {name}")
        return code

    def press(self, *keys):
        """Presses keys, given by symbol or keycode, in this order, and then releases them."""
        codes = [key if isinstance(key, int) else self.key(key) for key in keys]
        for code in codes:
            xtest.fake_input(self.x, X.KeyPress, code)
        for code in reversed(codes):
            xtest.fake_input(self.x, X.KeyRelease, code)
        self.x.sync()

    def set_layout(self, *layout):
        """Changes the keyboard layout: its name and variant."""
        subprocess.run([needed("setxkbmap"), "-display", self.name, *layout], check=True)
        self._connect()  # a connection keeps the symbols from its start

    def locks(self):
        """The lock modifiers that are on, as bits."""
        return self.root.query_pointer().mask & (X.LockMask | X.Mod2Mask)

    def set_locks(self, wanted):
        for name, bit in (("Caps_Lock", X.LockMask), ("Num_Lock", X.Mod2Mask)):
            if (self.locks() ^ wanted) & bit:
                self.press(name)
        until("the lock keys are as wanted", lambda: self.locks() == wanted)
