#!/usr/bin/env python3
"""Starts the desktop program on a virtual screen, works with real key events, and
looks from outside at what comes of it: windows, the history and the document.

Usage: keys_under_xvfb.py KESTREL KESTREL_CLI KESTREL_MAKE_LIBRARY
Exits with 77 where the packages of the group "screen" (tools/install_packages.sh) are missing.
"""

import json
import os
import pathlib
import shutil
import subprocess
import sys
import tempfile
import time

PATIENCE = 20  # seconds, for a single change that has to come
SKIPPED = 77


def wait_for(what, probe):
    """What `probe` gives as soon as that is true; the test fails if it never is."""
    end = time.monotonic() + PATIENCE
    while time.monotonic() < end:
        found = probe()
        if found:
            return found
        time.sleep(0.1)
    raise AssertionError(f"waited in vain for {what}")


class Screen:
    """The keys and the windows of the display that the environment names."""

    @staticmethod
    def tool(*arguments):
        return subprocess.run(["xdotool", *map(str, arguments)], text=True,
                              stdout=subprocess.PIPE, stderr=subprocess.DEVNULL)

    def press(self, *keys):
        assert self.tool("key", "--delay", 40, *keys).returncode == 0

    def press_until(self, key, what, probe):
        """Presses the key until it is heeded: while a program is busy it is not."""
        return wait_for(what, lambda: probe() or self.press(key))

    def windows(self, title):
        return self.tool("search", "--onlyvisible", "--name", f"^{title}$").stdout.split()

    def opened(self, title, key=None):
        """The window of this title, which the key opens, has the keys now."""
        if key:
            self.press_until(key, f"the window '{title}'", lambda: self.windows(title))
        wait_for(f"the keys to go to '{title}'", lambda:
                 self.tool("getactivewindow").stdout.strip() in self.windows(title))

    def closed(self, title, key):
        self.press_until(key, f"the window '{title}' to close", lambda: not self.windows(title))


def check(screen, library, runs):
    main, clean_up, history = "Library.xml — Kestrel", "Clean Up Playlists", "History"
    screen.opened(main)

    # Cleaning up: nothing is written before the button is pressed.
    document = library.read_bytes()
    screen.opened(clean_up, "ctrl+u")
    assert runs() == [] and library.read_bytes() == document
    run = screen.press_until("alt+d", "the end of the clean-up", lambda: [
        run for run in runs() if run["state"] == "finished"])[0]
    assert run["playlists"] > 1 and library.read_bytes() != document, run
    screen.closed(clean_up, "Return")

    # The whole work, and all of it undone from the history: not a byte is another one then.
    def everything():
        return {file: file.read_bytes() for file in sorted(library.parent.glob("Media/**/*"))
                if file.is_file()} | {library: library.read_bytes()}

    def ended(count):
        return lambda: (len(runs()) == count and runs()[0]["state"] == "finished" and runs())

    before = everything()
    screen.opened(main)
    screen.press("ctrl+d")
    repair, remove = "Repair Playlists", "Remove Copies"
    screen.opened(repair, "ctrl+r")
    screen.closed(repair, "Escape")
    screen.opened(main)
    screen.press("Down", "Down", "k", "Down", "Down", "Down", "k", "ctrl+z")
    screen.opened(repair, "ctrl+r")
    screen.press("space", "Down", "Down", "space", "space")  # one playlist is left out
    repaired = screen.press_until("alt+r", "the end of the repair", ended(2))[0]
    assert repaired["playlists"] > 1 and everything() != before, repaired
    screen.closed(repair, "Return")
    screen.opened(main)
    screen.opened(remove, "ctrl+shift+Delete")
    removed = screen.press_until("alt+r", "the end of the removal", ended(3))[0]
    assert removed["tracks"] > 1 and removed["files"] > 1, removed
    screen.closed(remove, "Return")
    screen.opened(main)
    screen.opened(history, "ctrl+h")
    for count, key in [(4, "Home"), (5, "Down")]:
        screen.press(key)
        undone = screen.press_until("alt+u", "the end of the undo", lambda: (
            ended(count)() or screen.press("Return")))[0]
        assert undone["kind"] == "undo", undone
    assert everything() == before
    screen.closed(history, "Escape")
    screen.opened(main)

    # A message takes the window that it lies over with it, and the keys go on to the main window.
    library.rename(library.with_suffix(".away"))
    screen.press_until("ctrl+u", "a message", lambda: screen.tool(
        "getactivewindow", "getwindowname").stdout.strip() == "Kestrel")
    screen.closed(clean_up, "Return")
    screen.opened(main)
    screen.press("ctrl+q")


def main(kestrel, cli, make_library):
    needed = ["Xvfb", "openbox", "xdotool"]
    if missing := [tool for tool in needed if not shutil.which(tool)]:
        print("not installed:", *missing)
        return SKIPPED
    with tempfile.TemporaryDirectory() as home:
        folder = pathlib.Path(home)
        for variable in ["HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_STATE_HOME",
                         "XDG_CACHE_HOME", "XDG_RUNTIME_DIR"]:
            os.environ[variable] = str(folder / variable.lower())
            os.mkdir(os.environ[variable], 0o700)
        for variable in ["DBUS_SESSION_BUS_ADDRESS", "WAYLAND_DISPLAY", "QT_SCALE_FACTOR"]:
            os.environ.pop(variable, None)
        os.environ |= {"LC_ALL": "C.UTF-8", "QT_QPA_PLATFORM": "xcb"}
        library = folder / "Library.xml"
        subprocess.run([make_library, "--demo", library], check=True)

        started = []
        try:
            reading, writing = os.pipe()
            started.append(subprocess.Popen(
                ["Xvfb", "-displayfd", str(writing), "-screen", "0", "1400x900x24"],
                pass_fds=[writing], stderr=subprocess.DEVNULL))
            os.close(writing)
            number = os.read(reading, 16).decode().strip()
            assert number, "no screen"
            os.environ["DISPLAY"] = ":" + number
            started.append(subprocess.Popen(["openbox"], stderr=subprocess.DEVNULL))
            wait_for("the window manager", lambda: Screen.tool("get_num_desktops").returncode == 0)
            program = subprocess.Popen([kestrel, library])
            started.append(program)
            check(Screen(), library, lambda: json.loads(subprocess.check_output(
                [cli, "history", library, "--json"])))
            code = program.wait(PATIENCE)
            assert code == 0, f"the program ends with {code}"
        finally:
            for process in reversed(started):
                process.kill()
                process.wait()
    return 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
