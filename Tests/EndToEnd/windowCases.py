"""The popover and the settings among windows of other programs. Each function test_… runs once for each window manager:
openbox, with the panel of Xfce, and the one that is part of Cinnamon."""

from harness.pictures import Box
from harness.settings import SIZE, TITLE
from harness.waiting import expect_equal, stays, until

from panelCases import opened, started

OTHER = (192, 0, 192)  # the colour of the other program's window


def test_clickOnAnotherWindowClosesThePopover(surroundings, panel):
    desktop, agent = started(surroundings, panel)
    box = Box(100, 300, 300, 200)
    other = desktop.display.open_window(box, OTHER)
    opened(desktop, agent, desktop.item_box())
    desktop.display.click(box.middle)
    agent.closed_popover()
    until("the other window has the keyboard", lambda: desktop.display.active_window() == other.id)


def test_popoverOpensAboveAWindowInFullScreen(surroundings, panel):
    desktop, agent = started(surroundings, panel)
    screen = desktop.display.box
    desktop.display.open_window(screen, OTHER, "_NET_WM_STATE_FULLSCREEN")
    until("the panel is covered", lambda: desktop.display.picture(desktop.bar).share(OTHER) == 1)
    popover = desktop.open_by_key(agent)
    until("the popover is above the window", lambda: desktop.display.picture(popover).share(OTHER) < 0.01)
    desktop.screenshot("open")
    desktop.display.press("Escape")
    agent.closed_popover()
    until("the window fills the screen again", lambda: desktop.display.picture().share(OTHER) == 1)


def test_settingsComeToTheFront(surroundings, panel):
    desktop, agent = started(surroundings, panel, "--settings")

    def settings():
        return [(window, box) for window, box in desktop.display.windows_of(agent.pid)
                if (box.width, box.height) == SIZE]
    window, box = until("the settings are open", settings)[0]
    until("the settings have the keyboard", lambda: desktop.display.active_window() == window.id)
    other = desktop.display.open_window(desktop.work_area, OTHER)
    until("the other window has the keyboard", lambda: desktop.display.active_window() == other.id)
    until("the settings are covered", lambda: desktop.display.picture(box).share(OTHER) == 1)
    expect_equal(desktop.run("--settings")[0], 0, "status of --settings")
    until("the settings have the keyboard again", lambda: desktop.display.active_window() == window.id)
    until("the settings are in front", lambda: desktop.display.picture(settings()[0][1]).share(OTHER) < 0.01)
    expect_equal(desktop.display.titles_of(agent.pid), [TITLE], "titles of windows")
