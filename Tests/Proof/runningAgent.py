"""Runs the built agent on a desktop of its own, with histories that can grow, for the programs that attack it."""

import argparse
import contextlib
import os
import shutil
import sys
import tempfile
import time
import types

sys.dont_write_bytecode = True
sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "../EndToEnd"))

from gi.repository import GLib

from harness.desktop import Desktop, Surroundings
from harness.memory import Footprint
from harness.waiting import Failure, until

NAME = "org.tallyfox.tallyfox"
PATH = "/org/tallyfox/tallyfox"
INTERFACE = "org.freedesktop.Application"

LOG_LIMIT = 2000  # characters of each log that a failure shows

CODEX = """#!/bin/sh
folder=${0%/*}
read -r initialize && read -r initialized && read -r request || exit 1
printf x >>"$folder/asked"
printf '{"id":2,"result":{"rateLimits":{"primary":{"usedPercent":%s}}}}\\n' "$(cat "$folder/percent")"
exec cat >/dev/null
"""


def claude_line(text="hello"):
    now = time.strftime("%Y-%m-%dT%H:%M:%SZ", time.gmtime())
    return ('{"timestamp":"%s","type":"assistant","message":{"content":[{"type":"text","text":"%s"}],'
            '"usage":{"input_tokens":5,"output_tokens":6}}}\n' % (now, text))


def codex_line(text="hello"):
    now = time.strftime("%Y-%m-%dT%H:%M:%SZ", time.gmtime())
    return ('{"timestamp":"%s","type":"event_msg","payload":{"type":"token_count","info":{"note":"%s",'
            '"last_token_usage":{"total_tokens":7}}}}\n' % (now, text))


class Histories:
    """Some files of each assistant; each `grow` adds a line to one of each."""

    FILES = 12

    def __init__(self, home):
        self._files = {}
        for line, folder in ((claude_line, ".claude/projects/demo"), (codex_line, ".codex/sessions/2026/11")):
            os.makedirs(os.path.join(home, folder))
            self._files[line] = [os.path.join(home, folder, f"{number}.jsonl") for number in range(self.FILES)]
            for file in self._files[line]:
                self._append(file, line() * 200)
        self._turn = 0

    @staticmethod
    def _append(file, text):
        with open(file, "a", encoding="utf-8") as opened:
            opened.write(text)

    def grow(self):
        self._turn += 1
        for line, files in self._files.items():
            self._append(files[self._turn % self.FILES], line())


