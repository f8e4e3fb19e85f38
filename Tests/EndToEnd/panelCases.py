"""Tests that must pass in every panel. Each function test_… runs once for each panel."""

import os
import signal
import time

from Xlib import X
from Xlib.ext import xtest

from harness.bus import StatusItems
from harness.desktop import ROOT_COLOUR, Desktop
from harness.waiting import expect, expect_equal, settled, stays, until

TEXT = "Tallyfox, 43 percent used"


def started(surroundings, panel, *arguments):
    """A desktop with a panel that shows the item of the program."""
    desktop = Desktop(surroundings, panel)
    desktop.start_panel()
    agent = desktop.start_agent(*arguments)
    if panel.has_watcher:
        desktop.items.one()
    until("the item is drawn", desktop.has_item)
    return desktop, agent


def away(desktop):
    """A place with nothing at it."""
    return 5, desktop.display.box.height // 2


def expect_beside_item(desktop, popover, item):
    expect(desktop.work_area.contains(popover), f"the popover at {popover} leaves the work area {desktop.work_area}")
    if desktop.panel.at_left:
        begin, middle, end = popover.y, item.middle[1], popover.bottom
    else:
        begin, middle, end = popover.x, item.middle[0], popover.right
    expect(begin <= middle <= end, f"the popover at {popover} is not at the item at {item}")
    gaps = {"top": popover.y - desktop.bar.bottom, "bottom": desktop.bar.y - popover.bottom,
            "left": popover.x - desktop.bar.right}
    gap = gaps[desktop.panel.edge()]
    expect(0 <= gap <= 16, f"{gap} pixels between the bar and the popover")


def opened(desktop, agent, item):
    desktop.display.click(item.middle)
    popover = agent.opened_popover()
    expect_beside_item(desktop, popover, item)
    return popover


def test_itemShowsTextAndNumberOnce(surroundings, panel):
    desktop, agent = started(surroundings, panel)
    if panel.has_watcher:
        address = desktop.items.one()
        until("the title shows the percentage", lambda: desktop.items.property(address, "Title") == TEXT)
        expect_equal(desktop.items.property(address, "XAyatanaLabel"), " 43%", "label")
        expect(TEXT in desktop.items.property(address, "ToolTip")[2:], "the tooltip does not show the percentage")
    first = desktop.item_picture()
    expect(first.box.width < 2 * first.box.height + 20, f"more than one item at {first.box}")

    # The panel's pixels show the number: another number looks different.
    surroundings.codex.set_percent(87.5)
    opened(desktop, agent, first.box)
    if panel.has_watcher:
        until("the title follows", lambda: "88 percent" in desktop.items.property(address, "Title"))
    desktop.display.press("Escape")
    agent.closed_popover()
    desktop.display.move(away(desktop))
    until("the number in the panel follows", lambda: desktop.item_picture().data != first.data)
    if panel.has_watcher:
        expect_equal(desktop.items.one(), address, "item")


def hovered_picture(desktop, item):
    """Moves the pointer onto the item, and returns the picture of the tooltip."""
    desktop.display.move(away(desktop))
    until("there is no tooltip", lambda: not desktop.display.picture(desktop.work_area).outline(ROOT_COLOUR))
    moved = [0.0]

    def tooltip():
        # Panels wait until the pointer has moved and then rests.
        if time.monotonic() - moved[0] > 2:
            desktop.display.move((item.middle[0] - 4, item.middle[1]))
            desktop.display.move(item.middle)
            moved[0] = time.monotonic()
        box = desktop.display.picture(desktop.work_area).outline(ROOT_COLOUR)
        return (box, desktop.display.picture(box).data) if box else None
    return settled("a tooltip is shown", tooltip)


def test_tooltipFollowsThePercentage(surroundings, panel):
    desktop, agent = started(surroundings, panel)
    item = desktop.item_box()
    # The first tooltip may be there before the answer of `codex`.
    until("the same tooltip looks the same", lambda: hovered_picture(desktop, item) == hovered_picture(desktop, item))
    first = hovered_picture(desktop, item)
    surroundings.codex.set_percent(87.5)
    opened(desktop, agent, item)
    desktop.display.press("Escape")
    agent.closed_popover()
    until("the tooltip follows", lambda: hovered_picture(desktop, item) != first)


def test_slowClickOpensAPopoverThatAClickOutsideCloses(surroundings, panel):
    desktop, agent = started(surroundings, panel)
    # Some panels report the press, while they still have the pointer, and some the release.
    desktop.display.move(desktop.item_box().middle)
    xtest.fake_input(desktop.display.x, X.ButtonPress, 1)
    desktop.display.x.sync()
    stays("the program is running", agent.is_running, 0.5)
    xtest.fake_input(desktop.display.x, X.ButtonRelease, 1)
    desktop.display.x.sync()
    agent.opened_popover()
    stays("the popover is open", agent.popover, 0.5)
    desktop.display.click((5, desktop.display.box.height - 60))
    agent.closed_popover()


def test_clickOpensAndClosesThePopover(surroundings, panel):
    desktop, agent = started(surroundings, panel)
    item = desktop.item_box()
    wallpaper = (5, desktop.display.box.height - 60)
    for close in (lambda: desktop.display.click(item.middle), lambda: desktop.display.click(wallpaper),
                  lambda: desktop.display.click(desktop.bar.middle), lambda: desktop.display.press("Escape")):
        opened(desktop, agent, item)
        close()
        agent.closed_popover()
    opened(desktop, agent, item)
    agent.expect_output([])


