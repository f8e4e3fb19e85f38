"""A real session bus for one test, which starts only the services that the test's desktop consists of."""

import os

import gi

gi.require_version("Gio", "2.0")
from gi.repository import Gio, GLib

from .waiting import Failure, expect, until

CONFIGURATION = """<!DOCTYPE busconfig PUBLIC "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN"
 "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig>
  <type>session</type>
  <listen>unix:tmpdir={folder}</listen>
  <servicedir>{services}</servicedir>
  <policy context="default">
    <allow send_destination="*" eavesdrop="true"/>
    <allow eavesdrop="true"/>
    <allow own="*"/>
  </policy>
</busconfig>
"""

CALL_TIMEOUT = 10_000  # milliseconds


class Bus:
    def __init__(self, processes, services, name="bus"):
        """`services`: names of this machine's service files that the bus may start. `name`: of its folder and log."""
        self._processes = processes
        folder = os.path.join(processes.folder, name)
        self._links = os.path.join(folder, "services")
        os.makedirs(self._links)
        for service in services:
            self._link(service)
        configuration = os.path.join(folder, "bus.conf")
        with open(configuration, "w", encoding="utf-8") as file:
            file.write(CONFIGURATION.format(folder=folder, services=self._links))
        reader, writer = os.pipe()
        processes.start(name, ["dbus-daemon", "--nofork", f"--config-file={configuration}",
                                f"--print-address={writer}"], pass_fds=[writer])
        os.close(writer)
        with os.fdopen(reader, encoding="utf-8") as addresses:
            self.address = addresses.readline().strip()
        if not self.address:
            raise Failure("dbus-daemon printed no address")
        self._connection = self.connect()

    def _link(self, service):
        source = f"/usr/share/dbus-1/services/{service}.service"
        if not os.path.exists(source):
            raise Failure(f"{source} is not installed: run scripts/bootstrap")
        os.symlink(source, os.path.join(self._links, f"{service}.service"))

    def offer(self, service):
        """Lets the bus start one more service."""
        self._link(service)
        self.call("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", "ReloadConfig")

    def connect(self):
        flags = Gio.DBusConnectionFlags.AUTHENTICATION_CLIENT | Gio.DBusConnectionFlags.MESSAGE_BUS_CONNECTION
        return Gio.DBusConnection.new_for_address_sync(self.address, flags, None, None)

    def call(self, name, path, interface, method, arguments=None, timeout=CALL_TIMEOUT):
        """Calls a method and returns its result as a tuple; an error reply raises GLib.Error."""
        reply = self._connection.call_sync(name, path, interface, method, arguments, None,
                                           Gio.DBusCallFlags.NO_AUTO_START, timeout, None)
        return reply.unpack()

    def property(self, name, path, interface, member):
        return self.call(name, path, "org.freedesktop.DBus.Properties", "Get",
                         GLib.Variant("(ss)", (interface, member)))[0]

    def count_signals(self, interface, member):
        """Counts signals of that name from now on; returns a function that returns the number so far."""
        seen = []
        self._connection.signal_subscribe(None, interface, member, None, None, Gio.DBusSignalFlags.NONE,
                                          lambda *signal: seen.append(signal))
        context = GLib.MainContext.default()

        def count():
            while context.iteration(False):
                pass
            return len(seen)
        return count

    def record_calls(self):
        """Records method calls on the bus from now on; returns a function that returns sender, interface and method of
        each so far."""
        recorder = self._processes.start("calls", ["dbus-monitor", "--profile", "--address", self.address])
        log = os.path.join(self._processes.folder, "calls.log")

        def calls():
            expect(recorder.poll() is None, "dbus-monitor has ended")
            with open(log, encoding="utf-8") as file:
                rows = [line.rstrip("\n").split("\t") for line in file if line.startswith("mc")]
            return [(row[-5], row[-2], row[-1]) for row in rows if len(row) == 8]
        until("calls are recorded", lambda: self.names() and calls())
        return calls

    def names(self):
        return self.call("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", "ListNames")[0]

    def unique_names(self):
        """The name of each connection."""
        return [name for name in self.names() if name.startswith(":")]

    def has(self, name):
        return self.call("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", "NameHasOwner",
                         GLib.Variant("(s)", (name,)))[0]

    def process_of(self, name):
        return self.call("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
                         "GetConnectionUnixProcessID", GLib.Variant("(s)", (name,)))[0]


class StatusItems:
    """The status items that are registered with the panel's watcher."""

    WATCHER = "org.kde.StatusNotifierWatcher"
    ITEM = "org.kde.StatusNotifierItem"

    def __init__(self, bus):
        self._bus = bus

    def addresses(self):
        """The bus name and object path of each registered item; none without a watcher."""
        try:
            items = self._bus.property(self.WATCHER, "/StatusNotifierWatcher", self.WATCHER,
                                       "RegisteredStatusNotifierItems")
        except GLib.Error:
            return []
        # GNOME's watcher writes an @ between the two.
        return [(item.partition("/")[0].rstrip("@"), "/" + item.partition("/")[2]) for item in items]

    def one(self):
        """Waits for an item and returns its address; fails if there are several."""
        found = until("a status item is registered", self.addresses)
        if len(found) != 1:
            raise Failure(f"{len(found)} status items are registered: {found}")
        return found[0]

    def property(self, address, member):
        return self._bus.property(*address, self.ITEM, member)

    def menu_texts(self, address):
        """The texts of the item's menu, from top to bottom; of a separator None."""
        layout = self._bus.call(address[0], self.property(address, "Menu"), "com.canonical.dbusmenu", "GetLayout",
                                GLib.Variant("(iias)", (0, -1, ["label"])))[1]
        return [properties.get("label") for _, properties, _ in layout[2]]
