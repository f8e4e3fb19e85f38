"""Fake services of the session bus, which record the calls that they get."""

import threading

import gi

gi.require_version("Gio", "2.0")
from gi.repository import Gio, GLib

from .waiting import until


class FakeService:
    """A service with one object. `answer(sender, method, arguments)` returns the reply to a call as a variant; it runs on
    a thread of its own, so that the program never waits for the test."""

    def __init__(self, bus, name, path, interface):
        self.bus = bus
        self.calls = []  # the methods called so far
        threading.Thread(target=self._serve, args=(name, path, interface), daemon=True).start()
        until("the service owns its bus name", lambda: bus.has(name))

    def _serve(self, name, path, interface):
        context = GLib.MainContext()
        context.push_thread_default()
        connection = self.bus.connect()
        connection.register_object(path, Gio.DBusNodeInfo.new_for_xml(interface).interfaces[0], self._handle)
        Gio.bus_own_name_on_connection(connection, name, Gio.BusNameOwnerFlags.NONE, None, None)
        GLib.MainLoop.new(context, False).run()

    def _handle(self, _connection, sender, _path, _interface, method, arguments, invocation):
        self.calls.append(method)
        invocation.return_value(self.answer(sender, method, arguments.unpack()))

    def answer(self, sender, method, arguments):
        raise NotImplementedError


class NotificationService(FakeService):
    INTERFACE = """<node><interface name="org.freedesktop.Notifications">
      <method name="GetCapabilities"><arg type="as" direction="out"/></method>
      <method name="Notify">
        <arg type="s" direction="in"/><arg type="u" direction="in"/><arg type="s" direction="in"/>
        <arg type="s" direction="in"/><arg type="s" direction="in"/><arg type="as" direction="in"/>
        <arg type="a{sv}" direction="in"/><arg type="i" direction="in"/><arg type="u" direction="out"/>
      </method>
    </interface></node>"""

    def __init__(self, bus):
        super().__init__(bus, "org.freedesktop.Notifications", "/org/freedesktop/Notifications", self.INTERFACE)

    def answer(self, sender, method, arguments):
        return GLib.Variant("(as)", ([],)) if method == "GetCapabilities" else GLib.Variant("(u)", (1,))


class PowerManagement(FakeService):
    """What keeps the computer awake on request."""

    INTERFACE = """<node><interface name="org.freedesktop.PowerManagement.Inhibit">
      <method name="Inhibit">
        <arg type="s" direction="in"/><arg type="s" direction="in"/><arg type="u" direction="out"/>
      </method>
      <method name="UnInhibit"><arg type="u" direction="in"/></method>
    </interface></node>"""

    def __init__(self, bus):
        self._owners = {}  # by cookie
        self._last_cookie = 0
        super().__init__(bus, "org.freedesktop.PowerManagement", "/org/freedesktop/PowerManagement/Inhibit",
                         self.INTERFACE)

    def answer(self, sender, method, arguments):
        if method == "UnInhibit":
            self._owners.pop(arguments[0], None)
            return None
        self._last_cookie += 1
        self._owners[self._last_cookie] = sender
        return GLib.Variant("(u)", (self._last_cookie,))

    def held(self):
        """How many inhibitions are in force: until they are given back, or their owner leaves the bus."""
        return sum(self.bus.has(owner) for owner in list(self._owners.values()))
