"""GNOME Shell with the AppIndicator extension, which shows status items there."""

import json
import os
import re

from gi.repository import GLib

from .panels import BAR, Panel, write
from .pictures import Box
from .waiting import settled, until
from .wayland import NATIVE_BOX, NATIVE_NAME, WALLPAPER, WaylandDesktop, Window

INDICATORS = "ubuntu-appindicators@ubuntu.com"
PORTAL = {  # by name on the bus
    "org.gnome.Settings.GlobalShortcutsProvider": "/usr/libexec/gnome-control-center-global-shortcuts-provider",
    "org.freedesktop.impl.portal.desktop.gnome": "/usr/libexec/xdg-desktop-portal-gnome",
    "org.freedesktop.portal.Desktop": "/usr/libexec/xdg-desktop-portal",
}
INTERFACES = "/usr/share/xdg-desktop-portal/portals/gnome.portal"
ACTIVE = 1  # the state of an extension

# Leaves nothing in the bar but what comes later: the status items.
EMPTY_BAR = f"""
Main.panel.set_style("background-color: #333333; height: {BAR}px;");
for (const child of [Main.panel._leftBox, Main.panel._centerBox, ...Main.panel._rightBox.get_children()])
    child.hide();
"""
SETTINGS = f"""[org/gnome/shell]
welcome-dialog-last-shown-version='99'

[org/gnome/desktop/notifications]
show-banners=false

[org/gnome/desktop/interface]
enable-animations=false

[org/gnome/desktop/background]
picture-options='none'
primary-color='#{bytes(WALLPAPER).hex()}'
color-shading-type='solid'
"""
WINDOWS = """global.get_window_actors().filter(actor => actor.visible).map(actor => {
    const window = actor.meta_window, rect = window.get_frame_rect();
    return [window.get_pid(), window.get_title() || "", [rect.x, rect.y, rect.width, rect.height], window.has_focus()];
})"""
MENU = """(() => {
    const menu = Main.panel.menuManager.activeMenu;
    return menu ? menu._getMenuItems().filter(item => item.visible && item.label).map(item => {
        const [x, y] = item.get_transformed_position(), [width, height] = item.get_transformed_size();
        return [item.label.text, [x, y, width, height].map(Math.round)];
    }) : null;
})()"""


class TopBar(Panel):
    name = "gnome"
    environment = {"XDG_CURRENT_DESKTOP": "GNOME"}

    def configure(self, config_home):
        write(config_home, "glib-2.0/settings/keyfile", SETTINGS)


class Gnome(WaylandDesktop):
    name = "gnome"
    panel_type = TopBar
    has_layer_shell = False
    menu_button = 1
    toggling_button = 2
    wallpaper_takes_focus = False

    def _start_compositor(self):
        environment = self.processes.environment
        size = f"{self.display.box.width}x{self.display.box.height}"
        self.processes.start("gnome-shell", ["gnome-shell", "--wayland", "--nested", "--wayland-display=wayland-1",
                                             "--unsafe-mode"], {"MUTTER_DEBUG_DUMMY_MODE_SPECS": size})
        until("the shell answers", lambda: self._evaluate("Main.layoutManager._startingUp") is False)
        self._evaluate("Main.overview.hide()")
        until("the overview is closed", lambda: self._evaluate("Main.overview.visible") is False)
        self._evaluate(EMPTY_BAR)
        for name in ("DISPLAY", "WAYLAND_DISPLAY", "XAUTHORITY"):
            environment[name] = self._evaluate(f"GLib.getenv('{name}')")

    def _evaluate(self, code):
        """The value of JavaScript code in the shell, which its unsafe mode evaluates; None while it does not answer. `Main`
        and `GLib` are those of the shell's object on the bus."""
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
        self._evaluate(f"Main.extensionManager.enableExtension('{INDICATORS}')")
        until("the extension is active", lambda: self._evaluate(
            f"Main.extensionManager.lookup('{INDICATORS}').state") == ACTIVE)
        until("the panel accepts status items", self._has_tray)

    def kill_panel(self):
        self._evaluate(f"Main.extensionManager.disableExtension('{INDICATORS}')")
        until("the panel is gone", lambda: not self._has_tray())

    # ---- The desktop portal ----

    def start_portal(self):
        for name, program in PORTAL.items():
            if os.path.exists(program):  # GNOME has had one for shortcuts since release 48
                self.processes.start(os.path.basename(program), [program])
                until(f"{name} is on the bus", lambda: self.bus.has(name))

    @property
    def portal_has_shortcuts(self):
        with open(INTERFACES, encoding="utf-8") as file:
            return "org.freedesktop.impl.portal.GlobalShortcuts" in file.read()

    def grant_shortcut(self):
        """Confirms what the portal asks."""
        until("the portal asks", lambda: self.focused() == "Add Keyboard Shortcuts")
        self.rest()
        self.display.press("Alt_L", "a")

    # ---- The item's menu, which the shell draws itself ----

    def _menu_entries(self):
        """Text and box of each entry of the open menu; None while there is none."""
        entries = self._evaluate(MENU)
        return None if entries is None else {text: Box(*box) for text, box in entries}

    def menu_box(self):
        return self._evaluate("Main.panel.menuManager.activeMenu != null")

    def choose(self, text):
        entries = settled("the menu is open", self._menu_entries)
        self.display.click(entries[text].middle)
