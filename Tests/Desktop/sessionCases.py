"""What must hold on a desktop that lacks something, or has more than usual of it. Each test says which."""

import signal

from harness.desktop import Desktop
from harness.display import Box, Display, virtual_server
from harness.memory import Footprint
from harness.panels import PANELS
from harness.screens import SeveralScreens
from harness.waiting import expect, expect_equal, settled, stays, until

from panelCases import expect_beside_item, opened, started


def in_the_middle(popover, screen):
    return all(abs(popover.middle[axis] - screen.middle[axis]) <= 2 for axis in (0, 1))


def test_noTrayIsSaidOnceAndTheProgramRunsOn(surroundings):
    desktop = Desktop(surroundings)
    agent = desktop.start_agent()
    until("the program says that there is no tray", lambda: agent.output)
    for arguments in ((), ("--toggle",)):
        desktop.run(*arguments)
        popover = agent.opened_popover()
        expect(in_the_middle(popover, desktop.display.box), f"the popover is at {popover}")
        desktop.display.press("Escape")
        agent.closed_popover()
    expect_equal(len(agent.output.splitlines()), 1, "lines on standard error")
    expect(agent.output.startswith("tallyfox: "), agent.output)
    agent.end()


def test_noSessionBusLeavesItemPopoverAndSecondStart(surroundings):
    desktop = Desktop(surroundings, PANELS["tint2"](), bus=False)
    desktop.start_panel()
    agent = desktop.start_agent()
    opened(desktop, agent, desktop.item_box())
    desktop.display.press("Escape")
    agent.closed_popover()
    for expect_state in (agent.opened_popover, agent.closed_popover):
        status, output, _ = desktop.run("--toggle")
        expect_equal((status, output), (0, ""), "status and output of --toggle")
        expect_state()
    expect_equal(desktop.run()[0], 0, "status of the second start")
    agent.opened_popover()
    agent.end()
    agent.expect_output([])


def test_noWindowManagerLeavesThePopoverUsable(surroundings):
    desktop = Desktop(surroundings, PANELS["xfce"](), window_manager=False)
    desktop.start_panel()
    agent = desktop.start_agent()
    item = desktop.item_box()
    for close in (lambda: desktop.display.press("Escape"), lambda: desktop.display.click((5, 700)),
                  lambda: desktop.display.click(item.middle)):
        desktop.display.click(item.middle)
        popover = agent.opened_popover()
        expect(desktop.display.box.contains(popover), f"the popover at {popover} leaves the screen")
        close()
        agent.closed_popover()


def test_toggleWithoutAgentFailsWithOneLine(surroundings):
    for bus in (True, False):
        desktop = Desktop(surroundings, bus=bus)
        status, output, _ = desktop.run("--toggle", name=f"toggle-{bus}")
        expect_equal(status, 1, "status")
        expect_equal(len(output.splitlines()), 1, f"lines of {output!r}")
        expect(output.startswith("tallyfox: "), output)


def test_silentCodexDoesNotHoldUpTheEnd(surroundings):
    surroundings.codex.set_percent("silent")
    desktop = Desktop(surroundings, PANELS["tint2"]())
    desktop.start_panel()
    for by in (signal.SIGTERM, signal.SIGINT):
        agent = desktop.start_agent()
        until("codex was started", lambda: desktop.processes.named("sleep"))
        desktop.item_box()
        seconds = agent.end(by)
        expect(seconds < 8, f"the end took {seconds:.1f} s, as long as the exchange with codex")
        agent.expect_output([])


def test_fractionalScaleGivesTheScaledPopover(surroundings):
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


def test_screenThatDisappearsLeavesThePopoverReachable(surroundings):
    left, right = Box(0, 0, 1280, 800), Box(1280, 0, 1024, 768)
    display = SeveralScreens(surroundings.processes, [left, right])
    desktop = Desktop(surroundings, display=display)
    agent = desktop.start_agent()
    until("the program says that there is no tray", lambda: agent.output)
    display.move(right.middle)
    desktop.run("--toggle")
    agent.opened_popover()
    display.set_screens([left])
    until("one screen is left", lambda: display.box == left)
    stays("the program goes on", agent.is_running, 0.5)
    desktop.run()
    until("the popover is on the screen that is left",
          lambda: agent.popover() and left.contains(agent.popover()))
    display.press("Escape")
    agent.closed_popover()


def test_shortcutFollowsTheKeyboardLayout(surroundings):
    desktop = Desktop(surroundings)
    agent = desktop.start_agent()
    until("the program says that there is no tray", lambda: agent.output)
    former = desktop.display.key("b")
    desktop.display.set_layout("us", "dvorak")
    expect(desktop.display.key("b") != former, "the layout has the key at the same place")
    desktop.display.press("Super_L", "Alt_L", former)
    stays("the former key does nothing", lambda: not agent.popover(), 0.3)
    desktop.display.press("Super_L", "Alt_L", "b")
    agent.opened_popover()
    desktop.display.press("Super_L", "Alt_L", "b")
    agent.closed_popover()


def test_openAndCloseLeavesNothingBehind(surroundings):
    desktop, agent = started(surroundings, PANELS["xfce"]())
    item = desktop.item_box()
    cycles = surroundings.options.cycles

    def run(count):
        for _ in range(count):
            desktop.display.click(item.middle)
            agent.opened_popover()
            desktop.display.press("Escape")
            until("the popover is closed", lambda: not agent.popover())
        return settled("the program is at rest", lambda: Footprint.of(agent.pid).rounded())

    before = run(cycles // 3)
    after = run(cycles - cycles // 3)
    print(f"{cycles} cycles: {before} -> {after}")
    expect(after.descriptors <= before.descriptors, f"descriptors grew: {before} -> {after}")
    expect(after.threads <= before.threads, f"threads grew: {before} -> {after}")
    if not surroundings.options.sanitized:  # what is freed stays in a sanitizer's quarantine
        expect(after.private <= before.private + 1.5, f"memory grew: {before} -> {after}")
