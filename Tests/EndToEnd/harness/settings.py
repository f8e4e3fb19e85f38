"""The settings window of the program on a desktop of its own."""

import configparser
import os

from .desktop import Desktop
from .reader import Reader
from .waiting import Failure, expect, expect_equal, settled, until

TITLE = "Tallyfox Settings"
SIZE = (900, 480)


class Settings:
    """The program with its settings open, on a desktop without a panel and in an account with default preferences."""

    def __init__(self, surroundings, *arguments):
        self._surroundings = surroundings
        self.desktop = Desktop(surroundings, services=[Reader.SERVICE])
        self.reader = Reader(self.desktop)
        self.file = os.path.join(surroundings.config_home, "tallyfox/tallyfox.ini")
        self.entry = os.path.join(surroundings.config_home, "autostart/org.tallyfox.tallyfox.desktop")
        self.start(*arguments)

    def start(self, *arguments):
        self.agent = self.desktop.start_agent("--settings", *arguments, environment=Reader.ENVIRONMENT)
        self.window = self.reader.window(self.agent.pid, TITLE)

    def restart(self, *arguments):
        self.agent.end()
        self.start(*arguments)

    def x_window(self):
        """The X server's window and its box; None while it is not shown."""
        found = [(window, box) for window, box in self.desktop.display.windows_of(self.agent.pid)
                 if (box.width, box.height) == SIZE]
        expect(len(found) <= 1, f"several windows: {found}")
        return found[0] if found else None

    def close(self):
        self.desktop.display.close(self.agent.pid, TITLE)
        until("the settings are closed", lambda: not self.x_window())

    def find(self, name, role):
        """Waits for the control with that name and role on the current tab."""
        def control():
            found = [element for element in self.window.shown() if element.role == role and element.spoken_name == name]
            expect(len(found) <= 1, f"several controls are named {name}")
            return found[0] if found else None
        return until(f"{name} is shown", control)

    def choose(self, name):
        tab = self.find(name, "page tab")
        tab.activate()
        until(f"the tab {name} is chosen", lambda: tab.has("selected"))

    def choose_last_interval(self, choices):
        """Chooses the last interval, and checks that `choices` are offered."""
        self.interval().activate()
        offered = until("the choices are offered", lambda: next(
            (element for element in self.interval().shown()
             if element.role == "list" and element.has("showing")), None))
        expect_equal(offered.name, "Refresh interval", "name of the choices")
        expect_equal([choice.name for choice in offered.children()], choices, "choices")
        self.desktop.display.press("End")
        self.desktop.display.press("Return")
        until("the last choice is chosen", lambda: self.interval().name == choices[-1])

    def take_focus(self):
        """Gives the window the keyboard by a click on an empty place."""
        _, box = until("the window is shown", self.x_window)
        self.desktop.display.click((box.x + 20, box.bottom - 20))
        until("the window has the keyboard", lambda: self.window.has("active"))

    def box(self):
        """The window's box, once it no longer moves."""
        return settled("the window is shown", self.x_window)[1]

    def move_by(self, right, down):
        """Drags the window by its title bar."""
        box = self.box()
        display = self.desktop.display
        display.drag((box.middle[0], box.y - 8), (box.middle[0] + right, box.y - 8 + down))
        until("the window has moved", lambda: self.box() == box._replace(x=box.x + right, y=box.y + down))

    def states(self):
        """The names of the window's states in the window manager."""
        window, _ = until("the window is shown", self.x_window)
        return self.desktop.display.atoms(window, "_NET_WM_STATE")

    def toggle(self, name):
        return self.find(name, "check box")

    def slider(self, name):
        return self.find(name, "slider")

    def interval(self):
        return self.find("Refresh interval", "combo box")

    def switch(self, name):
        self.toggle(name).activate()

    def expect_toggle(self, name, is_on):
        toggle = self.toggle(name)
        until(f"{name} is {'on' if is_on else 'off'}", lambda: toggle.is_on == is_on, timeout=10)

    def expect_slider(self, name, percent):
        slider = self.slider(name)
        until(f"{name} is {percent}", lambda: slider.value == percent, timeout=10)
        expect_equal(slider.description, f"{percent}%", f"spoken value of the {name}")

    def expect_spoken(self, text):
        until(f"{text} is read out", lambda: text in spoken_lines(self.window), timeout=10)

    def stored(self):
        """The stored values by key; empty without a file."""
        parser = configparser.ConfigParser(interpolation=None)
        parser.optionxform = str
        parser.read(self.file, encoding="utf-8")
        return dict(parser["General"]) if parser.has_section("General") else {}

    def expect_stored(self, **values):
        try:
            until("the change is stored", lambda: self.stored() == values, timeout=10)
        except Failure:
            expect_equal(self.stored(), values, "preferences")

    def changed_files(self):
        """The program's files below the configuration folder."""
        found = []
        for folder, _, names in os.walk(self._surroundings.config_home):
            found += [os.path.join(folder, name) for name in names]
        return [path for path in found if "tallyfox" in path.removeprefix(self._surroundings.config_home)]


def spoken_lines(window):
    """What is read out below the tabs, without a name that only repeats the label before it."""
    lines = []
    for element in window.shown():
        named = element.name and element.role not in ("page tab list", "page tab", "filler", "frame")
        if named and (not lines or lines[-1] != element.name):
            lines.append(element.name)
    return lines


def without_labels_of_values(lines):
    """Without labels whose value follows: a value that cannot be changed is read out together with its label."""
    return [line for line, after in zip(lines, [*lines[1:], ""]) if not after.startswith(f"{line}: ")]
