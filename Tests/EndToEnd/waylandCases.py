"""Tests that must pass on every Wayland desktop. Each function test_… runs once for each. A session takes seconds to
start, so situations share one."""

import os

from harness.pictures import Box
from harness.waiting import expect, expect_equal, settled, stays, until
from harness.wayland import EMPTY_PLACE, NATIVE_BOX, NATIVE_COLOUR, NATIVE_NAME

BUS_NAME = "org.tallyfox.tallyfox"
POPOVER = "Tallyfox"
SETTINGS = "Tallyfox Settings"
AFTER_FOCUS_LOSS = 0.5  # seconds: without X, an earlier click on the item counts as the one that has closed the popover


def started(desktop):
    """Starts the panel and the program, and returns the program and the item's box."""
    desktop.start_panel()
    agent = desktop.start_agent()
    return agent, desktop.item_box()


def expect_place(desktop, popover, item):
    expect(desktop.display.box.contains(popover), f"the popover at {popover} leaves the screen")
    if desktop.centres_windows:
        return
    bar = desktop.bar
    gap = bar.y - popover.bottom if desktop.panel.at_bottom else popover.y - bar.bottom
    expect(0 <= gap <= 16, f"{gap} pixels between the bar and the popover at {popover}")
    expect(popover.x <= item.middle[0] <= popover.right, f"the popover at {popover} is not at the item at {item}")


def opened(desktop, agent, item):
    desktop.click_item(item)
    popover = agent.opened_popover()
    expect_place(desktop, popover, item)
    return popover


def expect_focus(desktop, title):
    # The X server inside learns a little later what the compositor has decided.
    settled(f"{title} has the keyboard", lambda: desktop.focused() == title)


def focused_popover(desktop, agent):
    popover = agent.opened_popover()
    expect_focus(desktop, POPOVER)
    return popover


def expect_keyboard(desktop, agent, popover):
    """Types into the popover, which must get it instead of the window that had the keyboard before."""
    before = len(desktop.native_lines())
    picture = settled("the popover is drawn", lambda: desktop.display.picture(popover).data)
    desktop.display.press("Tab")
    until("the focus moves", lambda: desktop.display.picture(popover).data != picture)
    desktop.display.press("Escape")
    agent.closed_popover()
    typed = [line for line in desktop.native_lines()[before:] if line.startswith("key")]
    expect(not typed, f"keys reached the window behind: {typed}")


def expect_success(desktop, *arguments):
    status, output, _ = desktop.run(*arguments)
    expect_equal((status, output), (0, ""), f"status and output of {arguments or 'a second start'}")


def runtime_files(surroundings):
    folder = surroundings.processes.environment["XDG_RUNTIME_DIR"]
    return {os.path.join(place, name) for place, folders, files in os.walk(folder) for name in [*folders, *files]}


def test_startShowsTheItemAndNothingElseAndTheEndLeavesNothing(surroundings, desktop):
    desktop.start_panel()
    desktop.rest()
    files, windows = runtime_files(surroundings), desktop.windows()
    calls = desktop.bus.record_calls()
    agent = desktop.start_agent()
    picture = desktop.item_picture()
    address = desktop.items.one()
    until("the title shows the percentage",
          lambda: desktop.items.property(address, "Title") == "Tallyfox, 43 percent used")
    expect_equal(desktop.items.property(address, "XAyatanaLabel"), " 43%", "label")
    stays("no window has opened", lambda: desktop.windows() == windows, 1)
    methods = [method for _, _, method in calls()]
    expect_equal(methods.count("RegisterStatusNotifierItem"), 1, "registrations")
    expect("BindShortcuts" not in methods, "a shortcut was bound, which opens a dialog")

    for percent in (7, 88, 100):
        surroundings.codex.set_percent(percent)
        expect_success(desktop, "--toggle")
        agent.opened_popover()
        until("the title follows", lambda: f"{percent} percent" in desktop.items.property(address, "Title"))
        expect_success(desktop, "--toggle")
        agent.closed_popover()
        before = picture
        until("the number in the panel follows", lambda: desktop.item_picture().data != before.data)
        picture = desktop.item_picture()
    expect_equal(desktop.complaints(), [], "what the desktop writes about the item")
    desktop.screenshot("item")

    agent.end()
    until("the item is gone", lambda: not desktop.has_item())
    expect(not desktop.bus.has(BUS_NAME), "the name on the bus is left")
    expect_equal(runtime_files(surroundings), files, "files in the runtime folder")
    agent.expect_output([])


