"""The steps of check_rhythmbox.sh: what kestrel-cli does to the library of a real Rhythmbox, while
it runs and while it does not, compared with what the player then says."""
import os
import re
import signal
import struct
import subprocess
import sys
import time
import urllib.parse
import wave

CLI = sys.argv[1]
HOME = os.environ["HOME"]
DATA = os.environ["XDG_DATA_HOME"] + "/rhythmbox"
NAME = "org.gnome.Rhythmbox3"
PAIRS = 500


def bus(path, method, *arguments, name=NAME):
    call = subprocess.run(["gdbus", "call", "--session", "-d", name, "-o", path, "-m", method,
                           *arguments], capture_output=True, text=True)
    return call.stdout if call.returncode == 0 else None


def lists(method, *arguments):
    return bus("/org/gnome/Rhythmbox3/PlaylistManager", f"{NAME}.PlaylistManager.{method}",
               *arguments)


def until(what, seconds=120):
    end = time.monotonic() + seconds
    while not (result := what()):
        assert time.monotonic() < end, "waited in vain"
        time.sleep(0.05)
    return result


class Player:
    def __enter__(self):
        self.process = subprocess.Popen(["rhythmbox"], stderr=subprocess.DEVNULL)
        owner = "org.freedesktop.DBus"
        until(lambda: "true" in (bus("/", owner + ".NameHasOwner", NAME, name=owner) or ""))
        until(lambda: "Mix" in (lists("GetPlaylists") or "") or not os.path.exists(MADE))
        return self

    def __exit__(self, *_):
        subprocess.run(["rhythmbox-client", "--quit"], stderr=subprocess.DEVNULL, check=True)
        self.process.wait(120)


def uri(name):
    return "file://" + urllib.parse.quote(f"{HOME}/Music/{name}.wav")


def held(name):
    path = f"{HOME}/exported.pls"
    if os.path.exists(path):
        os.remove(path)
    assert lists("ExportPlaylist", name, "file://" + path, "false") is not None, name
    if not os.path.exists(path):
        return []
    with open(path, encoding="utf-8") as file:
        return [urllib.parse.unquote(line.split("=", 1)[1].rsplit("/", 1)[-1].strip()[:-4])
                for line in file if re.match(r"File\d+=", line)]


def stored(name):
    with open(DATA + "/playlists.xml", encoding="utf-8") as file:
        text = file.read().split(f'name="{name}"', 1)[1].split("</playlist>", 1)[0]
    return [urllib.parse.unquote(part.rsplit("/", 1)[-1])[:-4]
            for part in re.findall("<location>(.*?)</location>", text)]


def expect(found, wanted, what):
    if found != wanted:
        sys.exit(f"{what}:\n  {found}\n  and not\n  {wanted}")


def kestrel(*arguments):
    call = subprocess.run([CLI, *arguments], capture_output=True, text=True)
    if call.returncode:
        sys.exit(f"{arguments}: {call.stderr}")
    return call.stdout + call.stderr


REPLAYLIST = ("replaylist", "rhythmbox:", "--rule", "14", "--apply")


def last_run():
    return kestrel("history", "rhythmbox:").splitlines()[1].split()[0]


def replaylist():
    said = kestrel(*REPLAYLIST)
    found = re.search(r"[Rr]un (\d+)", said)
    return found.group(1) if found else sys.exit("no run: " + said)


def chunk(content):
    return struct.pack("<I", len(content)) + content + b"\0" * (len(content) % 2)


def make_library():
    """Songs n, of which "n small" is a copy in a smaller file."""
    os.makedirs(HOME + "/Music")
    os.makedirs(DATA)
    entries = []
    for number in range(PAIRS):
        for name, frames in ((f"é {number}", 800), (f"é {number} small", 400)):
            with wave.open(f"{HOME}/Music/{name}.wav", "wb") as file:
                file.setparams((1, 1, 8000, 0, "NONE", None))
                file.writeframes(bytes(frames))
            tags = b"LIST" + chunk(b"INFO" + b"".join(
                name + chunk(text.encode()) for name, text in
                ((b"INAM", f"Song {number}"), (b"IART", "Artist"))))
            with open(f"{HOME}/Music/{name}.wav", "r+b") as file:
                whole = file.read()[8:] + tags
                file.seek(0)
                file.write(b"RIFF" + chunk(whole))
            file = os.stat(f"{HOME}/Music/{name}.wav")
            # All as the player writes it: it reads files again as soon as it meets them, and can fall
            # over a genre that changes while it starts.
            entries.append(
                f'<entry type="song"><title>Song {number}</title><genre>Unknown</genre>'
                f"<artist>Artist</artist><album>Unknown</album><file-size>{file.st_size}</file-size>"
                f"<location>{uri(name)}</location><mtime>{int(file.st_mtime)}</mtime>"
                f"<first-seen>1600000000</first-seen><last-seen>{int(time.time())}</last-seen>"
                "<bitrate>64</bitrate><date>0</date><media-type>audio/x-wav</media-type>"
                "<composer>Unknown</composer></entry>")
    with open(DATA + "/rhythmdb.xml", "w", encoding="utf-8") as file:
        file.write('<?xml version="1.0" standalone="yes"?><rhythmdb version="2.0">'
                   + "".join(entries) + "</rhythmdb>")
    for schema, key, value in (("plugins", "active-plugins", "[]"),
                               ("rhythmdb", "locations", "['file:///nowhere']"),
                               ("rhythmdb", "monitor-library", "false")):
        subprocess.run(["gsettings", "set", f"org.gnome.rhythmbox.{schema}", key, value],
                       check=True)


MADE = HOME + "/made"
old = {"Mix": ["é 0", "é 1 small", "é 2 small", "é 2", "é 3"],
       "Long": [f"é {n} small" for n in range(PAIRS)], "Other": ["é 5", "é 4"]}
