"""The settings window, operated through the accessibility bus and by keys, and the effects of its changes."""

import os
import stat
import subprocess

from Xlib import Xutil

from harness.processes import needed
from harness.reader import PUSH_BUTTON
from harness.services import NotificationService
from harness.settings import SIZE, TITLE, Settings, spoken_lines, without_labels_of_values
from harness.waiting import Failure, expect, expect_equal, stays, until

PICKER_TITLE = "Choose your home folder to read Claude and Codex usage metadata."
ENTRY = os.path.join(os.path.dirname(__file__), "../../packaging/org.tallyfox.tallyfox.desktop")
UNLISTED = {"_NET_WM_STATE_SKIP_TASKBAR", "_NET_WM_STATE_SKIP_PAGER"}
INTERVALS = ["1 minute", "5 minutes", "15 minutes", "30 minutes"]
TOGGLES = {  # by tab: the name of each toggle, the key it is stored under, and whether it is on by default
    "General": [("Launch at Login", "launchAtLogin", False), ("Show Dock Icon", "showDockIcon", False),
                ("Show Account Emails", "showAccountEmails", False), ("Ranking Privacy", "rankingPrivate", True)],
    "Notifications": [("Notifications", "notificationsEnabled", False),
                      ("Service and model news", "newsNotifications", False)],
}
THRESHOLDS = {"Claude threshold": "claudeThreshold", "Codex threshold": "codexThreshold"}
TEXTS = {  # what a screen reader reads out of each tab, in this order
    "General": ["Usage", "Refresh interval", "5 minutes", "App Access", "Launch at Login", "Show Dock Icon",
                "Global Shortcut: ⌥⌘B", "Appearance", "Theme: Tallyfox Warm", "Show Account Emails", "Ranking Privacy"],
    "Accounts": ["Connected Accounts", "Claude", "Observed from local history", "Local history", "Codex",
                 "Official usage API", "Connected", "Sync Accounts", "Local Usage History",
                 "Home directory access: Allowed",
                 "Claude and Codex usage metadata is read in place and is never copied.", "Previously Removed",
                 "No removed accounts"],
    "Notifications": ["Usage Alerts", "Notifications", "Claude threshold", "20%", "Codex threshold", "20%",
                      "You will be notified when remaining usage falls below the threshold.", "Updates",
                      "Service and model news"],
    "About": ["Tallyfox", "Version 0.1.0", "Privacy", "Processing: 100% Local", "Raw transcripts: Never stored",
              "Provider credentials: Never read"],
}


def test_windowIsCentredAndCannotBeResized(surroundings):
    settings = Settings(surroundings)
    window, box = until("the window is shown", settings.x_window)
    screen = settings.desktop.display.box
    for axis in (0, 1):  # give or take the frame around it
        expect(abs(box.middle[axis] - screen.middle[axis]) <= 24, f"the window at {box} is not in the middle")
    hints = window.get_wm_normal_hints()
    expect(hints.flags & Xutil.PMinSize and hints.flags & Xutil.PMaxSize, "the window can be resized")
    expect_equal(((hints.min_width, hints.min_height), (hints.max_width, hints.max_height)), (SIZE, SIZE),
                 "smallest and largest size")
    expect_equal(settings.desktop.display.titles_of(settings.agent.pid), [TITLE], "titles")
    expect_equal(settings.window.role, "frame", "role of the window")


def test_everyTextOfEveryTabIsReadOut(surroundings):
    settings = Settings(surroundings)
    tabs = settings.find("Settings", "page tab list")
    expect_equal([tab.name for tab in tabs.children()], list(TEXTS), "tabs")
    for tab, texts in TEXTS.items():
        settings.choose(tab)
        def is_spoken(expected=texts):
            return without_labels_of_values(spoken_lines(settings.window)) == expected
        try:
            until(f"the texts of {tab} are read out", is_spoken, timeout=5)  # a refresh updates the accounts
        except Failure:
            expect_equal(without_labels_of_values(spoken_lines(settings.window)), texts, tab)
        focusable = [element for element in settings.window.shown() if element.has("focusable")]
        nameless = [element.role for element in focusable if not element.spoken_name]
        expect(not nameless, f"{tab}: the keyboard reaches elements without a name: {nameless}")
        chosen = [element.name for element in tabs.children() if element.has("selected")]
        expect_equal(chosen, [tab], "chosen tabs")


