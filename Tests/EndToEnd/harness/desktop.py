"""The desktop of one test: an X server, a session bus, a window manager, a panel, and the program in it."""

import os
import signal
import stat
import time
import uuid

from .bus import Bus, StatusItems
from .codex import FakeCodex
from .display import Display, virtual_server
from .panels import Panel
from .pictures import Box
from .processes import SUBJECT_MARK, Processes, command_line
from .waiting import expect, expect_equal, settled, stays, until

ROOT_COLOUR = (0, 0, 0)  # of the empty display
POPOVER_SIZE = (420, 680)  # logical pixels


class Surroundings:
    """Folders, environment and processes of a test, whatever desktop runs in it. The account's home folder is empty
    except for `codex`; histories are in the sample home."""

    def __init__(self, folder, options):
        self.folder = folder
        self.options = options
        self.desktop = None  # the latest one
        self.config_home = os.path.join(folder, "config")
        home = os.path.join(folder, "home")
        self.runtime = os.path.join(folder, "runtime")
        for path in (self.config_home, home, self.runtime):
            os.mkdir(path, stat.S_IRWXU)
        self.codex = FakeCodex(home)
        environment = {
            "PATH": "/usr/local/bin:/usr/bin:/bin", "HOME": home, "LC_ALL": "C.UTF-8", "TMPDIR": folder,
            "XDG_CONFIG_HOME": self.config_home, "XDG_RUNTIME_DIR": self.runtime,
            "XDG_CACHE_HOME": os.path.join(folder, "cache"), "XDG_DATA_HOME": os.path.join(folder, "data"),
            "XDG_STATE_HOME": os.path.join(folder, "state"), "XDG_SESSION_TYPE": "x11",
            "NO_AT_BRIDGE": "1",  # keeps the panels off the accessibility bus
        }
        environment.update({key: value for key, value in os.environ.items() if key.endswith("SAN_OPTIONS")})
        self.processes = Processes(folder, environment)

    def screenshot_path(self, name):
        return os.path.join(self.options.screenshots, "-".join(filter(None, (self.options.test, name))) + ".png")

    def log(self, name):
        path = os.path.join(self.folder, f"{name}.log")
        if not os.path.exists(path):
            return ""
        with open(path, encoding="utf-8", errors="replace") as file:
            return file.read()


class Desktop:
    """A desktop whose panel is not started yet. `bus`: whether there is a session bus."""

    background = ROOT_COLOUR

    def __init__(self, surroundings, panel=None, display=None, bus=True, window_manager=True, services=()):
        self.surroundings = surroundings
        self.processes = surroundings.processes
        self.display = display or Display(self.processes, virtual_server("1280x800"))
        environment = self.processes.environment
        environment["DISPLAY"] = self.display.name
        environment["DBUS_SESSION_BUS_ADDRESS"] = f"unix:path={surroundings.folder}/no-such-bus"
        self.use_panel(panel)
        self.bus = None
        if bus:
            self.bus = Bus(self.processes, [*services, *(panel.services if panel else ())])
            environment["DBUS_SESSION_BUS_ADDRESS"] = self.bus.address
            self.items = StatusItems(self.bus)
        if window_manager and not (panel and panel.manages_windows):
            self.processes.start("openbox", ["openbox", "--sm-disable"])
            until("the window manager is running", lambda: self.display.root_property("_NET_SUPPORTING_WM_CHECK"))

        surroundings.desktop = self

    def boxes_of(self, pid):
        """The boxes of a process's visible windows."""
        return [box for _, box in self.display.windows_of(pid)]

    def screenshot(self, name=""):
        """Saves a picture of the whole screen beside those of the other tests."""
        self.display.picture().save(self.surroundings.screenshot_path(name))

    # ---- The panel ----

    def use_panel(self, panel):
        """From now on, `panel` is the one that is started, ended and looked at."""
        self.panel = panel
        if panel:
            self.processes.environment.update(panel.environment)
            panel.configure(self.surroundings.config_home)

    @property
    def bar(self):
        return self.panel.bar(self.panel.screen or self.display.box)

    @property
    def work_area(self):
        return self.panel.work_area(self.panel.screen or self.display.box)

    def start_panel(self):
        for command in self.panel.commands(self.surroundings.config_home):
            self.processes.start("panel", command)
        until("the panel accepts status items", self._has_tray)

    def _has_tray(self):
        if self.panel.has_watcher:
            return self.bus.has(StatusItems.WATCHER)
        return self.display.has_tray()

    def kill_panel(self, is_only=True):
        """Kills the panel as a crash would. `is_only`: no other one accepts status items now."""
        self.processes.end(pid for program in (self.panel.program, *self.panel.helpers)
                           for pid in self.processes.named(program))
        until("the panel is gone", lambda: not self.display.picture(self.bar).share(self.panel.background))
        until("nothing accepts status items", lambda: not is_only or not self._has_tray())

    def _drawn_item(self):
        """The item's box in the panel, and the bar's pixels; None while the bar is empty or not drawn."""
        picture = self.display.picture(self.bar)
        background = self.panel.background
        outline = picture.outline(background) if picture.share(background) > 0.8 else None
        return (outline, picture.data) if outline else None

    def has_item(self):
        return self._drawn_item() is not None

    def item_picture(self):
        """Waits until the item is drawn and no longer changes, and returns its picture. The pointer must be elsewhere,
        because panels highlight the item under it."""
        outline, _ = settled("the item is drawn in the panel", self._drawn_item)
        return self.display.picture(outline)

    def item_box(self):
        return self.item_picture().box

    @property
    def shortcut(self):
        return (self.panel or Panel).shortcut

    def open_by_key(self, agent):
        """Opens the popover by the shortcut, which the program registers a little after its item. Returns its box."""
        pressed = [0.0]

        def popover():
            if time.monotonic() - pressed[0] > 1:
                self.display.press(*self.shortcut)
                pressed[0] = time.monotonic()
            return agent.popover()
        until("the shortcut opens the popover", popover)
        return agent.opened_popover()

    # ---- The program ----

    def has_agent(self):
        """Whether an agent accepts requests on the session bus."""
        return self.bus.has("org.tallyfox.tallyfox")

    def start_agent(self, *arguments, name="agent", environment=None):
        """Starts the program as the agent, with the home folder of the test."""
        options = self.surroundings.options
        home = ["--home", options.home] if options.home and "--toggle" not in arguments else []
        return self.start(options.program, *home, *arguments, name=name, environment=environment)

    def start(self, program, *arguments, name, environment=None):
        environment = {**(environment or {}), SUBJECT_MARK: uuid.uuid4().hex}
        process = self.processes.start(name, [program, *arguments], environment)
        return Agent(self, process, name, environment[SUBJECT_MARK])

    def run(self, *arguments, name="second"):
        """Starts the program once more and waits for its end; returns its status, its output, and the seconds."""
        begin = time.monotonic()
        agent = self.start_agent(*arguments, name=name)
        status = agent.wait()
        return status, self.surroundings.log(name), time.monotonic() - begin