class World:
    """A desktop with a panel, and the agent in it. `desktop`, `agent`, `histories` and `folder` are public."""

    def __init__(self, folder, program, panel, bus=True, environment=None, services=()):
        self.folder = folder
        self.home = os.path.join(folder, "histories")
        self.histories = Histories(self.home)
        options = types.SimpleNamespace(program=os.path.abspath(program), home=self.home, screenshots=folder,
                                        test="proof", sanitized=False)
        self.surroundings = Surroundings(folder, options)
        self._codex = os.path.join(folder, "home/.local/bin")
        with open(os.path.join(self._codex, "codex"), "w", encoding="utf-8") as file:
            file.write(CODEX)
        self.desktop = Desktop(self.surroundings, panel, bus=bus, services=services)
        if panel:
            self.desktop.start_panel()
        self.environment = environment
        self.agent = None

    def start_agent(self, *arguments):
        asked = self.exchanges()
        self.agent = self.desktop.start_agent(*arguments, environment=self.environment)
        until("the agent has asked codex or ended", lambda: self.exchanges() > asked or not self.agent.is_running())
        if not self.agent.is_running():
            raise Failure(f"the agent ended right after its start: status {self.agent.wait()}")
        until("the agent owns its bus name", lambda: self.desktop.bus.has(NAME))
        self.desktop.display.watch_maps()
        return self.agent

    def exchanges(self):
        """How many times codex has been asked: once in each refresh."""
        try:
            return os.stat(os.path.join(self._codex, "asked")).st_size
        except FileNotFoundError:
            return 0

    def set_percent(self, percent):
        self.surroundings.codex.set_percent(percent)

    def request(self, action):
        """Asks the agent for an action, as a second start of the program does; returns when it has answered."""
        self.desktop.bus.call(NAME, PATH, INTERFACE, "ActivateAction",
                              GLib.Variant("(sava{sv})", (action, [], {})))

    def open(self):
        """Opens the popover and returns the number of tries. The toolkit closes a popup that opens before it has seen
        the previous one lose the focus."""
        for tries in range(1, 40):
            if not self.agent.is_running():
                raise Failure(f"the agent has ended: {self.agent.output}")
            if not self.agent.popover():
                self.request("toggle")
            deadline = time.monotonic() + 0.5
            while time.monotonic() < deadline:
                if self.agent.popover():
                    return tries
                time.sleep(0.005)
        raise Failure("the popover does not open")

    def close(self):
        """Closes the popover, repeatedly if an earlier request opens it in between."""
        asked = [0.0]

        def closed():
            is_open = self.agent.popover()
            if is_open and time.monotonic() - asked[0] > 0.5:
                self.request("toggle")
                asked[0] = time.monotonic()
            return not is_open
        until("the popover is closed", closed, interval=0.005)

    def children(self):
        """The agent's child processes, zombies included, as pairs of pid and state."""
        found = []
        for entry in os.listdir("/proc"):
            if entry.isdigit():
                try:
                    with open(f"/proc/{entry}/stat", encoding="utf-8", errors="replace") as file:
                        fields = file.read().rpartition(")")[2].split()
                except OSError:
                    continue
                if int(fields[1]) == self.agent.pid:
                    found.append((int(entry), fields[0]))
        return found

    def at_rest(self):
        """The footprint of the idle agent: no child, no refresh."""
        until("the children of the agent are gone", lambda: not self.children())
        last = [None, 0]

        def quiet():
            now = Footprint.of(self.agent.pid)
            same = last[0] is not None and (now.descriptors, now.threads) == (last[0].descriptors, last[0].threads)
            last[:] = [now, last[1] + 1 if same else 0]
            return now if last[1] >= 5 else None
        return until("the agent is at rest", quiet, interval=0.05)


def show_logs(folder):
    for name in sorted(os.listdir(folder)):
        if name.endswith(".log"):
            with open(os.path.join(folder, name), encoding="utf-8", errors="replace") as file:
                print(f"--- {name}\n{file.read()[-LOG_LIMIT:]}", flush=True)


@contextlib.contextmanager
def world(program, panel=None, **further):
    folder = tempfile.mkdtemp(prefix="tallyfox-agent-")
    made = None
    try:
        made = World(folder, program, panel, **further)
        yield made
    except Failure:
        show_logs(folder)
        raise
    finally:
        if made:
            made.surroundings.processes.end_all()
        shutil.rmtree(folder, ignore_errors=True)


def arguments(description, **numbers):
    """Parses a driver's command line: the built program, and numbers with their defaults."""
    parser = argparse.ArgumentParser(description=description)
    parser.add_argument("program")
    for name, value in numbers.items():
        parser.add_argument(f"--{name}", type=int, default=value)
    parser.add_argument("--sanitized", action="store_true",
                        help="built with a sanitizer, which makes it slow and keeps freed memory")
    return parser.parse_args()


def slope(points):
    """The slope of the straight line that fits the points best."""
    count = len(points)
    middle_x = sum(x for x, _ in points) / count
    middle_y = sum(y for _, y in points) / count
    return sum((x - middle_x) * (y - middle_y) for x, y in points) / sum((x - middle_x) ** 2 for x, _ in points)


def run(name, check):
    """Runs a driver's check, which returns a line to print and a list of problems; returns the exit status."""
    try:
        line, problems = check()
    except Failure as failure:
        print(f"{name}: {failure}")
        return 1
    for problem in problems:
        print(f"{name}: {problem}", flush=True)
    print(f"{name}: {line}")
    return 1 if problems else 0
