"""A fake of the user's `codex`: answers one exchange with the percentage in a file beside it."""

import os

SCRIPT = """#!/bin/sh
folder=${0%/*}
percent=$(cat "$folder/percent")
read -r initialize && read -r initialized && read -r request || exit 1
[ "$percent" != silent ] || exec sleep 1000
soon=$(($(date +%s) + 7500))
printf '{"id":2,"result":{"rateLimits":{%s,%s}}}\\n' \\
    "\\"primary\\":{\\"usedPercent\\":$percent,\\"windowDurationMins\\":300,\\"resetsAt\\":$soon}" \\
    '"secondary":{"usedPercent":17,"windowDurationMins":10080,"resetsAt":null}'
exec cat >/dev/null
"""


class FakeCodex:
    def __init__(self, home):
        self._folder = os.path.join(home, ".local/bin")
        os.makedirs(self._folder)
        path = os.path.join(self._folder, "codex")
        with open(path, "w", encoding="utf-8") as file:
            file.write(SCRIPT)
        os.chmod(path, 0o700)
        self.set_percent(42.5)

    def set_percent(self, percent):
        """Sets the answer of the next exchange; "silent" for none."""
        unfinished = os.path.join(self._folder, "percent.unfinished")
        with open(unfinished, "w", encoding="utf-8") as file:
            file.write(str(percent))
        os.replace(unfinished, os.path.join(self._folder, "percent"))