class Agent:
    """A running program on a desktop."""

    def __init__(self, desktop, process, name, mark):
        self._desktop = desktop
        self._process = process
        self._name = name
        self._mark = mark
        self.pid = process.pid

    @property
    def output(self):
        return self._desktop.surroundings.log(self._name)

    def is_running(self):
        return self._process.poll() is None

    def wait(self):
        until("the program has ended", lambda: not self.is_running())
        return self._process.returncode

    def popover(self, scale=1):
        """The popover's box on the screen, in device pixels; None while it is closed."""
        size = tuple(round(length * scale) for length in POPOVER_SIZE)
        boxes = [box for box in self._desktop.boxes_of(self.pid) if (box.width, box.height) == size]
        expect(len(boxes) <= 1, f"several popovers: {boxes}")
        return boxes[0] if boxes else None

    def opened_popover(self, scale=1):
        """Waits until the popover is open and drawn, and so has grabbed keyboard and pointer; returns its box. The
        grabs cannot be checked: a check would grab them, and the toolkit closes its popups when another program does.
        """
        def box():
            expect(self.is_running(), f"the program has ended: {self.output}")
            return self.popover(scale)
        opened = until("the popover is open", box)
        middle = Box(*opened.middle, 4, 4)
        until("the popover is drawn", lambda: self._desktop.display.picture(middle).outline(self._desktop.background))
        return opened

    def closed_popover(self, seconds=0.25):
        """Waits until the popover is closed, and checks that nothing reopens it within `seconds`."""
        until("the popover is closed", lambda: not self.popover())
        stays("the popover is closed", lambda: not self.popover(), seconds)
        expect(self.is_running(), f"the program has ended: {self.output}")

    def end(self, by=signal.SIGTERM):
        """Ends the program by a signal and checks that it leaves no process behind. Returns the seconds it took."""
        begin = time.monotonic()
        os.kill(self.pid, by)
        status = self.wait()
        seconds = time.monotonic() - begin
        expect(status in (0, -by), f"status {status} after signal {by}")
        left = self._desktop.processes.marked(SUBJECT_MARK, self._mark)
        expect(not left, f"the program left processes behind: {[command_line(pid) for pid in left]}")
        return seconds

    def expect_output(self, lines):
        expect_equal(self.output.splitlines(), lines, "output of the program")