new = {"Mix": ["é 0", "é 1", "é 2", "é 3"], "Long": [f"é {n}" for n in range(PAIRS)],
       "Other": old["Other"]}


def expect_lists(wanted, what, source=held):
    for name, entries in wanted.items():
        expect(source(name), entries, f"{what}: {name}")


make_library()
with Player():
    for name, entries in old.items():
        until(lambda n=name: lists("CreatePlaylist", n) is not None)
        for entry in entries:
            lists("AddToPlaylist", name, uri(entry))
    expect_lists(old, "made in the player")
    open(MADE, "w", encoding="utf-8").close()

    begin = time.monotonic()
    run = replaylist()
    print(f"replaylist of {PAIRS + 2} entries while it runs: {time.monotonic() - begin:.2f} s")
    expect_lists(new, "replaylist while it runs")
    kestrel("undo", "rhythmbox:", run)
    expect_lists(old, "undo while it runs")

    journals = os.environ["XDG_DATA_HOME"] + "/Kestrel/Rhythmbox"
    for _ in range(10):
        # Behind the player and this script, which is so quick enough to end it in the middle.
        killed = subprocess.Popen(["nice", "-n", "19", CLI, *REPLAYLIST], stdout=subprocess.DEVNULL)
        until(lambda: held("Long") != old["Long"] or killed.poll() is not None)
        killed.send_signal(signal.SIGKILL)
        killed.wait()
        if held("Long") not in (old["Long"], new["Long"]):
            break
        if held("Long") == new["Long"]:
            kestrel("undo", "rhythmbox:", last_run())
    else:
        sys.exit("it was never killed in the middle")
    kestrel("info", "rhythmbox:")
    expect_lists(old, "opened after it was killed")
    assert not os.listdir(journals)
    run = replaylist()
    expect_lists(new, "replaylist after that")
expect_lists(new, "in the file", stored)

kestrel("undo", "rhythmbox:", run)
expect_lists(old, "undo while it does not run", stored)
with Player():
    expect_lists(old, "started after undo")
    assert "started" not in kestrel("playlists", "rhythmbox:")
run = replaylist()
expect_lists(new, "replaylist while it does not run", stored)
with Player():
    expect_lists(new, "started after replaylist")


# What copies have goes to the songs that are kept, with their files and not without.

def database(method, name, *arguments):
    return bus("/org/gnome/Rhythmbox3/RhythmDB", f"{NAME}.RhythmDB.{method}", uri(name), *arguments)


def values(name):
    said = database("GetEntryProperties", name)
    return tuple(float(re.search(f"'{key}': <(?:uint32 )?([0-9.]+)>", said).group(1))
                 for key in ("play-count", "rating", "last-played", "first-seen"))


def values_in_file(name):
    with open(DATA + "/rhythmdb.xml", encoding="utf-8") as file:
        entry = next(part for part in file.read().split("<entry ") if f"<location>{uri(name)}<" in part)
    found = [re.search(f"<{key}>([^<]*)</{key}>", entry)
             for key in ("play-count", "rating", "last-played", "first-seen", "comment")]
    return tuple(one.group(1) if one else None for one in found)


def trash(*carried):
    said = kestrel("trash", "rhythmbox:", "--rule", "14", "--outside-media-folder", "--apply",
                   "--carry", ",".join(carried))
    return re.search(r"[Rr]un (\d+)", said).group(1)


kept, gone = "é 0", "é 0 small"
with Player():
    until(lambda: all(database("GetEntryProperties", song) for song in (kept, gone)))
    database("SetEntryProperties", kept, "{'play-count': <uint32 2>, 'rating': <2.5>}")
    database("SetEntryProperties", gone, "{'play-count': <uint32 3>, 'rating': <4.0>, "
             "'last-played': <uint32 1500000000>, 'first-seen': <uint32 1400000000>}")
    old_values = values(kept)
    expect(old_values, (2, 2.5, 0, 1600000000), "given in the player")
    refused = subprocess.run([CLI, "trash", "rhythmbox:", "--carry", "plays,comments"],
                             capture_output=True, text=True)
    assert refused.returncode == 2 and "close it first" in refused.stderr, refused.stderr
    run = trash("plays", "rating", "added")
    assert not os.path.exists(f"{HOME}/Music/{gone}.wav")
    expect(values(kept), (5, 4, 1500000000, 1400000000), "carried over while it runs")
    trash_again = subprocess.run([CLI, "trash", "rhythmbox:", "--rule", "14", "--apply", "--carry",
                                  "plays"], capture_output=True, text=True)
    expect(values(kept), (5, 4, 1500000000, 1400000000), "once: " + trash_again.stdout[-300:])
    kestrel("undo", "rhythmbox:", run)
    expect(values(kept), old_values, "taken back while it runs")
    assert os.path.exists(f"{HOME}/Music/{gone}.wav")
with open(DATA + "/rhythmdb.xml", encoding="utf-8") as file:
    before = file.read()
run = trash("plays", "rating", "added", "comments")
expect(values_in_file(kept), ("5", "4", "1500000000", "1400000000", None), "carried over in the file")
kestrel("undo", "rhythmbox:", run)
with open(DATA + "/rhythmdb.xml", encoding="utf-8") as file:
    expect(file.read() == before, True, "the file is what it was")
run = trash("plays", "rating", "added", "comments")
with Player():
    expect(values(kept), (5, 4, 1500000000, 1400000000), "started after it was carried over")

assert "true" not in bus("/", "org.freedesktop.DBus.NameHasOwner", NAME,
                         name="org.freedesktop.DBus"), "kestrel-cli has started it"
print("Rhythmbox: all lists, plays and ratings are what they should be")
