#!/usr/bin/env python3
"""Compares what kestrel-cli says about library documents with what Python reads from them.

Usage: tools/check_documents.py FOLDER --cli build/release/bin/kestrel-cli

For each *.xml in FOLDER: every song's values, every playlist and its item count, the counts of
`info`, and the groups of `find --match tName,tArtist`. Python's plistlib is the second opinion.
Prints a line a document and the first differences; exits with 1 when there were any.
"""

import argparse
import json
import pathlib
import plistlib
import re
import subprocess
import sys

TRACK_TYPES = {"File", "URL", "Remote"}
KINDS_BY_FLAG = ["Podcast", "TV Show", "Music Video", "Movie", "Has Video"]
LISTS_OF_OTHER_KINDS = {5, 6, 31}  # audiobooks, tones, courses
TEXTS = {
    "tName": "Name", "tArtist": "Artist", "tAlbumArtist": "Album Artist", "tAlbum": "Album",
    "tComposer": "Composer", "tGenre": "Genre", "tGrouping": "Grouping", "tComments": "Comments",
    "tKind": "Kind",
}
NUMBERS = {
    "realTime": "Total Time", "realSize": "Size", "tPlayCount": "Play Count",
    "tSkipCount": "Skip Count", "tBit": "Bit Rate", "tSample": "Sample Rate", "tYear": "Year",
    "realRating": "Rating", "tBPM": "BPM", "tTrackNum": "Track Number",
    "tTrackCount": "Track Count", "tDiscNum": "Disc Number", "tDiscCount": "Disc Count",
}
DATES = {
    "tAddDate": "Date Added", "tModDate": "Date Modified", "tPlayDate": "Play Date UTC",
    "tSkipDate": "Skip Date",
}


def hex_id(text):
    """The form in which records carry a persistent ID; None for what is none."""
    return "%X" % int(text, 16) if re.fullmatch("0*[0-9A-Fa-f]{1,16}", text or "") else None


class Document:
    """A library document as the mapping rules read it, by the simplest means."""

    def __init__(self, path):
        # What plistlib refuses, and libraries contain all the same.
        data = re.sub(rb"[\x00-\x08\x0b\x0c\x0e-\x1f]", b"?", path.read_bytes())
        data = re.sub(rb"(<date>[^<]*?)\.\d+Z</date>", rb"\1Z</date>", data)
        root = plistlib.loads(data, fmt=plistlib.FMT_XML)
        self.tracks = {int(number): track for number, track in root.get("Tracks", {}).items()}
        self.playlists = root.get("Playlists", [])
        elsewhere = {
            entry["Track ID"]
            for playlist in self.playlists
            if playlist.get("Distinguished Kind") in LISTS_OF_OTHER_KINDS
            for entry in playlist.get("Playlist Items", [])
        }
        songs = [
            track
            for number, track in self.tracks.items()
            if track.get("Track Type") in TRACK_TYPES
            and number not in elsewhere
            and not any(track.get(flag) for flag in KINDS_BY_FLAG)
        ]
        # The snapshot holds one record a persistent ID. Missing ones are derived: all differ.
        self.songs = list({hex_id(t.get("Persistent ID")) or id(t): t for t in songs}.values())

    def entries(self, playlist):
        """The tracks of a playlist's entries; those that the document does not define are left out."""
        numbers = [entry["Track ID"] for entry in playlist.get("Playlist Items", [])]
        return [self.tracks[number] for number in numbers if number in self.tracks]

    def searched(self, scope):
        """Positions among the songs, in the order in which `find` takes them: those of the master
        playlist or, without one, of the playlist that it says."""
        masters = [playlist for playlist in self.playlists if playlist.get("Master")]
        playlists = (masters or [playlist for playlist in self.playlists if scope["hexpid"] ==
                                 hex_id(playlist.get("Playlist Persistent ID"))])[:1]
        position = {id(song): i for i, song in enumerate(self.songs)}
        tracks = [track for playlist in playlists for track in self.entries(playlist)]
        return [position[id(track)] for track in tracks if id(track) in position]


def song_values(track):
    values = {key: track.get(name, "") for key, name in TEXTS.items()}
    values.update({key: int(track.get(name, 0)) for key, name in NUMBERS.items()})
    values["tCompilation"] = bool(track.get("Compilation"))
    for key, name in DATES.items():
        if name in track:
            values[key] = track[name].strftime("%Y-%m-%dT%H:%M:%SZ")
    if identifier := hex_id(track.get("Persistent ID")):
        values["hexpid"] = identifier
        values["decpid"] = str(int(identifier, 16))
    return values


def plain(value):
    """Control characters were replaced for plistlib; so they are on the other side."""
    return re.sub(r"[\x00-\x08\x0b\x0c\x0e-\x1f]", "?", value) if isinstance(value, str) else value


