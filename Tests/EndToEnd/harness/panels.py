"""The panels, each configured down to a bar with nothing but the status area."""

import os

from .pictures import Box

BAR = 30  # pixels: the height of every bar


def write(folder, path, text):
    path = os.path.join(folder, path)
    os.makedirs(os.path.dirname(path), exist_ok=True)
    with open(path, "w", encoding="utf-8") as file:
        file.write(text)
    return path


class Panel:
    """A bar along one edge of the screen. `name` is part of the names of its tests."""

    name = ""
    background = (51, 51, 51)  # the colour of the bar: all other pixels are the item
    program = ""
    helpers = ()  # programs that run beside it and have to be ended with it
    services = ()  # service files that the session bus needs
    environment = {}
    has_watcher = True  # speaks StatusNotifierItem; otherwise only the older X11 tray
    further_buttons = (2,)  # mouse buttons that it forwards to the item, besides the first
    shows_menus = True  # on the third button
    manages_windows = False  # is the window manager, too
    shortcut = ("Super_L", "Alt_L", "b")  # in the order in which the keys are pressed
    at_bottom = False
    at_left = False
    screen = None  # the box of the panel's screen; None for the only one

    def edge(self):
        return "left" if self.at_left else "bottom" if self.at_bottom else "top"

    def bar(self, screen):
        """The bar's box on a screen of that box."""
        if self.at_left:
            return Box(screen.x, screen.y, BAR, screen.height)
        return Box(screen.x, screen.bottom - BAR if self.at_bottom else screen.y, screen.width, BAR)

    def work_area(self, screen):
        if self.at_left:
            return Box(screen.x + BAR, screen.y, screen.width - BAR, screen.height)
        return Box(screen.x, screen.y + (0 if self.at_bottom else BAR), screen.width, screen.height - BAR)

    def configure(self, config_home):
        """Writes the panel's configuration below `XDG_CONFIG_HOME`."""
        raise NotImplementedError

    def commands(self, config_home):
        """The programs to start."""
        return [[self.program]]


class Xfce(Panel):
    name = "xfce"
    program = "xfce4-panel"
    helpers = ("wrapper-2.0",)
    services = ("org.xfce.Xfconf",)
    environment = {"XDG_CURRENT_DESKTOP": "XFCE"}
    output = "Automatic"  # the name of the screen's output

    def configure(self, config_home):
        write(config_home, "xfce4/xfconf/xfce-perchannel-xml/xfce4-panel.xml", f"""<?xml version="1.0" encoding="UTF-8"?>
<channel name="xfce4-panel" version="1.0">
  <property name="configver" type="int" value="2"/>
  <property name="panels" type="array">
    <value type="int" value="1"/>
    <property name="dark-mode" type="bool" value="false"/>
    <property name="panel-1" type="empty">
      <property name="position" type="string" value="p={8 if self.at_bottom else 6};x=0;y=0"/>
      <property name="mode" type="uint" value="{int(self.at_left)}"/>
      <property name="output-name" type="string" value="{self.output}"/>
      <property name="length" type="uint" value="100"/>
      <property name="position-locked" type="bool" value="true"/>
      <property name="size" type="uint" value="{BAR}"/>
      <property name="background-style" type="uint" value="1"/>
      <property name="background-rgba" type="array">
        <value type="double" value="0.2"/><value type="double" value="0.2"/>
        <value type="double" value="0.2"/><value type="double" value="1"/>
      </property>
      <property name="plugin-ids" type="array">
        <value type="int" value="1"/>
        <value type="int" value="2"/>
      </property>
    </property>
  </property>
  <property name="plugins" type="empty">
    <property name="plugin-1" type="string" value="separator">
      <property name="expand" type="bool" value="true"/>
      <property name="style" type="uint" value="0"/>
    </property>
    <property name="plugin-2" type="string" value="systray"/>
  </property>
</channel>
""")

    def commands(self, config_home):
        return [[self.program, "--disable-wm-check"]]


