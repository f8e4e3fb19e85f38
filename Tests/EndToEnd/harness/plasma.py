"""KDE Plasma on Wayland: KWin, its services, and plasmashell with a panel that holds nothing but the status area."""

import glob
import json
import os
import shutil

import gi

gi.require_version("Gio", "2.0")
from gi.repository import Gio, GLib

from .bus import StatusItems
from .panels import BAR, Panel, write
from .pictures import Box
from .waiting import Failure, until
from .wayland import NATIVE_BOX, NATIVE_NAME, WALLPAPER, WaylandDesktop, Window

ACTIVITY = "00000000-0000-4000-8000-000000000001"
DAEMONS = ("kded6", "kded5")  # collect the status items; the last character is the number of KDE's release
PLASMOIDS = "/usr/share/plasma/plasmoids"
LAYOUT = f"""[Containments][1]
activityId={ACTIVITY}
formfactor=0
immutability=1
lastScreen=0
location=0
plugin=org.kde.desktopcontainment
wallpaperplugin=org.kde.color

[Containments][1][Wallpaper][org.kde.color][General]
Color={','.join(map(str, WALLPAPER))}

[Containments][2]
activityId=
formfactor=2
immutability=1
lastScreen=0
location=4
plugin=org.kde.panel
wallpaperplugin=org.kde.image

[Containments][2][Applets][3]
immutability=1
plugin=org.kde.plasma.panelspacer

[Containments][2][Applets][4]
immutability=1
plugin=org.kde.plasma.systemtray

[Containments][2][Applets][4][Configuration]
SystrayContainmentId=5

[Containments][2][General]
AppletOrder=3;4

[Containments][5]
activityId=
formfactor=2
immutability=1
lastScreen=0
location=4
plugin=org.kde.plasma.private.systemtray
wallpaperplugin=org.kde.image

[Containments][5][General]
extraItems=
knownItems={{own_items}}
"""
OPAQUE = 1
FILES = {
    "plasmashellrc": f"[PlasmaViews][Panel 2]\nfloating=0\npanelOpacity={OPAQUE}\n"
                     f"[PlasmaViews][Panel 2][Defaults]\nthickness={BAR}\n",
    "kscreenlockerrc": "[Daemon]\nAutolock=false\nLockOnResume=false\nTimeout=0\n",
    "kdeglobals": "[KDE]\nAnimationDurationFactor=0\n",
    "kactivitymanagerdrc": f"[activities]\n{ACTIVITY}=Default\n[main]\ncurrentActivity={ACTIVITY}\n",
}
ANSWERS = """<node><interface name="org.tallyfox.Answers">
  <method name="put"><arg type="s" direction="in"/><arg type="s" direction="in"/></method>
</interface></node>"""
CLIENTS = "(workspace.windowList ? workspace.windowList() : workspace.clientList())"  # renamed in Plasma 6
WINDOWS = f"""{CLIENTS}.filter(client => !client.desktopWindow && !client.dock && !client.minimized)
.map(client => {{
    const frame = client.frameGeometry;
    const box = [frame.x, frame.y, frame.width, frame.height].map(Math.round);
    return [client.pid, String(client.caption), box, client.active];
}})"""


def daemon():
    """The one of the newest release of KDE that is installed."""
    return next(filter(shutil.which, DAEMONS), DAEMONS[-1])


class PlasmaPanel(Panel):
    name = "kde"
    program = "plasmashell"
    at_bottom = True
    background = (239, 240, 241)

    def bar(self, screen):
        box = super().bar(screen)
        return box._replace(y=box.y + 1, height=box.height - 1)  # without the line along its upper edge

    @property
    def environment(self):
        return {"XDG_CURRENT_DESKTOP": "KDE", "KDE_FULL_SESSION": "true", "KDE_SESSION_VERSION": daemon()[-1],
                "QT_QUICK_BACKEND": "software"}

    def configure(self, config_home):
        for name, text in FILES.items():
            write(config_home, name, text)
        write(config_home, "plasma-org.kde.plasma.desktop-appletsrc",
              LAYOUT.format(own_items=",".join(sorted(os.listdir(PLASMOIDS)))))

    def commands(self, config_home):
        return [[self.program, "--no-respawn"]]


