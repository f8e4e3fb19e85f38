"""The windows of the program as a screen reader has them before it, on the accessibility bus of the test's desktop."""

import os
import warnings

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi, GLib

from .waiting import Failure, until

ACTIVATIONS = ("press", "toggle", "click", "select")  # what toolkits call a mouse click
ANSWER_LIMIT = 5000  # milliseconds


class Element:
    """What a screen reader knows of one element. Asked anew each time: nothing is remembered."""

    def __init__(self, accessible):
        self._accessible = accessible

    @property
    def name(self):
        return self._accessible.get_name() or ""

    @property
    def called(self):
        """What a reader says it is: the label that stands at it, where there is one, or its own name."""
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
        """What a screen reader offers instead of a click."""
        with warnings.catch_warnings():
            warnings.simplefilter("ignore", DeprecationWarning)  # the toolkit does not answer to what replaces it
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
        """The element and all those below it that are shown, in the order of the tree."""
        yield self
        for child in self.children():
            if child.has("visible"):
                yield from child.shown()


class Reader:
    """One for each test: the connection belongs to the process. The program must be told to speak to readers."""

    ENVIRONMENT = {"QT_LINUX_ACCESSIBILITY_ALWAYS_ON": "1"}  # of the program
    SERVICE = "org.a11y.Bus"  # which the session bus must be able to start

    def __init__(self, desktop):
        os.environ["DISPLAY"] = desktop.display.name
        os.environ["DBUS_SESSION_BUS_ADDRESS"] = desktop.bus.address
        Atspi.init()
        Atspi.set_timeout(ANSWER_LIMIT, ANSWER_LIMIT)

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
        """The window with that title, once it is shown."""
        def shown():
            try:
                return next((window for window in self._windows(pid)
                             if window.name == title and window.has("visible")), None)
            except GLib.Error:  # the program has not said yet what it is, or says so no more
                return None
        return until(f"a screen reader finds the window {title}", shown)
