#!/usr/bin/env python3
"""Changes a library of the real Strawberry, starts the player on it again, and takes it back.

Usage: tools/check_strawberry.py [BIN]     BIN: the folder of the programs (build/release/bin)

Needs strawberry and dbus. Everything happens in a folder of its own, on a bus of its own; what was
started is ended by its process. Exit status 1 when a list is not as planned.
"""
import contextlib
import json
import os
import random
import shutil
import signal
import sqlite3
import subprocess
import sys
import tempfile
import time

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
BIN = sys.argv[1] if len(sys.argv) > 1 else os.path.join(ROOT, "build/release/bin")
NAME = "org.mpris.MediaPlayer2.strawberry"


def fail(text):
    sys.exit("check_strawberry: " + text)


def wait_until(condition, what):
    for _ in range(300):
        if condition():
            return
        time.sleep(0.05)
    fail(what + ": not within 15 s")


def ask(service, path, member, *arguments):
    done = subprocess.run(["dbus-send", "--session", "--print-reply", "--dest=" + service, path,
                           member, *arguments], capture_output=True, text=True)
    return done.stdout


class Player:
    """Strawberry, from its start to its end."""

    def __enter__(self):
        # It ends itself now and then while it starts.
        for _ in range(3):
            self.process = subprocess.Popen(["strawberry", "--quiet"], stdout=subprocess.DEVNULL,
                                            stderr=subprocess.DEVNULL)
            wait_until(lambda: self.is_there() or self.process.poll() is not None,
                       "Strawberry starts")
            if self.process.poll() is None:
                return self
        fail(f"Strawberry ends with {self.process.returncode} when it is started")

    @staticmethod
    def is_there():
        return "true" in ask("org.freedesktop.DBus", "/", "org.freedesktop.DBus.NameHasOwner",
                             "string:" + NAME)

    def __exit__(self, *error):
        ask(NAME, "/org/mpris/MediaPlayer2", "org.mpris.MediaPlayer2.Quit")
        try:
            self.process.wait(15)
        except subprocess.TimeoutExpired:
            self.process.kill()
            self.process.wait()
            fail("Strawberry does not quit")

    @staticmethod
    def playlists():
        return ask(NAME, "/org/mpris/MediaPlayer2", "org.mpris.MediaPlayer2.Playlists.GetPlaylists",
                   "uint32:0", "uint32:100", "string:Alphabetical", "boolean:false")


def query(database, sql):
    with contextlib.closing(sqlite3.connect(f"file:{database}?mode=ro", uri=True)) as connection:
        return connection.execute(sql).fetchall()


def lists(database):
    """What each playlist lists: numbers of songs, and places of what is none."""
    found = {number: (name, []) for number, name in query(database, "SELECT rowid, name FROM playlists")}
    for playlist, song, url in query(
            database, "SELECT playlist, collection_id, url FROM playlist_items ORDER BY rowid"):
        found[playlist][1].append(song or url)
    return found


def kestrel(*arguments, succeeds=True):
    done = subprocess.run([BIN + "/kestrel-cli", *arguments], capture_output=True, text=True)
    if (done.returncode == 0) != succeeds:
        fail(f"kestrel-cli {' '.join(arguments)}: {done.stdout}{done.stderr}")
    return done.stdout + done.stderr


def expect(database, expected, when):
    if lists(database) != expected:
        fail(f"{when}: {lists(database)} instead of {expected}")


def expect_in_player(database, expected, song):
    """Has Strawberry add a song to its lists, for which it writes them anew from its memory."""
    kept = shutil.copy(database, database + "-kept")
    with Player() as player:
        time.sleep(1)
        for name, _ in expected.values():
            if f'"{name}"' not in player.playlists():
                fail(f"Strawberry does not show {name}")
        subprocess.run(["strawberry", "--append", song], stdout=subprocess.DEVNULL,
                       stderr=subprocess.DEVNULL)
        wait_until(lambda: sum(len(entries) for _, entries in lists(database).values()) >
                   sum(len(entries) for _, entries in expected.values()), "Strawberry adds a song")
    found = lists(database)
    longer = [number for number, (_, entries) in expected.items() if found[number][1] != entries]
    for number in longer:
        found[number][1].pop()
        if not expected[number][1]:
            fail("Strawberry has added a song to an empty list")
    if len(longer) != 1 or found != expected:
        fail(f"Strawberry has {found} instead of {expected}")
    os.replace(kept, database)


SONGS = "SELECT rowid, playcount, lastplayed, rating, comment, unavailable, mtime FROM songs"


