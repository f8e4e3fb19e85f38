"""What a screen reader finds in the popover, tab by tab."""

import os
import re

from harness.desktop import Desktop
from harness.waiting import expect, expect_equal, until

DUMP = os.path.join(os.path.dirname(os.path.abspath(__file__)), "accessibilityDump")
ANY_NUMBER = r"\d+(\.\d[KM])?"
HEADER = ["Tallyfox", "Usage Overview", "Keep Mac Awake", "Settings", "Connect Services", "Overview", "Dashboard", "Ranking",
          "Services"]
CARDS = ["Claude", "Claude Code", "Codex", "ChatGPT", "tokens / 30D", "Today", "History", "Confidence"]
OVERVIEW = [*CARDS, "30D Trend", "Open Token Dashboard", "Local processing", r"Refreshed .*\d\d.*", "Refresh"]
DASHBOARD = ["7D", "30D", "6M", "Today Tokens", "30D Total", "Est. cost", r"\$\d+\.\d\d", "Token Dashboard",
             "Year Heatmap"]
RANKING = ["Overall", "Claude", "Codex", "Gemini", "No ranking yet", "Monthly total", ANY_NUMBER,
           "Ranking server is not connected", "How it works", "Submit My Ranking"]
SERVICES = ["Manage AI Services", "Sync Accounts", "Claude", "Codex", "Gemini", "CLI support staged", "Windsurf",
            "Credential boundary staged", "Coming Soon", "All data is processed on your Mac"]
HEAT_MAP_CELL = rf".*\d{{4}}: {ANY_NUMBER}"


class Element:
    def __init__(self, line):
        self.role, self.name, self.value, self.text, self.focusable = (line.split("\t") + [""] * 4)[:5]
        self.role = self.role.strip()


def dumped_tabs(surroundings, *arguments):
    """The elements of each tab, by the tab's name. The dump is kept beside the pictures."""
    desktop = Desktop(surroundings, services=["org.a11y.Bus"])
    reader = desktop.processes.start("accessibility", [DUMP])
    until("the dump is waiting for the program", lambda: "waiting" in surroundings.log("accessibility"))
    agent = desktop.start_agent(*arguments, environment={"QT_LINUX_ACCESSIBILITY_ALWAYS_ON": "1"})
    until("the dump is waiting for the popover", lambda: "open the popover" in surroundings.log("accessibility"))
    desktop.run("--toggle")
    agent.opened_popover()
    until("the dump has ended", lambda: reader.poll() is not None, timeout=90)  # it reads every cell of a year
    output = surroundings.log("accessibility")
    expect_equal(reader.returncode, 0, f"status of the dump, which printed {output[-300:]!r}")
    os.makedirs(surroundings.options.screenshots, exist_ok=True)
    with open(surroundings.screenshot_path("").removesuffix("png") + "txt", "w", encoding="utf-8") as file:
        file.write(output)
    sections = output.split("== ")[1:]
    return {lines[0]: [Element(line) for line in lines[1:]] for lines in map(str.splitlines, sections)}


def missing(elements, texts):
    shown = {text for element in elements for text in (element.name, element.text, element.value) if text}
    return [text for text in texts
            if text not in shown and not any(re.fullmatch(text, candidate) for candidate in shown)]


def expect_texts(tabs, texts):
    for tab, expected in texts.items():
        absent = missing(tabs[tab], [*HEADER, *expected])
        expect(not absent, f"{tab} lacks {absent}")


def expect_names(tabs):
    for tab, elements in tabs.items():
        focusable = [element for element in elements if element.focusable]
        expect(len(focusable) >= 7, f"{tab}: the keyboard reaches only {len(focusable)} elements")
        nameless = [element.role for element in focusable if not element.name]
        expect(not nameless, f"{tab}: the keyboard reaches elements without a name: {nameless}")


def test_everyTextIsReadOutAndEverythingTheKeyboardReachesHasAName(surroundings):
    tabs = dumped_tabs(surroundings)
    expect_equal(list(tabs), ["Overview", "Dashboard", "Ranking", "Services"], "tabs")
    expect_texts(tabs, {
        "Overview": [*OVERVIEW, "43%", "used", r"Resets in 2 h.*", r"Weekly 17\s?% used", "30D Tokens", "Source",
                     "Local history", "Observed", "Connected", "Exact"],
        "Dashboard": DASHBOARD,
        "Ranking": RANKING,
        "Services": [*SERVICES, "Connected Accounts (1)", "Connected", "Local history"],
    })
    progress = [element for element in tabs["Overview"] if element.name == "Codex usage"]
    expect_equal([element.role for element in progress], ["progress bar"], "roles of the quota")
    expect(42 <= float(progress[0].value) <= 43, f"the quota's value is {progress[0].value}")
    cells = [element for element in tabs["Dashboard"] if re.fullmatch(HEAT_MAP_CELL, element.name)]
    expect(len(cells) >= 365, f"{len(cells)} cells of the heat map")
    expect_names(tabs)


def test_invitationsAreReadOutWithoutAccess(surroundings):
    surroundings.options.home = None
    expect_texts(dumped_tabs(surroundings, "--no-quota"), {
        "Overview": ["Enable 30-day usage", "Allow read-only access to Claude and Codex usage metadata", "Allow Access",
                     "Permission", "Not enabled", "—", "Unknown", *CARDS],
        "Dashboard": [*DASHBOARD, r"\$0\.00"],
        "Ranking": [*RANKING, "0"],
        "Services": [*SERVICES, "Connected Accounts (0)", "Allow Home Folder Access", "Permission"],
    })