class Mate(Panel):
    name = "mate"
    program = "mate-panel"
    services = ("org.mate.panel.applet.NotificationAreaAppletFactory",)
    helpers = ("notification-area-applet",)
    environment = {"XDG_CURRENT_DESKTOP": "MATE", "GSETTINGS_BACKEND": "keyfile", "GTK_THEME": "Adwaita:dark"}

    def configure(self, config_home):
        write(config_home, "glib-2.0/settings/keyfile", f"""[org/mate/panel/general]
toplevel-id-list=['bar']
object-id-list=['tray']

[org/mate/panel/toplevels/bar]
expand=true
orientation='{self.edge()}'
size={BAR}
screen=0
monitor=0

[org/mate/panel/toplevels/bar/background]
type='color'
color='rgb(51,51,51)'

[org/mate/panel/objects/tray]
object-type='applet'
applet-iid='NotificationAreaAppletFactory::NotificationArea'
toplevel-id='bar'
position=0
panel-right-stick=true
locked=true
""")


class Tint2(Panel):
    name = "tint2"
    program = "tint2"
    has_watcher = False
    further_buttons = (2, 3)
    shows_menus = False

    def configure(self, config_home):
        write(config_home, "tint2/tint2rc", f"""rounded = 0
border_width = 0
background_color = #333333 100
panel_items = FS
panel_size = 100% {BAR}
panel_position = {'center left vertical' if self.at_left else f'{self.edge()} center horizontal'}
panel_background_id = 1
panel_dock = 0
wm_menu = 0
strut_policy = follow_size
systray_padding = 2 2 2
systray_icon_size = 24
""")

    def commands(self, config_home):
        return [[self.program, "-c", os.path.join(config_home, "tint2/tint2rc")]]


class Lxqt(Panel):
    name = "lxqt"
    program = "lxqt-panel"
    environment = {"XDG_CURRENT_DESKTOP": "LXQt"}

    def configure(self, config_home):
        write(config_home, "lxqt/panel.conf", f"""[General]
__userfile__=true
panels=bar

[bar]
plugins=statusnotifier
position={self.edge().capitalize()}
panelSize={BAR}
width=100
width-percent=true
background-color=#333333
opacity=100
animation-duration=0

[statusnotifier]
alignment=Right
type=statusnotifier
""")


class Cinnamon(Panel):
    """A panel and a window manager in one program."""

    name = "cinnamon"
    program = "cinnamon"
    helpers = ("xapp-sn-watcher",)
    environment = {"XDG_CURRENT_DESKTOP": "X-Cinnamon", "GSETTINGS_BACKEND": "keyfile", "LIBGL_ALWAYS_SOFTWARE": "1"}
    manages_windows = True
    shortcut = ("Alt_L", "Super_L", "b")  # what is pressed after Super alone never leaves it: that opens its menu

    def configure(self, config_home):
        write(config_home, "glib-2.0/settings/keyfile", f"""[org/cinnamon]
enabled-applets=['panel1:left:0:menu@cinnamon.org:0','panel1:right:0:xapp-status@cinnamon.org:1']
app-menu-icon-name=''
app-menu-label=''
panels-enabled=['1:0:{self.edge()}']
panels-height=['1:{BAR}']
desktop-effects=false
desktop-effects-on-dialogs=false
desktop-effects-on-menus=false
enable-vfade=false
startup-animation=false

[org/cinnamon/theme]
name='bar'

[org/cinnamon/desktop/background]
picture-options='none'
primary-color='#000000'
""")
        write(config_home, "../data/themes/bar/cinnamon/cinnamon.css", """@import url("/usr/share/cinnamon/theme/cinnamon.css");
#panel { background-color: #333333; border: 0; box-shadow: none; }
""")

    def commands(self, config_home):
        return [["/usr/libexec/xapps/sn-watcher/xapp-sn-watcher"], [self.program]]


PANELS = {panel.name: panel for panel in (Xfce, Mate, Lxqt, Tint2, Cinnamon)}