class Check:
    def __init__(self, cli):
        self.cli = cli
        self.differences = []

    def run(self, *arguments):
        result = subprocess.run([self.cli, *arguments], capture_output=True, check=False)
        if result.returncode != 0:
            raise RuntimeError(result.stderr.decode(errors="replace").strip())
        return json.loads(result.stdout)

    def same(self, what, expected, actual):
        if expected != actual:
            self.differences.append(f"{what}: expected {expected!r}, got {actual!r}")

    def songs(self, document, records):
        self.same("songs", len(document.songs), len(records))
        for track, record in zip(document.songs, records):
            for key, value in song_values(track).items():
                what = f"{key} of track {track.get('Track ID')}"
                self.same(what, plain(value), plain(record.get(key)))
            for key in DATES:
                self.same(f"{key} of track {track.get('Track ID')}",
                          DATES[key] in track, key in record)

    def playlists(self, document, catalogue):
        self.same("playlists", len(document.playlists), len(catalogue))
        for playlist, record in zip(document.playlists, catalogue):
            name = playlist.get("Name", "")
            # The master playlist goes by its role.
            if not playlist.get("Master"):
                self.same("playlist name", plain(name), plain(record.get("pnom")))
            if identifier := hex_id(playlist.get("Playlist Persistent ID")):
                self.same(f"hexpid of {name}", identifier, record.get("hexpid"))
            self.same(f"items of {name}", len(document.entries(playlist)), record.get("itemCount"))
            parent = hex_id(playlist.get("Parent Persistent ID"))
            self.same(f"parent of {name}", parent, record.get("hexParentID"))

    def info(self, document, info):
        self.same("info: items", len(document.tracks), info["items"])
        self.same("info: tracks", len(document.songs), info["tracks"])
        self.same("info: playlists", len(document.playlists), info["playlists"])
        self.same("info: playlist entries",
                  sum(len(document.entries(p)) for p in document.playlists),
                  info["playlistEntries"])
        self.same("info: bytes", sum(t.get("Size", 0) for t in document.songs), info["bytes"])

    def groups(self, document, records, found):
        """Members by position among the records, since persistent IDs may be derived ones."""
        position = {record["hexpid"]: i for i, record in enumerate(records)}
        buckets = {}
        for i in document.searched(found["scope"]):
            track = document.songs[i]
            # The two texts joined without a separator, then lower case; nothing to compare, no key.
            key = (track.get("Name", "") + track.get("Artist", "")).lower()
            if key:
                buckets.setdefault(key, []).append(i)
        expected = [bucket for bucket in buckets.values() if len(bucket) > 1]
        groups = sorted(found["groups"], key=lambda group: int(group["tGroupID"]))
        actual = [[position[t["hexpid"]] for t in group["tracks"]] for group in groups]
        self.same("group numbers", list(range(len(groups))),
                  [int(group["tGroupID"]) for group in groups])
        self.same("count", str(sum(map(len, expected))), found["count"])
        self.same("number of groups", len(expected), len(actual))
        for number, (mine, theirs) in enumerate(zip(expected, actual)):
            self.same(f"group {number}", sorted(mine), sorted(theirs))
        return len(groups)

    def document(self, path):
        document = Document(path)
        records = self.run("tracks", str(path), "--json")
        self.songs(document, records)
        self.playlists(document, self.run("playlists", str(path), "--json")["playlists"])
        self.info(document, self.run("info", str(path), "--json"))
        groups = 0
        if document.playlists:  # else there is nothing to search, which is a failure
            found = self.run("find", str(path), "--match", "tName,tArtist", "--json")
            groups = self.groups(document, records, found)
        return f"{len(document.tracks)} items, {len(records)} songs, " \
               f"{len(document.playlists)} playlists, {groups} groups"


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("folder", type=pathlib.Path)
    parser.add_argument("--cli", required=True, help="the kestrel-cli program")
    arguments = parser.parse_args()
    paths = sorted(arguments.folder.glob("*.xml"))
    if not paths:
        sys.exit(f"{arguments.folder} holds no *.xml")
    failed = 0
    for path in paths:
        check = Check(arguments.cli)
        try:
            summary = check.document(path)
        except Exception as error:  # a document that one side cannot read is a finding too
            summary = "not compared"
            check.differences.append(f"{type(error).__name__}: {error}")
        failed += bool(check.differences)
        print(f"{'DIFFERS' if check.differences else 'same   '}  {path.name}: {summary}")
        for difference in check.differences[:5]:
            print(f"         {difference}")
        if len(check.differences) > 5:
            print(f"         and {len(check.differences) - 5} more")
    print(f"{len(paths) - failed} of {len(paths)} documents read the same")
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
