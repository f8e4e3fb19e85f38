"""Desktops that lack something, and agents that are started, ended and used more often than usual."""

import os
import signal

from harness.bus import StatusItems
from harness.desktop import Desktop
from harness.memory import Footprint
from harness.panels import PANELS, write
from harness.pictures import Box
from harness.services import PowerManagement
from harness.waiting import expect, expect_equal, settled, stays, until

from panelCases import opened, started


FOCUS_FOLLOWS_MOUSE = """<?xml version="1.0"?>
<openbox_config xmlns="http://openbox.org/3.4/rc"><focus><followMouse>yes</followMouse></focus></openbox_config>
"""


def in_the_corner(popover, screen):
    return popover.right == screen.right and popover.y == 48


def test_startOpensNoWindowAndAsksOnlyForThePlaceOfTheItem(surroundings):
    desktop = Desktop(surroundings, PANELS["xfce"]())
    desktop.start_panel()
    calls = desktop.bus.record_calls()
    agent = desktop.start_agent()
    desktop.item_box()
    stays("no window is open", lambda: not desktop.display.windows_of(agent.pid), 1)
    senders = {name: desktop.bus.process_of(name) for name in desktop.bus.unique_names()}
    called = {interface for sender, interface, _ in calls() if senders.get(sender) == agent.pid}
    expect_equal(called, {"org.freedesktop.DBus", "org.freedesktop.DBus.Properties", StatusItems.WATCHER},
                 "interfaces that the program has called")
    agent.expect_output([])


def test_missingTrayIsReportedOnceAndThePopoverWorks(surroundings):
    desktop = Desktop(surroundings)
    agent = desktop.start_agent()
    until("the program reports that there is no tray", lambda: agent.output)
    for arguments in ((), ("--toggle",)):
        desktop.run(*arguments)
        popover = agent.opened_popover()
        expect(in_the_corner(popover, desktop.display.box), f"the popover is at {popover}")
        desktop.display.press("Escape")
        agent.closed_popover()
    expect_equal(len(agent.output.splitlines()), 1, "lines on standard error")
    expect(agent.output.startswith("tallyfox: "), agent.output)
    agent.end()


def test_itemPopoverAndSecondStartWorkWithoutASessionBus(surroundings):
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


def test_popoverWorksWithoutAWindowManager(surroundings):
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


def test_toggleWithoutAgentFailsAndPrintsOneLine(surroundings):
    for bus in (True, False):
        desktop = Desktop(surroundings, bus=bus)
        status, output, _ = desktop.run("--toggle", name=f"toggle-{bus}")
        expect_equal(status, 1, "status")
        expect_equal(len(output.splitlines()), 1, f"lines of {output!r}")
        expect(output.startswith("tallyfox: "), output)


def test_runningAgentIsFoundWhateverTheDisplay(surroundings):
    for bus in (True, False):
        desktop = Desktop(surroundings, bus=bus)
        agent = desktop.start_agent(name=f"agent-{bus}")
        until("the agent is there", lambda: desktop.run("--toggle")[0] == 0)
        agent.opened_popover()
        displays = ({"DISPLAY": None}, {"DISPLAY": ":nonsense"}, {"QT_QPA_PLATFORM": "nonsense"},
                    {"DISPLAY": None, "WAYLAND_DISPLAY": "nonsense"})
        for number, display in enumerate(displays):
            name = f"settings-{bus}-{number}"
            status = desktop.start_agent("--settings", name=name, environment=display).wait()
            expect_equal((status, surroundings.log(name)), (0, ""), f"status and output with {display}")
            until("the settings are open", lambda: "Tallyfox Settings" in desktop.display.titles_of(agent.pid))
            desktop.display.close(agent.pid, "Tallyfox Settings")
            until("the settings are closed", lambda: not desktop.display.titles_of(agent.pid))
        agent.end()


