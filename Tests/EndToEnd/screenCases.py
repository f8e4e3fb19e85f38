"""The popover on scaled, several and disappearing screens, and the shortcut on several keyboards."""

from Xlib import X

from harness.desktop import Desktop
from harness.display import Display, virtual_server
from harness.panels import PANELS
from harness.pictures import Box
from harness.screens import SeveralScreens
from harness.waiting import expect, stays, until

from panelCases import expect_beside_item, opened


def test_fractionalScaleScalesThePopover(surroundings):
    desktop = Desktop(surroundings, PANELS["xfce"](), Display(surroundings.processes, virtual_server("1600x1000")))
    desktop.start_panel()
    agent = desktop.start_agent(environment={"QT_SCALE_FACTOR": "1.25"})
    item = desktop.item_box()
    desktop.display.click(item.middle)
    popover = agent.opened_popover(1.25)
    expect_beside_item(desktop, popover, item)
    desktop.display.press("Escape")
    agent.closed_popover()


def test_popoverOpensOnTheScreenOfTheItem(surroundings):
    left, right = Box(0, 0, 1280, 800), Box(1280, 0, 1024, 768)
    display = SeveralScreens(surroundings.processes, [left, right])
    panel = PANELS["xfce"]()
    panel.output, panel.screen = display.output(1), right
    desktop = Desktop(surroundings, panel, display)
    desktop.start_panel()
    agent = desktop.start_agent()
    popover = opened(desktop, agent, desktop.item_box())
    expect(right.contains(popover), f"the popover at {popover} is not on the screen of the item, {right}")


def test_clickOnAScreenThatDisappearsIsForgotten(surroundings):
    left, right = Box(0, 0, 1280, 800), Box(1280, 0, 1024, 768)
    display = SeveralScreens(surroundings.processes, [left, right])
    panel = PANELS["xfce"]()
    panel.output, panel.screen = display.output(1), right
    desktop = Desktop(surroundings, panel, display)
    desktop.start_panel()
    agent = desktop.start_agent()
    opened(desktop, agent, desktop.item_box())
    display.set_screens([left])
    until("the popover is on the remaining screen", lambda: agent.popover() and left.contains(agent.popover()))
    display.press("Escape")
    agent.closed_popover()
    desktop.run("--toggle")
    agent.opened_popover()
    expect(left.contains(agent.popover()), f"the popover is at {agent.popover()}")


def test_popoverMovesWhenItsScreenDisappears(surroundings):
    left, right = Box(0, 0, 1280, 800), Box(1280, 0, 1024, 768)
    display = SeveralScreens(surroundings.processes, [left, right])
    desktop = Desktop(surroundings, display=display)
    agent = desktop.start_agent()
    until("the agent is there", desktop.has_agent)
    display.move(right.middle)
    desktop.run("--toggle")
    agent.opened_popover()
    display.set_screens([left])
    until("one screen is left", lambda: display.box == left)
    stays("the program is running", agent.is_running, 0.5)
    desktop.run()
    until("the popover is on the remaining screen",
          lambda: agent.popover() and left.contains(agent.popover()))
    display.press("Escape")
    agent.closed_popover()


def test_shortcutFollowsTheKeyboardLayout(surroundings):
    desktop = Desktop(surroundings)
    agent = desktop.start_agent()
    until("the agent is there", desktop.has_agent)
    former = desktop.display.key("b")
    desktop.display.set_layout("us", "dvorak")
    expect(desktop.display.key("b") != former, "both layouts have the key in the same place")
    desktop.open_by_key(agent)
    desktop.display.press(*desktop.shortcut)
    agent.closed_popover()
    desktop.display.press(*desktop.shortcut[:2], former)
    stays("the key of the former layout does nothing", lambda: not agent.popover(), 0.5)


def test_shortcutWorksWhateverLocksAreOn(surroundings):
    desktop = Desktop(surroundings)
    agent = desktop.start_agent()
    for locks in (0, X.Mod2Mask, X.LockMask, X.LockMask | X.Mod2Mask):
        desktop.display.set_locks(locks)
        desktop.open_by_key(agent)
        desktop.display.press(*desktop.shortcut)
        agent.closed_popover()
