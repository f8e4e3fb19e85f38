"""The desktop of one test under a Wayland compositor, which runs nested in an X server: pointer, keyboard and pixels
are that server's, so that every click passes the compositor."""

import os
import time
from typing import NamedTuple

from .bus import Bus
from .desktop import Desktop
from .display import Display, virtual_server
from .logind import FakeLogind
from .pictures import Box
from .waiting import settled, until

SCREEN = "1280x1000"
WALLPAPER = (64, 80, 96)
EMPTY_PLACE = (300, 400)  # on the wallpaper, below no window that is expected
DOUBLE_CLICK = 0.5  # seconds, more than any toolkit's
MENU_ROW, MENU_EDGE = 26, 4  # pixels: an entry, and what is below the last one
NATIVE_PROGRAM = os.path.join(os.path.dirname(os.path.dirname(os.path.abspath(__file__))), "nativeWindow")
NATIVE_NAME = "native-window"
NATIVE_COLOUR = (192, 0, 192)
NATIVE_BOX = Box(40, 740, 300, 200)


class Window(NamedTuple):
    """A window as the compositor knows it, without frame and shadow."""

    pid: int
    title: str
    box: Box
    is_focused: bool


def can_use_layer_shell(program):
    """Whether the program was built with LayerShellQt, which is optional."""
    with open(f"{program}-agent", "rb") as file:
        return b"libLayerShellQtInterface" in file.read()


class WaylandDesktop(Desktop):
    """A desktop with a native window on it, and without a panel yet."""

    name = ""  # part of the names of its tests
    panel_type = None
    has_x = True  # whether the compositor starts XWayland
    has_layer_shell = True  # whether a native client can put a surface beside the panels
    menu_button = 3  # the mouse button that opens the item's menu
    toggling_button = 1  # the mouse button that opens and closes the popover
    background = WALLPAPER
    shortcut_scope = "X windows"  # which windows may have the keyboard; None: the shortcut has no way to the program
    centres_windows = False  # whatever place they ask for
    wallpaper_takes_focus = True  # whether a click on it closes the popover
    panel_takes_focus = False
    covers_full_screen = True  # whether a new window is above one that fills the screen

    def __init__(self, surroundings):
        self._last_click = 0.0
        display = Display(surroundings.processes, virtual_server(SCREEN))
        super().__init__(surroundings, self.panel_type(), display, window_manager=False)
        self.uses_layer_surface = self.has_layer_shell and can_use_layer_shell(surroundings.options.program)
        if self.uses_layer_surface:
            self._expect_layer_surface()
        system_bus = Bus(self.processes, [], name="system-bus")
        self.logind = FakeLogind(system_bus)
        self.processes.environment.update(
            DBUS_SYSTEM_BUS_ADDRESS=system_bus.address, XDG_SESSION_TYPE="wayland", LIBGL_ALWAYS_SOFTWARE="1",
            GSETTINGS_BACKEND="keyfile")
        self._start_compositor()
        self._start_native_window()
        self.rest()

    def _expect_layer_surface(self):
        """Sets the limits that a popover in a layer surface, shown by a native client, has or lacks."""
        self.centres_windows = False
        self.covers_full_screen = True
        self.wallpaper_takes_focus = True
        if self.shortcut_scope == "X windows":
            self.shortcut_scope = None  # the program has none

    # ---- What each compositor does in its own way ----

    def _start_compositor(self):
        """Starts it, and puts the displays that it offers into the environment of what is started later."""
        raise NotImplementedError

    def windows(self):
        """All visible windows of programs; not those of the panel and the wallpaper."""
        raise NotImplementedError

    def _place_native_window(self):
        """Moves it to `NATIVE_BOX`."""
        raise NotImplementedError

    def fill_screen(self, fills):
        """Lets the native window fill the screen, or ends that."""
        raise NotImplementedError

    def complaints(self):
        """Lines about the status item in what the desktop has written so far."""
        return []

    # ---- Windows, pointer and keyboard ----

    def _start_native_window(self):
        width, height = NATIVE_BOX.width, NATIVE_BOX.height
        self.processes.start("native", [NATIVE_PROGRAM, str(width), str(height), f"#{bytes(NATIVE_COLOUR).hex()}"],
                             {"GDK_BACKEND": "wayland", "DISPLAY": None})
        until("the native window is open", self.native_window)
        self._place_native_window()
        until("the native window is in its place", self._is_native_window_placed)

    def _is_native_window_placed(self):
        box = self.native_window().box
        return all(abs(box[axis] - NATIVE_BOX[axis]) < 40 for axis in range(4))  # title bars move it a little

    def native_window(self):
        return next((window for window in self.windows() if window.title == NATIVE_NAME), None)

    def native_lines(self):
        """What the native window has reported so far: keys, and changes of the focus."""
        return self.surroundings.log("native").splitlines()

    def boxes_of(self, pid):
        return [window.box for window in self.windows() if window.pid == pid]

    def focused(self):
        """The title of the window that has the keyboard."""
        return next((window.title for window in self.windows() if window.is_focused), None)

    def focus_native_window(self):
        self.display.click(NATIVE_BOX.middle)
        until("the native window has the keyboard", lambda: self.focused() == NATIVE_NAME)

    def click_item(self, item):
        """Clicks with the button that toggles the popover, and not so soon that two clicks become a double click."""
        time.sleep(max(0.0, self._last_click + DOUBLE_CLICK - time.monotonic()))
        self.display.click(item.middle, self.toggling_button)
        self._last_click = time.monotonic()

    # ---- The item's menu ----

    def open_menu(self, item):
        """Opens the item's menu and waits until it is drawn."""
        self.display.click(item.middle, self.menu_button)
        settled("the menu is open", self.menu_box)

    def menu_box(self):
        """The part of the open menu that covers the wallpaper; None while there is none."""
        screen, bar = self.display.box, self.bar
        top, bottom = (0, bar.y - 1) if self.panel.at_bottom else (bar.bottom, screen.bottom)
        return self.display.picture(Box(screen.width // 2, top, screen.width // 2, bottom - top)).outline(WALLPAPER)

    def choose(self, text):
        """Clicks an entry of the open menu: all below the separator, at the end of the menu, are of one height."""
        texts = self.items.menu_texts(self.items.one())
        box = settled("the menu is open", self.menu_box)
        below = len(texts) - texts.index(text) - 0.5
        self.display.click((box.middle[0], round(box.bottom - MENU_EDGE - below * MENU_ROW)))

    def rest(self):
        """Moves the pointer away from windows and panel, and waits until nothing on the screen changes."""
        self.display.move(EMPTY_PLACE)
        settled("the screen is at rest", lambda: self.display.picture().data, quiet=0.3)
