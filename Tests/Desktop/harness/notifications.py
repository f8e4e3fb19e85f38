"""A notification service of the test's own."""

import gi

gi.require_version("Gio", "2.0")
from gi.repository import Gio, GLib

INTERFACE = """<node><interface name="org.freedesktop.Notifications">
  <method name="GetCapabilities"><arg type="as" direction="out"/></method>
  <method name="Notify">
    <arg type="s" direction="in"/><arg type="u" direction="in"/><arg type="s" direction="in"/>
    <arg type="s" direction="in"/><arg type="s" direction="in"/><arg type="as" direction="in"/>
    <arg type="a{sv}" direction="in"/><arg type="i" direction="in"/><arg type="u" direction="out"/>
  </method>
</interface></node>"""


class NotificationService:
    def __init__(self, bus):
        self._calls = []
        self._connection = bus.connect()
        self._connection.register_object("/org/freedesktop/Notifications",
                                         Gio.DBusNodeInfo.new_for_xml(INTERFACE).interfaces[0], self._answer)
        self._connection.call_sync("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", "RequestName",
                                   GLib.Variant("(su)", ("org.freedesktop.Notifications", 0)), None,
                                   Gio.DBusCallFlags.NONE, -1, None)

    def _answer(self, _connection, _sender, _path, _interface, method, _arguments, invocation):
        self._calls.append(method)
        invocation.return_value(GLib.Variant("(as)", ([],)) if method == "GetCapabilities" else GLib.Variant("(u)", (1,)))

    def calls(self):
        """The methods that were called so far, each answered by now."""
        while GLib.MainContext.default().iteration(False):
            pass
        return list(self._calls)
