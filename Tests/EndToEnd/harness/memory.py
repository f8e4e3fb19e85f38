"""Memory, descriptors, threads and activity of a process, from /proc."""

import os
from typing import NamedTuple


class Footprint(NamedTuple):
    anonymous: float  # MiB of the process's own, independent of other processes
    proportional: float  # MiB, shared pages divided among their users
    descriptors: int
    threads: int

    @classmethod
    def of(cls, pid):
        sums = {}
        with open(f"/proc/{pid}/smaps_rollup", encoding="ascii") as file:
            for line in file.readlines()[1:]:
                name, value, *_ = line.split()
                sums[name.rstrip(":")] = int(value) / 1024
        return cls(sums["Anonymous"] + sums["Swap"], sums["Pss"],
                   len(os.listdir(f"/proc/{pid}/fd")), len(os.listdir(f"/proc/{pid}/task")))

    def own(self):
        """Without the figure that depends on other processes."""
        return self._replace(anonymous=round(self.anonymous, 1), proportional=0)


class Activity:
    """What the threads of a process have done so far. A difference leaves out threads that have ended in between."""

    def __init__(self, pid):
        self._threads = {}
        for task in os.listdir(f"/proc/{pid}/task"):
            try:
                self._threads[task] = self._of_thread(f"/proc/{pid}/task/{task}")
            except (FileNotFoundError, ProcessLookupError):
                continue  # the thread has ended since it was listed

    @staticmethod
    def _of_thread(folder):
        with open(f"{folder}/schedstat", encoding="ascii") as file:
            nanoseconds = int(file.read().split()[0])
        with open(f"{folder}/status", encoding="utf-8") as file:
            return nanoseconds, sum(int(line.split()[1]) for line in file if "ctxt_switches" in line)

    def __eq__(self, other):
        return isinstance(other, Activity) and self._threads == other._threads

    def since(self, before):
        """CPU seconds and context switches since an earlier moment."""
        grown = [(now[0] - then[0], now[1] - then[1]) for task, now in self._threads.items()
                 for then in [before._threads.get(task, (0, 0))]]
        return sum(growth[0] for growth in grown) / 1e9, sum(growth[1] for growth in grown)