def test_freshAccountHasDefaultsAndNoFileUntilTheFirstChange(surroundings):
    settings = Settings(surroundings)
    expect_equal(settings.interval().name, "5 minutes", "refresh interval")
    for tab, toggles in TOGGLES.items():
        settings.choose(tab)
        for name, _, is_on in toggles:
            expect_equal(settings.toggle(name).is_on, is_on, name)
    for name in THRESHOLDS:
        settings.expect_slider(name, 20)
    expect_equal(settings.changed_files(), [], "files before the first change")
    settings.switch("Service and model news")
    settings.expect_stored(newsNotifications="true")
    expect_equal(settings.changed_files(), [settings.file], "files after the first change")
    modes = [stat.S_IMODE(os.stat(path).st_mode) for path in (settings.file, os.path.dirname(settings.file))]
    expect_equal(modes, [0o600, 0o700], "access to file and folder")


def test_everyChangeIsStoredAndShownAgain(surroundings):
    settings = Settings(surroundings)
    NotificationService(settings.desktop.bus)  # without one, the toggle would go back
    wanted = {"refreshMinutes": "30"}
    settings.choose_last_interval(INTERVALS)
    for tab, toggles in TOGGLES.items():
        settings.choose(tab)
        for name, key, is_on in toggles:
            settings.switch(name)
            settings.expect_toggle(name, not is_on)
            wanted[key] = str(not is_on).lower()
            settings.expect_stored(**wanted)
    for (name, key), percent in zip(THRESHOLDS.items(), (35, 95)):
        settings.slider(name).set_value(percent)
        settings.expect_slider(name, percent)
        wanted[key] = str(percent)
    settings.expect_stored(**wanted)
    settings.restart()
    expect_equal(settings.interval().name, "30 minutes", "refresh interval after a restart")
    for tab, toggles in TOGGLES.items():
        settings.choose(tab)
        for name, _, is_on in toggles:
            expect_equal(settings.toggle(name).is_on, not is_on, f"{name} after a restart")
    for name, percent in zip(THRESHOLDS, (35, 95)):
        settings.expect_slider(name, percent)
    settings.expect_stored(**wanted)


def test_keyboardAloneChangesSettings(surroundings):
    settings = Settings(surroundings)
    press = settings.desktop.display.press
    settings.take_focus()
    press("Tab")
    until("the interval has the focus", lambda: settings.interval().has("focused"))
    press("Down")
    settings.expect_stored(refreshMinutes="15")
    for _ in range(3):
        press("Tab")
    until("a toggle has the focus", lambda: settings.toggle("Show Account Emails").has("focused"))
    press("space")
    settings.expect_stored(refreshMinutes="15", showAccountEmails="true")
    press("Alt_L", "n")
    until("Alt+N chooses the tab", lambda: settings.find("Notifications", "page tab").has("selected"))


def test_slidersMoveInStepsOfFive(surroundings):
    settings = Settings(surroundings)
    settings.choose("Notifications")
    settings.take_focus()
    for name in THRESHOLDS:
        slider = settings.slider(name)
        slider.focus()
        until(f"the {name} has the focus", lambda: slider.has("focused"))
        for key, percent in (("Right", 25), ("Left", 20), ("Left", 15), ("Home", 5), ("Left", 5), ("End", 95),
                             ("Right", 95), ("Down", 90)):
            settings.desktop.display.press(key)
            until(f"{key} sets the {name} to {percent}", lambda wanted=percent: slider.value == wanted)
            expect_equal(slider.description, f"{percent}%", f"spoken value of the {name}")
        slider.set_value(42)  # no key sets such a value
        settings.expect_slider(name, 40)
    settings.expect_stored(**{key: "40" for key in THRESHOLDS.values()})


def test_launchAtLoginCreatesAndRemovesTheEntry(surroundings):
    settings = Settings(surroundings)
    settings.switch("Launch at Login")
    settings.expect_stored(launchAtLogin="true")
    until("the entry exists", lambda: os.path.exists(settings.entry))
    check = subprocess.run([needed("desktop-file-validate"), settings.entry], capture_output=True, text=True)
    expect_equal((check.returncode, check.stdout + check.stderr), (0, ""), "result of desktop-file-validate")
    with open(settings.entry, encoding="utf-8") as file:
        expect(f"TryExec={surroundings.options.program}\n" in file.read(), "the entry starts another program")
    settings.switch("Launch at Login")
    settings.expect_stored(launchAtLogin="false")
    until("the entry is gone", lambda: not os.path.exists(settings.entry))


