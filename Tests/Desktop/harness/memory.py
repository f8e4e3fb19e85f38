"""What a process holds, as the kernel tells it."""

import os
from typing import NamedTuple


class Footprint(NamedTuple):
    private: float  # MiB that only this process uses
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
        return cls(sums["Private_Clean"] + sums["Private_Dirty"], sums["Pss"],
                   len(os.listdir(f"/proc/{pid}/fd")), len(os.listdir(f"/proc/{pid}/task")))

    def rounded(self):
        return self._replace(private=round(self.private, 1), proportional=round(self.proportional, 1))
