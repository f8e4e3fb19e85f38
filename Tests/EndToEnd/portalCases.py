"""The global shortcut by way of the desktop portal, for desktops on Wayland that have one."""

import os

from harness.panels import write
from harness.reader import Reader
from harness.waiting import expect, expect_equal, stays, until
from harness.wayland import NATIVE_NAME

SETTINGS = "Tallyfox Settings"
BUTTON = "Set Up Global Shortcut…"
ENTRY = os.path.join(os.path.dirname(__file__), "../../packaging/org.tallyfox.tallyfox.desktop")


def install_entry(surroundings):
    """The desktop entry as if the program were installed: the portal knows applications by it."""
    program = surroundings.options.program
    with open(ENTRY, encoding="utf-8") as file:
        entry = file.read().replace("Exec=tallyfox", f"Exec={program}")
    write(surroundings.processes.environment["XDG_DATA_HOME"], f"applications/{os.path.basename(ENTRY)}", entry)


def test_shortcutIsSetUpWhenTheUserWantsIt(surroundings, desktop):
    install_entry(surroundings)
    desktop.bus.offer(Reader.SERVICE)
    desktop.start_portal()
    calls = desktop.bus.record_calls()

    def count(method):
        return [called for _, _, called in calls()].count(method)
    agent = desktop.start_agent("--settings", environment=Reader.ENVIRONMENT)
    window = Reader(desktop).window(agent.pid, SETTINGS)

    def button():
        return next((element for element in window.shown() if element.name == BUTTON), None)
    if not desktop.portal_has_shortcuts:
        stays("there is no button", lambda: not button(), 1)
        return
    until("there is a button", button)
    expect_equal((count("CreateSession"), count("BindShortcuts")), (0, 0), "calls before it is pressed")

    button().activate()
    desktop.grant_shortcut()
    until("the button is gone", lambda: not button())
    desktop.focus_native_window()
    for expect_state in (agent.opened_popover, agent.closed_popover):
        desktop.display.press("Super_L", "Alt_L", "b")
        expect_state()
    agent.expect_output([])