def check_carrying(database):
    """Kept songs take over what their copies have; the player, started on it, keeps it."""
    with contextlib.closing(sqlite3.connect(database)) as connection:
        connection.execute("UPDATE songs SET playcount = rowid % 7, lastplayed = 1500000000 + rowid, "
                           "rating = CASE rowid % 3 WHEN 0 THEN -1 ELSE (rowid % 5 + 1) / 5.0 END, "
                           "comment = CASE rowid % 4 WHEN 0 THEN 'of ' || rowid ELSE '' END")
        connection.commit()
    before = {row[0]: row[1:] for row in query(database, SONGS)}
    options = ["remove", "strawberry:", "--keep-files", "--with-playlists", "--carry",
               "plays,rating,comments"]
    if "--carry added" not in kestrel("remove", "strawberry:", "--carry", "added", succeeds=False):
        fail("a date added would be carried over")
    plan = json.loads(subprocess.run([BIN + "/kestrel-cli", *options, "--json"], check=True,
                                     capture_output=True, text=True).stdout)
    kestrel(*options, "--apply")
    removed = {}
    for track in plan["tracks"]:
        if not track["heldBack"]:
            removed.setdefault(int(track["keeper"], 16), []).append(int(track["hexpid"], 16))
    if len(removed) < 3:
        fail("there is next to nothing to carry over")
    with Player():
        time.sleep(1)
    now = {row[0]: row[1:] for row in query(database, SONGS)}
    for keeper, copies in removed.items():
        sources = [before[keeper]] + [before[copy] for copy in copies]
        wanted = (sum(row[0] for row in sources),
                  max([before[keeper][1]] + [row[1] for row in sources[1:] if row[0] > 0]),
                  max(row[2] for row in sources), next((row[3] for row in sources if row[3]), ""))
        if now[keeper][:4] != wanted:
            fail(f"song {keeper} has {now[keeper][:4]} and not {wanted}")
    run = json.loads(kestrel("history", "strawberry:", "--json"))[0]["run"]
    kestrel("undo", "strawberry:", str(run))
    after = {row[0]: row[1:] for row in query(database, SONGS)}
    for song, row in before.items():
        # The player notes the file of a song that is there again when it looks next.
        if after[song][:4] != row[:4]:
            fail(f"song {song} has {after[song]} and not {row} after it was taken back")
    return len(removed)


def check(home):
    database = os.path.join(os.environ["XDG_DATA_HOME"], "strawberry/strawberry/strawberry.db")
    subprocess.run([BIN + "/kestrel-make-library", "--demo", "--tracks", "60", home + "/Demo.xml"],
                   check=True)
    with Player():
        pass
    with contextlib.closing(sqlite3.connect(database)) as connection:
        connection.execute("INSERT INTO directories(path, subdirs) VALUES(?, 1)", (home + "/Media",))
        connection.commit()
    songs = [os.path.join(folder, name) for folder, _, names in os.walk(home + "/Media")
             for name in sorted(names) if name != "cover.png"]
    with Player():
        wait_until(lambda: query(database, "SELECT count(*) FROM songs")[0][0] == len(songs),
                   "Strawberry finds the files")
        outside = shutil.copy(songs[0], home + "/outside" + os.path.splitext(songs[0])[1])
        for name, chosen in [("Mine", songs[:30] + [outside, songs[0]] + songs[::2]),
                             ("Other", songs[::-1])]:
            subprocess.run(["strawberry", "--create", name, *chosen], stdout=subprocess.DEVNULL,
                           stderr=subprocess.DEVNULL)
            wait_until(lambda: any(name == stored and len(entries) == len(chosen)
                                   for stored, entries in lists(database).values()),
                       "Strawberry writes a playlist")
        if "Close Strawberry first" not in kestrel("replaylist", "strawberry:", "--apply",
                                                   succeeds=False):
            fail("the library is changed while Strawberry runs")
    before = lists(database)

    plan = home + "/plan.json"
    with open(plan, "w") as file:
        subprocess.run([BIN + "/kestrel-cli", "plan", "strawberry:"], check=True, stdout=file)
    planned = {number: (name, list(entries)) for number, (name, entries) in before.items()}
    changes = 0
    for playlist in json.load(open(plan))["playlists"]:
        entries = planned[int(playlist["hexpid"], 16)][1]
        places = [i for i, entry in enumerate(entries) if isinstance(entry, int)]
        for one in playlist["entries"]:
            entries[places[one["position"] - 1]] = int(one["new"], 16)
            changes += 1
    if changes < 10:
        fail("there is next to nothing to do")
    kestrel("apply", plan)
    expect(database, planned, "applied")
    expect_in_player(database, planned, songs[0])

    # Ended at any moment, an undo has left the one or the other.
    for _ in range(12):
        process = subprocess.Popen([BIN + "/kestrel-cli", "undo", "strawberry:", "1"],
                                   stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        time.sleep(random.uniform(0.005, 0.08))
        process.send_signal(signal.SIGKILL)
        process.wait()
        kestrel("playlists", "strawberry:")
        if lists(database) == before:
            break
        expect(database, planned, "after a kill")
    if lists(database) != before:
        kestrel("undo", "strawberry:", "1")
    expect(database, before, "taken back")
    expect_in_player(database, before, songs[0])
    carried = check_carrying(database)
    print(f"check_strawberry: {carried} songs took over what their copies had, and gave it back")
    print(f"check_strawberry: {changes} entries in {len(before)} playlists changed and taken back")


if __name__ == "__main__":
    if "KESTREL_CHECK_HOME" in os.environ:
        check(os.environ["KESTREL_CHECK_HOME"])
    else:
        with tempfile.TemporaryDirectory(prefix="kestrel-strawberry-") as home:
            environment = {**os.environ, "KESTREL_CHECK_HOME": home, "HOME": home,
                           "QT_QPA_PLATFORM": "offscreen", "LC_ALL": "C.UTF-8"}
            for name in ("WAYLAND_DISPLAY", "DISPLAY", "DBUS_SESSION_BUS_ADDRESS"):
                environment.pop(name, None)
            for name in ("DATA_HOME", "CONFIG_HOME", "CACHE_HOME", "STATE_HOME", "RUNTIME_DIR"):
                environment["XDG_" + name] = f"{home}/{name.lower()}"
                os.mkdir(environment["XDG_" + name], 0o700)
            sys.exit(subprocess.run(["dbus-run-session", "--", sys.executable, *sys.argv],
                                    env=environment, stderr=None).returncode)
