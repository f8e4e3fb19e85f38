"""The windows of the program as a screen reader finds them on the accessibility bus of the test's desktop."""

import os
import warnings

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi, GLib

from .waiting import Failure, until

ACTIVATIONS = ("press", "toggle", "click", "select")  # toolkits' names for a mouse click
PUSH_BUTTON = Atspi.role_get_name(Atspi.Role.PUSH_BUTTON)  # newer versions of the library call it a "button"
ANSWER_TIMEOUT = 5000  # milliseconds


class Element:
    """One element of the accessibility tree. Nothing is cached: each access asks the program."""

    def __init__(self, accessible):
        self._accessible = accessible

    @property
    def name(self):
        return self._accessible.get_name() or ""

    @property
    def spoken_name(self):
        """The name that a reader speaks: that of its label, if it has one, or its own."""
        for relation in self._accessible.get_relation_set():
            if relation.get_relation_type() == Atspi.RelationType.LABELLED_BY:
                return relation.get_target(0).get_name()
        return self.name

    @property
    def description(self):
        return self._accessible.get_description() or ""

    @property
    def role(self):
        return self._accessible.get_role_name()

    @property
    def value(self):
        return Atspi.Value.get_current_value(self._accessible)

    def has(self, state):
        return self._accessible.get_state_set().contains(getattr(Atspi.StateType, state.upper()))

    @property
    def is_on(self):
        return self.has("checked")

    def set_value(self, value):
        Atspi.Value.set_current_value(self._accessible, value)

    def activate(self):
        """Does what a screen reader offers instead of a click."""
        with warnings.catch_warnings():
            warnings.simplefilter("ignore", DeprecationWarning)  # the toolkit does not support the replacement
            for place in range(self._accessible.get_n_actions()):
                if Atspi.Action.get_action_name(self._accessible, place).casefold() in ACTIVATIONS:
                    Atspi.Action.do_action(self._accessible, place)
                    return
        raise Failure(f"{self.name}, a {self.role}, cannot be activated")

    def focus(self):
        Atspi.Component.grab_focus(self._accessible)

    def children(self):
        for place in range(self._accessible.get_child_count()):
            child = self._accessible.get_child_at_index(place)
            if child:
                yield Element(child)

    def shown(self):
        """This element and all visible ones below it, in the order of the tree."""
        yield self
        for child in self.children():
            if child.has("visible"):
                yield from child.shown()


class Reader:
    """The connection to the accessibility bus. One for each test, because it belongs to the process."""

    ENVIRONMENT = {"QT_LINUX_ACCESSIBILITY_ALWAYS_ON": "1"}  # makes the program talk to readers
    SERVICE = "org.a11y.Bus"  # the session bus must be able to start it

    def __init__(self, desktop):
        os.environ["DISPLAY"] = desktop.display.name
        os.environ["DBUS_SESSION_BUS_ADDRESS"] = desktop.bus.address
        Atspi.init()
        Atspi.set_timeout(ANSWER_TIMEOUT, ANSWER_TIMEOUT)

    def _windows(self, pid):
        desktop = Atspi.get_desktop(0)
        while GLib.MainContext.default().iteration(False):
            pass
        for place in range(desktop.get_child_count()):
            application = desktop.get_child_at_index(place)
            if application and application.get_process_id() == pid:
                application.set_cache_mask(Atspi.Cache.NONE)
                application.clear_cache()
                yield from Element(application).children()

    def window(self, pid, title):
        """Waits for the window with that title."""
        def shown():
            try:
                return next((window for window in self._windows(pid)
                             if window.name == title and window.has("visible")), None)
            except GLib.Error:  # the program is not on the bus yet, or no longer
                return None
        return until(f"a screen reader finds the window {title}", shown)