def test_everyForwardedButtonTogglesThePopover(surroundings, panel):
    desktop, agent = started(surroundings, panel)
    item = desktop.item_box()
    for button in panel.further_buttons:
        desktop.display.click(item.middle, button)
        agent.opened_popover()
        desktop.display.click(item.middle, button)
        agent.closed_popover()


def opened_menu(desktop, agent, item):
    """Opens the item's menu and waits until all its lines are drawn."""
    desktop.display.click(item.middle, 3)
    lines = 7 * 16  # pixels

    def drawn():
        box = desktop.display.picture(desktop.work_area).outline(ROOT_COLOUR)
        return box if box and box.height > lines else None
    settled("a menu of all lines is open", drawn)
    expect(not agent.popover(), "the popover opens with the menu")


def test_rightClickOpensTheMenuWherePanelsShowOne(surroundings, panel):
    desktop, agent = started(surroundings, panel)
    item = desktop.item_box()
    if not panel.shows_menus:
        desktop.display.click(item.middle, 3)
        agent.opened_popover()
        return
    address = desktop.items.one()

    def choose(entry):
        opened_menu(desktop, agent, item)
        for _ in range(entry + 1):  # the figures cannot be chosen
            desktop.display.press("Down")
        desktop.screenshot(f"menu{entry}")
        desktop.display.press("Return")
    choose(0)
    agent.opened_popover()
    desktop.display.press("Escape")
    agent.closed_popover()
    surroundings.codex.set_percent(87.5)
    choose(1)
    until("the entry refreshes", lambda: "88 percent" in desktop.items.property(address, "Title"))
    choose(2)
    until("the settings are open", lambda: "Tallyfox Settings" in desktop.display.titles_of(agent.pid))
    desktop.display.close(agent.pid, "Tallyfox Settings")
    until("the settings are closed", lambda: not desktop.display.titles_of(agent.pid))
    # A menu that is closed without a choice leaves the next click to the item.
    opened_menu(desktop, agent, item)
    desktop.display.press("Escape")
    agent.closed_popover()
    opened(desktop, agent, item)
    agent.expect_output([])


def test_popoverOpensAboveAPanelAtTheBottom(surroundings, panel):
    panel.at_bottom = True
    desktop, agent = started(surroundings, panel)
    opened(desktop, agent, desktop.item_box())


def test_popoverOpensBesideAPanelOnTheLeft(surroundings, panel):
    panel.at_left = True
    desktop, agent = started(surroundings, panel)
    opened(desktop, agent, desktop.item_box())


def test_panelStartedLaterShowsTheItem(surroundings, panel):
    desktop = Desktop(surroundings, panel)
    agent = desktop.start_agent()
    until("the agent owns its bus name", desktop.has_agent)
    stays("the program is running without a panel", agent.is_running, 0.5)
    desktop.start_panel()
    item = desktop.item_box()
    if panel.has_watcher:
        desktop.items.one()
    opened(desktop, agent, item)


def test_restartedPanelShowsTheItemAgain(surroundings, panel):
    desktop, agent = started(surroundings, panel)
    registrations = desktop.bus.count_signals(StatusItems.WATCHER, "StatusNotifierItemRegistered")
    restarts = 5
    for restart in range(restarts):
        if restart == 0 and panel.shows_menus:
            opened_menu(desktop, agent, desktop.item_box())
        desktop.kill_panel()
        desktop.start_panel()
        if panel.has_watcher:
            desktop.items.one()
        else:
            desktop.item_box()
    if panel.has_watcher:
        expect_equal(registrations(), restarts, "registrations")
    item = desktop.item_box()
    expect(item.width < 2 * item.height + 20, f"more than one item at {item}")
    opened(desktop, agent, item)
    agent.expect_output([])


def test_secondStartToggleAndShortcutReachTheRunningProgram(surroundings, panel):
    desktop, agent = started(surroundings, panel)

    def run(*arguments):
        status, output, _ = desktop.run(*arguments)
        expect_equal((status, output), (0, ""), f"status and output of a second start with {arguments}")
    for _ in range(2):  # an open popover stays open
        run()
        agent.opened_popover()
    expect(desktop.work_area.contains(agent.popover()), "the popover leaves the work area")
    for toggle in (lambda: run("--toggle"), lambda: desktop.display.press(*desktop.shortcut)):
        toggle()
        agent.closed_popover()
        toggle()
        agent.opened_popover()
    desktop.display.press("Escape")
    agent.closed_popover()


def test_signalEndsTheProgramAndNothingIsLeft(surroundings, panel):
    desktop = Desktop(surroundings, panel)
    desktop.start_panel()
    for by in (signal.SIGTERM, signal.SIGINT):
        agent = desktop.start_agent()
        opened(desktop, agent, desktop.item_box())
        expect(desktop.has_agent(), "the program has no bus name")
        agent.end(by)
        desktop.display.move(away(desktop))
        until("the item is gone", lambda: not desktop.has_item())
        expect(not desktop.has_agent(), "the bus name has not been given back")
        left = [name for name in os.listdir(surroundings.runtime) if "tallyfox" in name]
        expect_equal(left, [], "files in the runtime folder")
        agent.expect_output([])
