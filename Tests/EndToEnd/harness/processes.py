"""The processes of one test: all that it starts, and all that they start, end with it."""

import ctypes
import os
import shutil
import signal
import subprocess
import uuid

from .waiting import Failure, until

PR_SET_PDEATHSIG = 1
libc = ctypes.CDLL(None)
MARK = "TALLYFOX_DESKTOP_TEST"  # an environment variable of everything that a test starts
SUBJECT_MARK = "TALLYFOX_DESKTOP_SUBJECT"  # one of a single run of the program, and of all that it starts


def end_with_parent():
    """Runs in a child before its program starts: if this test is killed, the child is, too."""
    libc.prctl(PR_SET_PDEATHSIG, signal.SIGKILL)


def needed(program):
    """The path of a program. Without it the test fails rather than being skipped."""
    path = shutil.which(program)
    if path is None:
        raise Failure(f"{program} is not installed: run scripts/bootstrap")
    return path


def read(pid, name):
    try:
        with open(f"/proc/{pid}/{name}", "rb") as file:
            return file.read()
    except OSError:
        return b""


def command_line(pid):
    return read(pid, "cmdline").replace(b"\0", b" ").decode(errors="replace").strip()


def is_alive(pid):
    stat = read(pid, "stat")
    return bool(stat) and stat.rpartition(b")")[2].split()[0] != b"Z"


class Processes:
    """Starts processes with `environment` and a unique mark, by which their descendants can be found."""

    def __init__(self, folder, environment):
        self.folder = folder
        self.environment = dict(environment)
        self.environment[MARK] = uuid.uuid4().hex
        self._children = []

    def start(self, name, command, environment=None, pass_fds=()):
        """Starts a program; its output goes to NAME.log in the folder of the test. A value of None in `environment`
        unsets the variable."""
        changed = {**self.environment, **(environment or {})}
        with open(os.path.join(self.folder, f"{name}.log"), "ab") as log:
            child = subprocess.Popen(
                [needed(command[0]), *command[1:]],
                env={key: value for key, value in changed.items() if value is not None},
                stdin=subprocess.DEVNULL, stdout=log, stderr=log, cwd=self.folder,
                pass_fds=pass_fds, start_new_session=True, preexec_fn=end_with_parent)
        self._children.append(child)
        return child

    def reap(self):
        for child in self._children:
            child.poll()

    def marked(self, name=MARK, value=None):
        """The pids of this test's running processes, or of those with another mark."""
        self.reap()
        mark = f"{name}={value or self.environment[MARK]}".encode()
        pids = [int(entry) for entry in os.listdir("/proc") if entry.isdigit()]
        return [pid for pid in pids if mark in read(pid, "environ").split(b"\0") and is_alive(pid)]

    def named(self, program):
        """The pids of this test's processes that run the program of that name."""
        return [pid for pid in self.marked() if os.path.basename(command_line(pid).split(" ")[0]) == program]

    def end(self, pids):
        """Kills processes of this test, and waits until they are gone."""
        pids = list(pids)
        for pid in pids:
            try:
                os.kill(pid, signal.SIGKILL)
            except ProcessLookupError:
                pass
        until("killed processes are gone", lambda: self.reap() or not any(map(is_alive, pids)))

    def end_all(self):
        """Kills all that are left, repeatedly, because a process may start another one in between."""
        def none_left():
            pids = self.marked()
            self.end(pids)
            return not pids
        until("all processes of the test are gone", none_left)
