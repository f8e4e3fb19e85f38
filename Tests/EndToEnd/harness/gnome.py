"""GNOME Shell with the AppIndicator extension, which shows status items there."""

import json
import re

from gi.repository import GLib

from .panels import BAR, Panel, write
from .pictures import Box
from .waiting import settled, until
from .wayland import NATIVE_BOX, NATIVE_NAME, WALLPAPER, WaylandDesktop, Window

INDICATORS = "ubuntu-appindicators@ubuntu.com"
DRIVER = "driver@tallyfox.org"
ACTIVE = 1  # the state of an extension

# Lets the test ask the shell for its windows, and leaves nothing in the bar but what comes later: the status items.
DRIVER_CODE = f"""
const Main = imports.ui.main;
function init() {{}}
function enable() {{
    global.context.unsafe_mode = true;
    Main.sessionMode.hasOverview = false;
    Main.panel.set_style("background-color: #333333; height: {BAR}px;");
    Main.panel._leftBox.hide();
    Main.panel._centerBox.hide();
    for (const child of Main.panel._rightBox.get_children())
        child.hide();
}}
function disable() {{}}
"""
SETTINGS = """[org/gnome/shell]
enabled-extensions=['{driver}']
welcome-dialog-last-shown-version='99'

[org/gnome/desktop/notifications]
show-banners=false

[org/gnome/desktop/interface]
enable-animations=false

[org/gnome/desktop/background]
picture-options='none'
primary-color='#{wallpaper}'
color-shading-type='solid'
"""
WINDOWS = """global.get_window_actors().filter(actor => actor.visible).map(actor => {
    const window = actor.meta_window, rect = window.get_frame_rect();
    return [window.get_pid(), window.get_title() || "", [rect.x, rect.y, rect.width, rect.height], window.has_focus()];
})"""
MENU = """(() => {
    const menu = imports.ui.main.panel.menuManager.activeMenu;
    return menu ? menu._getMenuItems().filter(item => item.visible && item.label).map(item => {
        const [x, y] = item.get_transformed_position(), [width, height] = item.get_transformed_size();
        return [item.label.text, [x, y, width, height].map(Math.round)];
    }) : null;
})()"""


class TopBar(Panel):
    name = "gnome"
    environment = {"XDG_CURRENT_DESKTOP": "GNOME"}

    def configure(self, config_home):
        write(config_home, "glib-2.0/settings/keyfile",
              SETTINGS.format(driver=DRIVER, wallpaper=bytes(WALLPAPER).hex()))


class Gnome(WaylandDesktop):
    name = "gnome"
    panel_type = TopBar
    menu_button = 1
    toggling_button = 2
    wallpaper_takes_focus = False

    def _start_compositor(self):
        environment = self.processes.environment
        folder = f"{environment['XDG_DATA_HOME']}/gnome-shell/extensions/{DRIVER}"
        write(folder, "metadata.json", json.dumps({
            "uuid": DRIVER, "name": "driver", "description": "driver", "url": "", "shell-version": ["43"]}))
        write(folder, "extension.js", DRIVER_CODE)
        size = f"{self.display.box.width}x{self.display.box.height}"
        self.processes.start("gnome-shell", ["gnome-shell", "--wayland", "--nested", "--wayland-display=wayland-1"],
                             {"MUTTER_DEBUG_DUMMY_MODE_SPECS": size})
        until("the shell answers", lambda: self._evaluate("imports.ui.main.layoutManager._startingUp") is False)
        for name in ("DISPLAY", "WAYLAND_DISPLAY", "XAUTHORITY"):
            environment[name] = self._evaluate(f"imports.gi.GLib.getenv('{name}')")

    def _evaluate(self, code):
        """The value of JavaScript code in the shell; None while the shell does not answer."""
        try:
            good, text = self.bus.call("org.gnome.Shell", "/org/gnome/Shell", "org.gnome.Shell", "Eval",
                                       GLib.Variant("(s)", (code,)))
        except GLib.Error:
            return None
        return json.loads(text) if good and text else None

    def windows(self):
        return [Window(pid, title, Box(*box), is_focused)
                for pid, title, box, is_focused in self._evaluate(WINDOWS) or []]

    def _with_native_window(self, action):
        self._evaluate(f"global.get_window_actors().map(actor => actor.meta_window)"
                       f".filter(window => window.get_title() == '{NATIVE_NAME}').forEach(window => window.{action})")

    def _place_native_window(self):
        self._with_native_window(f"move_frame(true, {NATIVE_BOX.x}, {NATIVE_BOX.y})")

    def fill_screen(self, fills):
        self._with_native_window("make_fullscreen()" if fills else "unmake_fullscreen()")

    def complaints(self):
        return [line for line in self.surroundings.log("gnome-shell").splitlines()
                if re.search("AppIndicator|StatusNotifier|dbusmenu|tallyfox", line)]

    def start_panel(self):
        self._evaluate(f"imports.ui.main.extensionManager.enableExtension('{INDICATORS}')")
        until("the extension is active", lambda: self._evaluate(
            f"imports.ui.main.extensionManager.lookup('{INDICATORS}').state") == ACTIVE)
        until("the panel accepts status items", self._has_tray)

    def kill_panel(self):
        self._evaluate(f"imports.ui.main.extensionManager.disableExtension('{INDICATORS}')")
        until("the panel is gone", lambda: not self._has_tray())

    # ---- The item's menu, which the shell draws itself ----

    def _menu_entries(self):
        """Text and box of each entry of the open menu; None while there is none."""
        entries = self._evaluate(MENU)
        return None if entries is None else {text: Box(*box) for text, box in entries}

    def menu_box(self):
        return self._evaluate("imports.ui.main.panel.menuManager.activeMenu != null")

    def choose(self, text):
        entries = settled("the menu is open", self._menu_entries)
        self.display.click(entries[text].middle)