def test_displayThatCannotBeOpenedIsReportedInOneLine(surroundings):
    displays = (({"DISPLAY": None}, "no display"), ({"DISPLAY": ":nonsense"}, "no display"),
                ({"QT_QPA_PLATFORM": "nonsense"}, "'nonsense'"),
                ({"DISPLAY": None, "WAYLAND_DISPLAY": "nonsense"}, "ayland"))
    desktop = Desktop(surroundings)
    for number, (display, reason) in enumerate(displays):
        name = f"agent-{number}"
        expect_equal(desktop.start_agent(name=name, environment=display).wait(), 1, f"status with {display}")
        output = surroundings.log(name)
        expect_equal(len(output.splitlines()), 1, f"lines of {output!r}")
        expect(output.startswith("tallyfox: ") and reason in output, output)


def test_onlyClientOfAServerStartsEachTime(surroundings):
    """Such a server resets when its last client leaves, and drops those that are just connecting."""
    desktop = Desktop(surroundings, window_manager=False)
    for number in range(8):
        reader, writer = os.pipe()
        server = surroundings.processes.start(f"server-{number}", ["Xvfb", "-displayfd", str(writer), "-nolisten", "tcp"],
                                              pass_fds=[writer])
        os.close(writer)
        with os.fdopen(reader, encoding="utf-8") as numbers:
            display = f":{numbers.readline().strip()}"
        agent = desktop.start_agent(name=f"agent-{number}", environment={"DISPLAY": display})
        until("the agent is there", lambda: desktop.has_agent() or not agent.is_running())
        expect(agent.is_running(), f"start {number} failed: {agent.output}")
        agent.end()
        surroundings.processes.end([server.pid])


def test_agentOutlivesItsTerminal(surroundings):
    desktop = Desktop(surroundings)
    agent = desktop.start_agent()
    until("the agent is there", desktop.has_agent)
    os.kill(agent.pid, signal.SIGHUP)
    desktop.run("--toggle")
    agent.opened_popover()
    agent.end()


def test_agentReportsWhenItsIconIsThereOrCannotBe(surroundings):
    desktop = Desktop(surroundings, PANELS["xfce"]())
    for name, problems in (("without-panel", 1), ("with-panel", 0)):
        reader, writer = os.pipe()
        agent = surroundings.processes.start(name, [surroundings.options.program],
                                             {"TALLYFOX_READY_FD": str(writer)}, pass_fds=[writer])
        os.close(writer)
        with os.fdopen(reader, encoding="utf-8") as notice:
            expect_equal(notice.read(), "ready\n", "notice")  # to its end: the program keeps no end of the pipe
        expect(agent.poll() is None, "the agent has ended")
        expect_equal(len(surroundings.log(name).splitlines()), problems, "lines on standard error")
        expect_equal(len(desktop.items.addresses()), 1 - problems, "number of items in the panel")
        surroundings.processes.end([agent.pid])
        if problems:
            desktop.start_panel()


def test_oneOfSeveralSimultaneousStartsBecomesTheAgent(surroundings):
    for bus in (True, False):
        desktop = Desktop(surroundings, bus=bus)
        agents = [desktop.start_agent(name=f"agent-{bus}-{number}") for number in range(4)]
        until("all but one have ended", lambda: sum(agent.is_running() for agent in agents) == 1)
        for agent in agents:
            # A start may fail if the one that became the agent is not ready yet.
            expect(agent.is_running() or agent.wait() in (0, 1), "a later start has crashed")
            if agent.is_running():
                desktop.run()
                agent.opened_popover()
                agent.end()


def test_programWorksAfterItsBusHasDied(surroundings):
    desktop, agent = started(surroundings, PANELS["tint2"]())
    desktop.processes.end(desktop.processes.named("dbus-daemon"))
    item = desktop.item_box()
    for _ in range(2):
        opened(desktop, agent, item)
        desktop.display.press("Escape")
        agent.closed_popover()
    agent.end()


def test_settingsHaveOneWindowWhoseClosingEndsNothing(surroundings):
    desktop = Desktop(surroundings)
    agent = desktop.start_agent("--settings")
    title = "Tallyfox Settings"

    def settings():
        return desktop.display.titles_of(agent.pid).count(title)
    until("the settings are open", settings)
    for _ in range(2):
        desktop.display.close(agent.pid, title)
        until("the settings are closed", lambda: not settings())
        for _ in range(2):
            expect_equal(desktop.run("--settings")[0], 0, "status of --settings")
            expect_equal(until("the settings are open", settings), 1, "number of settings windows")
    agent.end()