def test_launchAtLoginToggleGoesBackWhenTheEntryCannotBeWritten(surroundings):
    # A file in place of the folder also stops root, which a mode of the folder would not.
    obstacle = os.path.join(surroundings.config_home, "autostart")
    with open(obstacle, "w", encoding="utf-8"):
        pass
    settings = Settings(surroundings)
    settings.switch("Launch at Login")
    settings.expect_stored(launchAtLogin="false")
    settings.expect_toggle("Launch at Login", False)
    expect(os.path.isfile(obstacle), "the file in the way has been replaced")


def test_launchAtLoginIsShownAsOffAfterTheUserRemovedTheEntry(surroundings):
    settings = Settings(surroundings)
    settings.switch("Launch at Login")
    settings.expect_toggle("Launch at Login", True)
    settings.choose("About")
    os.remove(settings.entry)
    settings.choose("General")
    settings.expect_toggle("Launch at Login", False)
    settings.expect_stored(launchAtLogin="false")


def test_notificationsToggleGoesBackWithoutAService(surroundings):
    settings = Settings(surroundings)
    settings.choose("Notifications")
    settings.switch("Notifications")
    settings.expect_stored(notificationsEnabled="false")  # there was no file before
    settings.expect_toggle("Notifications", False)


def test_notificationsStayOnWithAServiceAndNothingIsPosted(surroundings):
    settings = Settings(surroundings)
    service = NotificationService(settings.desktop.bus)
    settings.choose("Notifications")
    settings.switch("Notifications")
    until("the service is called", lambda: service.calls)
    settings.slider("Codex threshold").set_value(95)  # far above the remaining quota
    stays("the toggle is on", lambda: settings.toggle("Notifications").is_on, 1)
    settings.expect_stored(notificationsEnabled="true", codexThreshold="95")
    settings.switch("Notifications")
    settings.expect_toggle("Notifications", False)
    expect_equal(service.calls, ["GetCapabilities"], "calls to the service")


def test_reopenedWindowHasItsOldPlaceAndTab(surroundings):
    settings = Settings(surroundings)
    settings.choose("Accounts")
    settings.move_by(70, 90)
    box = settings.box()
    settings.close()
    expect_equal(settings.desktop.run("--settings")[0], 0, "status of --settings")
    expect_equal(settings.box(), box, "place of the window")
    until("the tab is the same", lambda: settings.find("Accounts", "page tab").has("selected"))


def test_dockIconPutsTheWindowIntoTheTaskbarUntilTheNextStart(surroundings):
    settings = Settings(surroundings)
    until("taskbars skip the window", lambda: UNLISTED <= settings.states())
    settings.switch("Show Dock Icon")
    until("taskbars list the window", lambda: not UNLISTED & settings.states())
    window, _ = settings.x_window()
    with open(ENTRY, encoding="utf-8") as file:  # taskbars match the window with its desktop entry by this
        expect(f"StartupWMClass={window.get_wm_class()[1]}\n" in file, "the window matches no desktop entry")
    sizes = settings.desktop.display.icon_sizes(window)
    expect({(16, 16), (48, 48)} <= set(sizes), f"a taskbar finds icons of these sizes: {sizes}")
    settings.switch("Show Dock Icon")
    until("taskbars skip the window again", lambda: UNLISTED <= settings.states())
    settings.switch("Show Dock Icon")
    settings.expect_stored(showDockIcon="true")
    # Only turning it on has an effect: after the next start taskbars skip the window again.
    settings.restart()
    settings.expect_toggle("Show Dock Icon", True)
    until("taskbars skip the window after a restart", lambda: UNLISTED <= settings.states())


def test_invitationLeadsToAStoredGrant(surroundings):
    surroundings.options.home = None
    settings = Settings(surroundings, "--no-quota")
    settings.choose("Accounts")
    settings.expect_spoken("Home directory access: Required")
    settings.find("Allow Home Folder Access", PUSH_BUTTON).activate()
    picker = settings.reader.window(settings.agent.pid, PICKER_TITLE)
    # It starts at the home folder, which is the one to grant.
    confirm = until("the choice can be confirmed", lambda: [element for element in picker.shown() if
                                                            element.name == "Choose" and element.has("sensitive")])
    confirm[0].activate()
    settings.expect_spoken("Home directory access: Allowed")
    expect("Allow Home Folder Access" not in spoken_lines(settings.window), "the invitation is still there")
    expect_equal(list(settings.stored()), ["homeFolderBookmark"], "stored keys")
    settings.restart("--no-quota")
    settings.choose("Accounts")
    settings.expect_spoken("Home directory access: Allowed")