class Plasma(WaylandDesktop):
    name = "kde"
    panel_type = PlasmaPanel
    shortcut_scope = "everywhere"

    def _start_compositor(self):
        environment = self.processes.environment
        folder = self.surroundings.folder
        # The packaged file has a capability, which an account may not be allowed to gain; a copy has none.
        kwin = shutil.copy(shutil.which("kwin_wayland"), folder)
        started = os.path.join(folder, "kwin-environment")
        report = write(folder, "report", f"#!/bin/sh\nenv >'{started}.unfinished'\n"
                                         f"mv '{started}.unfinished' '{started}'\n")
        os.chmod(report, 0o700)
        self.processes.start("kwin", [
            kwin, "--x11-display", self.display.name, "--width", str(self.display.box.width),
            "--height", str(self.display.box.height), "--xwayland", "--socket", "wayland-1", report],
            {"KWIN_COMPOSE": "Q"})
        until("the compositor is running", lambda: os.path.exists(started))
        with open(started, encoding="utf-8") as file:
            inside = dict(line.rstrip("\n").split("=", 1) for line in file if "=" in line)
        environment.update({name: inside.get(name) for name in ("DISPLAY", "XAUTHORITY")}, WAYLAND_DISPLAY="wayland-1")
        self._listen()
        self._start_services()

    def _start_services(self):
        managers = glob.glob("/usr/lib/*/libexec/kactivitymanagerd")
        if not managers:
            raise Failure("kactivitymanagerd is not installed: run scripts/bootstrap")
        for name, program in (("kded", daemon()), ("kactivitymanagerd", managers[0])):
            self.processes.start(name, [program], {"QT_QPA_PLATFORM": "wayland"})
        for name in ("org.kde.ActivityManager", StatusItems.WATCHER):
            until(f"{name} is on the bus", lambda: self.bus.has(name))

    def _has_tray(self):
        # The watcher is a service of its own, which outlives the panel and always says that there is one.
        return any(name.startswith("org.kde.StatusNotifierHost-") for name in self.bus.names())

    # ---- Scripts in the compositor, which send their result to an object of the test ----

    def _listen(self):
        self._answers = {}
        self._scripts = 0
        self._connection = self.bus.connect()
        self._connection.register_object("/answers", Gio.DBusNodeInfo.new_for_xml(ANSWERS).interfaces[0], self._put)

    def _put(self, _connection, _sender, _path, _interface, _method, arguments, invocation):
        script, text = arguments.unpack()
        self._answers[script] = json.loads(text)
        invocation.return_value(None)

    def _script(self, code):
        """The value of JavaScript code in the compositor."""
        self._scripts += 1
        name = f"script{self._scripts}"
        path = write(self.surroundings.folder, f"{name}.js",
                     f"callDBus('{self._connection.get_unique_name()}', '/answers', 'org.tallyfox.Answers', 'put', "
                     f"'{name}', JSON.stringify({code}));\n")
        scripting = ("org.kde.KWin", "/Scripting", "org.kde.kwin.Scripting")
        self.bus.call(*scripting, "loadScript", GLib.Variant("(ss)", (path, name)))
        self.bus.call(*scripting, "start")  # runs those that are not running yet

        def is_answered():
            while GLib.MainContext.default().iteration(False):
                pass
            return name in self._answers
        until("the compositor has run a script", is_answered, interval=0.002)
        self.bus.call(*scripting, "unloadScript", GLib.Variant("(s)", (name,)))
        os.remove(path)
        return self._answers.pop(name)

    def windows(self):
        # Layer surfaces have no titles. Only one of them ever has the keyboard: the popover.
        return [Window(pid, title or "Tallyfox", Box(*box), is_focused)
                for pid, title, box, is_focused in self._script(WINDOWS)]

    def _with_native_window(self, action):
        self._script(f"{CLIENTS}.filter(client => String(client.caption) == '{NATIVE_NAME}')"
                     f".map(client => client.{action})")

    def _place_native_window(self):
        self._with_native_window(f"frameGeometry = {{x: {NATIVE_BOX.x}, y: {NATIVE_BOX.y}, "
                                 f"width: client.width, height: client.height}}")

    def fill_screen(self, fills):
        self._with_native_window(f"fullScreen = {str(fills).lower()}")
