"""sway with waybar, with and without XWayland."""

import json
import os
import subprocess

from .desktop import POPOVER_SIZE
from .panels import BAR, Panel, write
from .pictures import Box
from .processes import needed
from .waiting import until
from .wayland import EMPTY_PLACE, NATIVE_BOX, NATIVE_NAME, WALLPAPER, WaylandDesktop, Window

CONFIGURATION = """xwayland {xwayland}
output * bg #{wallpaper} solid_color
output X11-1 resolution {width}x{height}
default_border normal
for_window [title="{native}"] floating enable, resize set {box.width} {box.height}, move position {box.x} {box.y}
exec env >'{environment}.unfinished' && mv '{environment}.unfinished' '{environment}'
"""
AGENT = "org.tallyfox.tallyfox"  # its name on the bus
EDGE = 100  # pixels: less than there is beside or above the settings


class Waybar(Panel):
    name = "waybar"
    program = "waybar"
    environment = {"XDG_CURRENT_DESKTOP": "sway"}

    def configure(self, config_home):
        write(config_home, "waybar/config", json.dumps({
            "layer": "top", "position": "top", "height": BAR, "modules-right": ["tray"], "tray": {"icon-size": 18}}))
        write(config_home, "waybar/style.css", "window#waybar { background: #333333; }")


class Sway(WaylandDesktop):
    name = "sway"
    panel_type = Waybar
    centres_windows = True
    covers_full_screen = False

    def _start_compositor(self):
        environment = self.processes.environment
        folder = self.surroundings.folder
        started = os.path.join(folder, "sway-environment")
        configuration = write(folder, "sway.conf", CONFIGURATION.format(
            xwayland="enable" if self.has_x else "disable", wallpaper=bytes(WALLPAPER).hex(),
            width=self.display.box.width, height=self.display.box.height, native=NATIVE_NAME, box=NATIVE_BOX,
            environment=started))
        environment["SWAYSOCK"] = os.path.join(environment["XDG_RUNTIME_DIR"], "sway")
        self.processes.start("sway", ["sway", "--config", configuration],
                             {"WLR_BACKENDS": "x11", "WLR_RENDERER": "pixman"})
        until("sway is running", lambda: os.path.exists(started))
        with open(started, encoding="utf-8") as file:
            inside = dict(line.rstrip("\n").split("=", 1) for line in file if "=" in line)
        environment["WAYLAND_DISPLAY"] = inside["WAYLAND_DISPLAY"]
        environment["DISPLAY"] = inside["DISPLAY"] if self.has_x else None

    def _message(self, *arguments):
        socket = {"SWAYSOCK": self.processes.environment["SWAYSOCK"]}
        answer = subprocess.run([needed("swaymsg"), "--raw", *arguments], env=socket, capture_output=True, check=True)
        return json.loads(answer.stdout)

    def windows(self):
        found, nodes = [], [self._message("--type", "get_tree")]
        while nodes:
            node = nodes.pop()
            nodes += node["nodes"] + node["floating_nodes"]
            if node.get("pid") and node.get("visible"):
                frame, inner = node["rect"], node["window_rect"]
                box = Box(frame["x"] + inner["x"], frame["y"] + inner["y"], inner["width"], inner["height"])
                found.append(Window(node["pid"], node["name"] or "", box, node["focused"]))
        return found + self._layer_surfaces(not any(window.is_focused for window in found))

    def _layer_surfaces(self, has_focus):
        """The popover as a layer surface. sway lists none: what is as large, at the right edge of the screen, counts as
        one. A surface may have the keyboard while no window has."""
        if not self.uses_layer_surface or not self.has_agent():
            return []
        screen, bar = self.display.box, self.bar
        behind = self.display.picture(Box(*EMPTY_PLACE, 1, 1)).data[2::-1]
        edge = Box(screen.right - EDGE, bar.bottom, EDGE, screen.bottom - bar.bottom)
        right_part = self.display.picture(edge).outline(behind)
        if not right_part or right_part.height != POPOVER_SIZE[1]:
            return []
        upper_part = self.display.picture(Box(NATIVE_BOX.right, right_part.y, screen.right - NATIVE_BOX.right, EDGE))
        box = upper_part.outline(behind)
        if not box:  # closed meanwhile
            return []
        return [Window(self.bus.process_of(AGENT), "Tallyfox", box._replace(height=right_part.height), has_focus)]

    def _place_native_window(self):
        pass  # the configuration says where

    def fill_screen(self, fills):
        self._message(f'[title="{NATIVE_NAME}"] fullscreen {"enable" if fills else "disable"}')


class PureSway(Sway):
    name = "sway-wayland"
    has_x = False
    shortcut_scope = None
