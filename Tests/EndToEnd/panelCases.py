"""Tests that must pass in every panel. Each function test_… runs once for each panel."""

import signal
import time

from Xlib import X
from Xlib.ext import xtest

from harness.bus import StatusItems
from harness.desktop import Desktop
from harness.waiting import expect, expect_equal, stays, until

TEXT = "Tallyfox, 43 percent used"


def started(surroundings, panel, *arguments):
    """A desktop with a panel in which the program runs and shows the answer of `codex`."""
    desktop = Desktop(surroundings, panel)
    desktop.start_panel()
    agent = desktop.start_agent(*arguments)
    desktop.item_box()
    return desktop, agent


def expect_beside_item(desktop, popover, item):
    expect(desktop.work_area.contains(popover), f"the popover at {popover} leaves the work area {desktop.work_area}")
    expect(popover.x <= item.middle[0] <= popover.right, f"the popover at {popover} is not at the item at {item}")
    gap = desktop.bar.y - popover.bottom if desktop.panel.at_bottom else popover.y - desktop.bar.bottom
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
    desktop.display.move((5, desktop.display.box.height // 2))
    until("the number in the panel follows", lambda: desktop.item_picture().data != first.data)
    if panel.has_watcher:
        expect_equal(desktop.items.one(), address, "item")


def test_pointerOverTheItemShowsTheTooltip(surroundings, panel):
    desktop, _ = started(surroundings, panel)
    item = desktop.item_box()
    before = len(desktop.display.overlays())
    moved = [0.0]

    def tooltip():
        # Panels wait until the pointer has moved and then rests.
        if time.monotonic() - moved[0] > 2:
            desktop.display.move((item.middle[0] - 4, item.middle[1]))
            desktop.display.move(item.middle)
            moved[0] = time.monotonic()
        return len(desktop.display.overlays()) > before
    until("a tooltip is shown", tooltip)


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
    empty_place = (5, desktop.display.box.height - 60)
    for close in (lambda: desktop.display.click(item.middle), lambda: desktop.display.click(empty_place),
                  lambda: desktop.display.press("Escape")):
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


def test_popoverOpensAboveAPanelAtTheBottom(surroundings, panel):
    panel.at_bottom = True
    desktop, agent = started(surroundings, panel)
    opened(desktop, agent, desktop.item_box())


def test_shortcutWorksWhateverLocksAreOn(surroundings, panel):
    desktop, agent = started(surroundings, panel)
    for locks in (0, X.Mod2Mask, X.LockMask, X.LockMask | X.Mod2Mask):
        desktop.display.set_locks(locks)
        desktop.display.press("Super_L", "Alt_L", "b")
        agent.opened_popover()
        desktop.display.press("Super_L", "Alt_L", "b")
        agent.closed_popover()


def test_panelStartedLaterShowsTheItem(surroundings, panel):
    desktop = Desktop(surroundings, panel)
    agent = desktop.start_agent()
    until("the agent owns its bus name", lambda: desktop.bus.has("org.tallyfox.tallyfox"))
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
    for _ in range(restarts):
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


def test_secondStartShowsThePopover(surroundings, panel):
    desktop, agent = started(surroundings, panel)
    for _ in range(2):  # an open popover stays open
        status, output, _ = desktop.run()
        expect_equal((status, output), (0, ""), "status and output of the second start")
        agent.opened_popover()
    expect(desktop.work_area.contains(agent.popover()), "the popover leaves the work area")
    desktop.display.press("Escape")
    agent.closed_popover()


def test_toggleOpensAndCloses(surroundings, panel):
    desktop, agent = started(surroundings, panel)
    for expect_state in (agent.opened_popover, agent.closed_popover, agent.opened_popover):
        status, output, _ = desktop.run("--toggle")
        expect_equal((status, output), (0, ""), "status and output of --toggle")
        expect_state()


def test_signalEndsTheProgramAndRemovesTheItem(surroundings, panel):
    for by in (signal.SIGTERM, signal.SIGINT):
        if by == signal.SIGTERM:
            desktop, agent = started(surroundings, panel)
        else:
            agent = desktop.start_agent()
        opened(desktop, agent, desktop.item_box())
        agent.end(by)
        desktop.display.move((5, desktop.display.box.height // 2))
        until("the item is gone", lambda: not desktop.has_item())
        agent.expect_output([])
