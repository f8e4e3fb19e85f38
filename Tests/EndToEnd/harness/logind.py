"""A fake of systemd-logind on a system bus of the test's own: grants inhibitions, and knows which ones are held."""

import os
import select
import threading

import gi

gi.require_version("Gio", "2.0")
from gi.repository import Gio, GLib

from .waiting import Failure

NAME = "org.freedesktop.login1"
MANAGER = "/org/freedesktop/login1"
SESSION = "/org/freedesktop/login1/session/c1"

# As much as compositors ask for at their start.
INTERFACES = """<node>
  <interface name="org.freedesktop.login1.Manager">
    <method name="Inhibit">
      <arg type="s" direction="in"/><arg type="s" direction="in"/><arg type="s" direction="in"/>
      <arg type="s" direction="in"/><arg type="h" direction="out"/>
    </method>
    <method name="ListInhibitors"><arg type="a(ssssuu)" direction="out"/></method>
    <method name="CanSuspend"><arg type="s" direction="out"/></method>
    <method name="CanPowerOff"><arg type="s" direction="out"/></method>
    <method name="CanReboot"><arg type="s" direction="out"/></method>
    <method name="CanHibernate"><arg type="s" direction="out"/></method>
    <method name="GetSessionByPID"><arg type="u" direction="in"/><arg type="o" direction="out"/></method>
    <method name="GetSession"><arg type="s" direction="in"/><arg type="o" direction="out"/></method>
    <property name="BlockInhibited" type="s" access="read"/>
    <property name="IdleHint" type="b" access="read"/>
  </interface>
  <interface name="org.freedesktop.login1.Session">
    <method name="SetLockedHint"><arg type="b" direction="in"/></method>
    <method name="SetIdleHint"><arg type="b" direction="in"/></method>
    <property name="Active" type="b" access="read"/>
    <property name="Class" type="s" access="read"/>
    <property name="Id" type="s" access="read"/>
    <property name="LockedHint" type="b" access="read"/>
    <property name="State" type="s" access="read"/>
    <property name="Type" type="s" access="read"/>
  </interface>
</node>"""
PROPERTIES = {
    "BlockInhibited": GLib.Variant("s", ""), "IdleHint": GLib.Variant("b", False),
    "Active": GLib.Variant("b", True), "Class": GLib.Variant("s", "user"), "Id": GLib.Variant("s", "c1"),
    "LockedHint": GLib.Variant("b", False), "State": GLib.Variant("s", "active"),
    "Type": GLib.Variant("s", "wayland"),
}


class FakeLogind:
    """Answers on a thread of its own, because compositors wait for it while the test waits for them."""

    def __init__(self, bus):
        self._bus = bus
        self._held = {}
        self._ready = threading.Event()
        threading.Thread(target=self._run, daemon=True).start()
        if not self._ready.wait(10):
            raise Failure("the fake of logind has not started")

    def _run(self):
        context = GLib.MainContext.new()
        context.push_thread_default()
        connection = self._bus.connect()
        manager, session = Gio.DBusNodeInfo.new_for_xml(INTERFACES).interfaces
        for path, interface in ((MANAGER, manager), (SESSION, session)):
            connection.register_object(path, interface, self._answer, self._property, None)
        Gio.bus_own_name_on_connection(connection, NAME, Gio.BusNameOwnerFlags.NONE,
                                       lambda *_: self._ready.set(), None)
        GLib.MainLoop.new(context, False).run()

    @staticmethod
    def _property(_connection, _sender, _path, _interface, name):
        return PROPERTIES[name]

    def _answer(self, _connection, _sender, _path, _interface, method, arguments, invocation):
        if method == "Inhibit":
            self._inhibit(arguments.unpack(), invocation)
        elif method == "ListInhibitors":
            invocation.return_value(GLib.Variant("(a(ssssuu))", ([],)))
        elif method.startswith("GetSession"):
            invocation.return_value(GLib.Variant("(o)", (SESSION,)))
        elif method.startswith("Can"):
            invocation.return_value(GLib.Variant("(s)", ("no",)))
        else:
            invocation.return_value(None)

    def _inhibit(self, request, invocation):
        kept, given = os.pipe()
        self._held[kept] = request
        files = Gio.UnixFDList.new()
        handle = files.append(given)
        os.close(given)
        invocation.return_value_with_unix_fd_list(GLib.Variant("(h)", (handle,)), files)

    def blockers(self):
        """Who keeps the computer awake; not those who only delay its sleep, as GNOME Shell does."""
        return [who for _, who, _, mode in self.held() if mode == "block"]

    def held(self):
        """What, who, why and mode of each inhibition in force. One ends when its holder closes the file."""
        poll = select.poll()
        for kept in list(self._held):
            poll.register(kept, 0)
        for closed, _ in poll.poll(0):
            del self._held[closed]
            os.close(closed)
        return list(self._held.values())
