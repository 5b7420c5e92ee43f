#!/usr/bin/env python3
"""Starts the desktop program on a virtual screen, works with real key and mouse events,
and looks from outside at what comes of it: windows, pixels, the history and the document.

Usage: keys_under_xvfb.py KESTREL KESTREL_CLI KESTREL_MAKE_LIBRARY
Exits with 77 where the packages of the group "screen" (tools/install_packages.sh) are missing.
"""

import collections
import json
import os
import pathlib
import plistlib
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


class Picture:
    """What a window shows, as lines of three bytes a pixel."""

    def __init__(self, window):
        data = subprocess.run(["import", "-window", window, "-depth", "8", "ppm:-"],
                              check=True, stdout=subprocess.PIPE).stdout
        _, width, height, _, pixels = data.split(maxsplit=4)
        pixels = data[-3 * int(width) * int(height):]
        size = 3 * int(width)
        self.lines = [pixels[i:i + size] for i in range(0, len(pixels), size)]

    def __eq__(self, other):
        return self.lines == other.lines

    def band(self, lines):
        return [self.lines[i] for i in lines]

    def uppermost_change(self, other):
        """The lines of the uppermost thing that differs, and its leftmost pixel."""
        changed = [i for i, (a, b) in enumerate(zip(self.lines, other.lines)) if a != b]
        last = changed[0]
        for i in changed:
            if i > last + 2:
                break
            last = i
        lines = range(changed[0], last + 1)
        left = min(next(x for x, (a, b) in enumerate(zip(self.lines[i], other.lines[i])) if a != b)
                   for i in lines if self.lines[i] != other.lines[i])
        return lines, left // 3


class Screen:
    """The keys, the mouse and the windows of the display that the environment names."""

    @staticmethod
    def tool(*arguments):
        return subprocess.run(["xdotool", *map(str, arguments)], text=True,
                              stdout=subprocess.PIPE, stderr=subprocess.DEVNULL)

    def press(self, *keys):
        assert self.tool("key", "--delay", 40, *keys).returncode == 0

    def write(self, text):
        assert self.tool("type", "--delay", 20, text).returncode == 0

    def windows(self, title):
        return self.tool("search", "--onlyvisible", "--name", f"^{title}$").stdout.split()

    def appeared(self, title):
        """The window of this title, once it has the keys."""
        wait_for(f"the window '{title}'", lambda: self.windows(title))
        return wait_for(f"the keys to go to '{title}'", lambda: [
            window for window in self.windows(title)
            if window == self.tool("getactivewindow").stdout.strip()])[0]

    def gone(self, title):
        wait_for(f"the window '{title}' to close", lambda: not self.windows(title))

    def settled(self, window, before=None):
        """What the window shows when it changes no more; other than `before`, if that is given."""
        last = Picture(window)

        def still():
            nonlocal last
            time.sleep(0.3)
            earlier, last = last, Picture(window)
            return last == earlier and not (before and last == before)
        wait_for("another picture" if before else "a picture that stays", still)
        return last

    def click(self, window, x, y):
        assert self.tool("mousemove", "--window", window, x, y, "click", 1).returncode == 0
        self.tool("mousemove", "--window", window, 2, 2)  # nothing is lit up by hovering


class Library:
    """The document, and the history that the programs keep of it."""

    def __init__(self, folder, cli):
        self.path = folder / "Library.xml"
        self.cli = cli

    def runs(self):
        output = subprocess.run([self.cli, "history", self.path, "--json"], check=True,
                                stdout=subprocess.PIPE).stdout
        return json.loads(output)

    def repeated(self):
        """By the name of each playlist that people made: how many entries repeat an earlier one."""
        counts = collections.Counter()
        for playlist in plistlib.loads(self.path.read_bytes())["Playlists"]:
            if playlist.keys() & {"Master", "Distinguished Kind", "Smart Info", "Folder"}:
                continue
            ids = [item["Track ID"] for item in playlist.get("Playlist Items", [])]
            counts[playlist["Name"]] += len(ids) - len(set(ids))
        return counts


def check(screen, library):
    main = screen.appeared("Library.xml — Kestrel")
    ready = screen.settled(main)

    # The search, a row, and its box: with the key, with the key again, with the mouse.
    screen.press("ctrl+d")
    found = screen.settled(main, ready)
    screen.press("Down")
    selected = screen.settled(main, found)
    screen.press("space")
    ticked = screen.settled(main, selected)
    row, left = ticked.uppermost_change(selected)
    assert 5 < len(row) < 40, f"a tick changes its row, not lines {row}"
    screen.press("space")
    unticked = screen.settled(main, ticked)
    assert unticked.band(row) == selected.band(row), "Space does not take back its tick"
    screen.click(main, left + 4, (row.start + row.stop) // 2)
    clicked = screen.settled(main, unticked)
    assert clicked.band(row) == ticked.band(row), "a click on the box does not tick it"

    # The filter leaves another row in its place, and Escape brings it back.
    screen.press("ctrl+f")
    screen.write("lantern")
    screen.press("Return")
    filtered = screen.settled(main, clicked)
    assert filtered.band(row) != clicked.band(row), "the filter leaves the rows as they were"
    screen.press("ctrl+f", "Escape")
    whole = screen.settled(main, filtered)
    below = range(row.stop + 4, row.stop + 100)
    assert whole.band(below) == clicked.band(below), "Escape in the filter does not bring rows back"

    # Cleaning up: nothing is written before the OK, and all that was shown after it.
    document = library.path.read_bytes()
    before = library.repeated()
    assert before["All My Copies"] > 0
    screen.press("ctrl+u")
    screen.settled(screen.appeared("Clean Up Playlists"))
    assert library.runs() == [] and library.path.read_bytes() == document
    screen.press("alt+o")
    run = wait_for("the end of the clean-up", lambda: [
        run for run in library.runs() if run["state"] == "finished"])[0]
    assert run["playlists"] > 1, run
    after = library.repeated()
    assert after["All My Copies"] == 0 and after.total() < before.total(), (before, after)
    screen.settled(screen.appeared("Clean Up Playlists"))
    screen.press("Return")
    screen.gone("Clean Up Playlists")

    # The history opens and closes, and the program ends, all by key.
    screen.appeared("Library.xml — Kestrel")
    screen.press("ctrl+h")
    screen.appeared("History")
    screen.press("Escape")
    screen.gone("History")
    screen.appeared("Library.xml — Kestrel")

    # A message takes the window that it lies over with it, and the keys go on to the main window.
    library.path.rename(library.path.with_suffix(".away"))
    screen.press("ctrl+u")
    wait_for("a message", lambda: screen.tool(
        "getactivewindow", "getwindowname").stdout.strip() == "Kestrel")
    screen.press("Return")
    screen.gone("Clean Up Playlists")
    screen.appeared("Library.xml — Kestrel")
    screen.press("ctrl+q")


def main(kestrel, cli, make_library):
    needed = ["Xvfb", "openbox", "xdotool", "import"]
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
        library = Library(folder, cli)
        subprocess.run([make_library, "--demo", library.path], check=True)

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
            program = subprocess.Popen([kestrel, library.path])
            started.append(program)
            check(Screen(), library)
            code = program.wait(PATIENCE)
            assert code == 0, f"the program ends with {code}"
        finally:
            for process in reversed(started):
                process.kill()
                process.wait()
    return 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