def test_clicksAndKeysOpenAndCloseThePopover(surroundings, desktop):
    agent, item = started(desktop)
    desktop.focus_native_window()
    for _ in range(2):
        expect_keyboard(desktop, agent, opened(desktop, agent, item))
    for _ in range(2):
        opened(desktop, agent, item)
        desktop.click_item(item)
        agent.closed_popover(seconds=1)

    opened(desktop, agent, item)
    desktop.display.click(NATIVE_BOX.middle)
    agent.closed_popover(AFTER_FOCUS_LOSS)
    expect_focus(desktop, NATIVE_NAME)
    for place, takes_focus in ((EMPTY_PLACE, desktop.wallpaper_takes_focus),
                               (desktop.bar.middle, desktop.panel_takes_focus)):
        opened(desktop, agent, item)
        desktop.display.click(place)
        if not takes_focus:  # the desktop's own limit: no program learns of such a click
            stays("the popover is open", agent.popover, 0.5)
            desktop.display.press("Escape")
        agent.closed_popover(AFTER_FOCUS_LOSS)
    opened(desktop, agent, item)
    agent.expect_output([])


def test_commandsAndShortcutOpenWindowsInFront(surroundings, desktop):
    agent, _ = started(desktop)
    desktop.focus_native_window()
    for expect_state in (agent.opened_popover, agent.closed_popover, agent.opened_popover):
        expect_success(desktop, "--toggle")
        expect_state()
    desktop.display.press("Escape")
    agent.closed_popover()
    for _ in range(2):  # an open popover stays open
        expect_success(desktop)
        focused_popover(desktop, agent)
    desktop.display.press("Escape")
    agent.closed_popover()
    expect_full_screen_covered(desktop, agent)

    desktop.focus_native_window()
    expect_shortcut(desktop, agent, works=desktop.shortcut_scope == "everywhere")
    expect_success(desktop, "--settings")
    expect_focus(desktop, SETTINGS)
    expect_shortcut(desktop, agent, works=desktop.shortcut_scope is not None)
    agent.expect_output([])


def expect_full_screen_covered(desktop, agent):
    corner = desktop.display.picture(Box(4, 4, 4, 4))
    desktop.fill_screen(True)
    until("the native window fills the screen", lambda: desktop.display.picture(corner.box).share(NATIVE_COLOUR) == 1)
    expect_success(desktop, "--toggle")
    if desktop.covers_full_screen:
        middle = Box(*focused_popover(desktop, agent).middle, 4, 4)
        until("the popover is in front", lambda: not desktop.display.picture(middle).share(NATIVE_COLOUR))
        desktop.screenshot("full-screen")
    else:  # the desktop's own limit
        stays("the native window hides the popover", lambda: not agent.popover(), 0.5)
    desktop.fill_screen(False)
    until("the native window is as before", lambda: desktop.display.picture(corner.box).data == corner.data)
    agent.opened_popover()
    expect_success(desktop, "--toggle")
    agent.closed_popover()


def expect_shortcut(desktop, agent, works):
    desktop.display.press("Super_L", "Alt_L", "b")
    if works:
        focused_popover(desktop, agent)
        desktop.display.press("Super_L", "Alt_L", "b")
        agent.closed_popover()
    else:  # the desktop does not pass it on
        stays("the popover is closed", lambda: not agent.popover(), 0.5)


def test_panelThatComesLaterOrAgainShowsTheItem(surroundings, desktop):
    agent = desktop.start_agent()
    until("the agent owns its bus name", lambda: desktop.bus.has(BUS_NAME))
    stays("the program is running without a panel", agent.is_running, 0.5)
    desktop.start_panel()
    opened(desktop, agent, desktop.item_box())
    desktop.display.press("Escape")
    agent.closed_popover()
    for _ in range(2):
        desktop.kill_panel()
        desktop.start_panel()
        desktop.items.one()
    desktop.rest()
    item = desktop.item_box()
    expect(item.width < 4 * item.height, f"more than one item at {item}")
    opened(desktop, agent, item)


def test_menuShowsTheFiguresAndItsEntriesWork(surroundings, desktop):
    agent, item = started(desktop)
    address = desktop.items.one()
    until("the menu shows the percentage", lambda: desktop.items.menu_texts(address)[0].startswith("43% used"))
    texts = desktop.items.menu_texts(address)
    for text, beginning in zip(texts[1:3], ("Claude: ", "Codex: ")):
        expect(text.startswith(beginning) and "tokens today" in text, f"a figure is {text!r}")
    expect_equal(texts[3:], [None, "Open Tallyfox", "Refresh", "Settings…", "Keep Mac Awake"], "the other entries")
    desktop.open_menu(item)
    desktop.screenshot("menu")

    desktop.choose("Open Tallyfox")
    focused_popover(desktop, agent)
    desktop.display.press("Escape")
    agent.closed_popover()

    surroundings.codex.set_percent(87.5)
    desktop.open_menu(item)
    desktop.choose("Refresh")
    until("the figures follow", lambda: desktop.items.menu_texts(address)[0].startswith("88%"))
    expect(not agent.popover(), "the popover has opened")

    for holders in (["Tallyfox"], [], ["Tallyfox"]):
        desktop.open_menu(item)
        desktop.choose("Keep Mac Awake")
        until(f"what keeps the computer awake is {holders}",
              lambda: desktop.logind.blockers() == holders)

    desktop.open_menu(item)
    desktop.choose("Settings…")
    expect_focus(desktop, SETTINGS)
    agent.expect_output([])
    agent.end()
    until("nothing keeps the computer awake", lambda: not desktop.logind.blockers())
