"""A fake notification service."""

import gi

gi.require_version("Gio", "2.0")
from gi.repository import Gio, GLib

from .waiting import until

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
        Gio.bus_own_name_on_connection(self._connection, "org.freedesktop.Notifications", Gio.BusNameOwnerFlags.NONE,
                                       None, None)
        until("the service owns its bus name", lambda: self.calls() or bus.has("org.freedesktop.Notifications"))

    def _answer(self, _connection, _sender, _path, _interface, method, _arguments, invocation):
        self._calls.append(method)
        answer = GLib.Variant("(as)", ([],)) if method == "GetCapabilities" else GLib.Variant("(u)", (1,))
        invocation.return_value(answer)

    def calls(self):
        """The methods called so far. Answers pending calls first."""
        while GLib.MainContext.default().iteration(False):
            pass
        return list(self._calls)