def test_silentCodexDoesNotDelayTheEnd(surroundings):
    surroundings.codex.set_percent("silent")
    desktop = Desktop(surroundings, PANELS["tint2"]())
    desktop.start_panel()
    for by in (signal.SIGTERM, signal.SIGINT):
        agent = desktop.start_agent()
        until("codex was started", lambda: desktop.processes.named("sleep"))
        desktop.item_box()
        seconds = agent.end(by)
        expect(seconds < 8, f"the program waited {seconds:.1f} s for codex before it ended")
        agent.expect_output([])


def test_openAndCloseLeavesNothingBehind(surroundings):
    desktop, agent = started(surroundings, PANELS["xfce"]())
    item = desktop.item_box()
    cycles = surroundings.options.cycles

    def run(count):
        for _ in range(count):
            desktop.display.click(item.middle)
            agent.opened_popover()
            desktop.display.press("Escape")
            # The toolkit closes a popup that opens before it has seen the previous one lose the focus.
            agent.closed_popover(seconds=0.1)
        return settled("the program is at rest", lambda: Footprint.of(agent.pid).own(), quiet=1)

    before = run(cycles // 3)
    after = run(cycles - cycles // 3)
    print(f"{cycles} cycles: {before} -> {after}")
    expect(after.descriptors <= before.descriptors, f"descriptors grew: {before} -> {after}")
    expect(after.threads <= before.threads, f"threads grew: {before} -> {after}")
    if not surroundings.options.sanitized:  # a sanitizer keeps freed memory in quarantine
        expect(after.anonymous <= before.anonymous + 2, f"memory grew: {before} -> {after}")


def test_windowThatTakesTheFocusFromThePointerLeavesThePopoverOpen(surroundings):
    write(surroundings.config_home, "openbox/rc.xml", FOCUS_FOLLOWS_MOUSE)
    desktop, agent = started(surroundings, PANELS["xfce"]())
    item = desktop.item_box()
    other = desktop.display.open_window(Box(200, 200, 500, 400), (192, 0, 192))
    desktop.display.move((300, 300))
    until("the window under the pointer has the keyboard", lambda: desktop.display.active_window() == other.id)
    opened(desktop, agent, item)
    desktop.display.move((300, 300))
    stays("the popover is open", agent.popover, 0.5)
    desktop.display.press("Escape")
    agent.closed_popover()


def test_itemIsInTwoPanelsAndStaysInTheOneThatIsLeft(surroundings):
    first, second = PANELS["xfce"](), PANELS["mate"]()
    second.at_bottom = True
    desktop = Desktop(surroundings, first, services=second.services)
    desktop.start_panel()
    agent = desktop.start_agent()
    desktop.item_box()
    desktop.use_panel(second)
    desktop.start_panel()
    for panel in (second, first):
        desktop.use_panel(panel)
        opened(desktop, agent, desktop.item_box())
        desktop.display.press("Escape")
        agent.closed_popover()
    desktop.kill_panel(is_only=False)
    desktop.use_panel(second)
    desktop.items.one()
    opened(desktop, agent, desktop.item_box())


def test_keepAwakeLastsUntilItIsTurnedOffOrTheProgramEnds(surroundings):
    desktop = Desktop(surroundings)
    service = PowerManagement(desktop.bus)
    agent = desktop.start_agent()
    until("the agent is there", desktop.has_agent)
    desktop.run("--toggle")
    popover = agent.opened_popover()
    cup = Box(popover.right - 104, popover.y + 16, 20, 20)
    pictures = []
    for is_on in (True, False, True):
        desktop.display.click(cup.middle)
        until(f"the computer is {'kept awake' if is_on else 'free to sleep'}", lambda: service.held() == is_on)
        pictures.append(settled("the cup is drawn", lambda: desktop.display.picture(cup).data))
    expect(pictures[0] == pictures[2] != pictures[1], "the cup does not show whether the computer is kept awake")
    agent.end()
    until("the computer is free to sleep again", lambda: not service.held())
