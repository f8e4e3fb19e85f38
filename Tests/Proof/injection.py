"""Makes system calls of a program fail, with strace."""

import collections
import re
import shutil
import subprocess

CALLS = ("openat openat2 read pread64 getdents64 newfstatat statx write fsync rename mkdir clone clone3 execve pipe2 "
         "socket connect poll mmap").split()
ERRORS = "EIO ENOSPC EMFILE EINTR EACCES".split()
BEGUN = "prlimit64("  # the C library's first own call, after the program loader is done


def can_inject():
    return shutil.which("strace") is not None and \
        subprocess.run(["strace", "-o", "/dev/null", "true"], check=False).returncode == 0


def strace(trace, *further):
    return ["strace", "-f", "-qq", "-o", str(trace), *further]


def largest_counts(trace):
    """The largest number of calls of each class that one thread makes in a traced run."""
    counts = collections.defaultdict(collections.Counter)
    for line in trace.read_text(errors="replace").splitlines():
        found = re.match(r"(\d+)\s+(\w+)\(", line)
        if found:
            counts[found[2]][found[1]] += 1
    return {call: max(counts[call].values()) for call in CALLS if counts[call]}
