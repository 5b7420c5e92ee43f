#!/usr/bin/env python3
"""Writes rhythmdb.xml and playlists.xml as Rhythmbox does, with invented songs of which every
eighth is a copy of the one before. Usage: make_rhythmbox.py FOLDER [SONGS [LISTS [ENTRIES]]]"""
import sys

folder, songs, lists, entries = sys.argv[1], *map(int, (sys.argv[2:] + ["100000", "200", "500"][len(sys.argv) - 2:]))


def uri(i):
    return f"file:///home/someone/Music/Artist%20{i // 120}/Album%20No.%20{i // 12}/{i % 12 + 1:02}%20Song%20{i}.mp3"


def entry(i):
    of = i - (i % 8 == 7)
    values = {"title": f"Song {of}", "genre": "Rock", "artist": f"Artist {of // 120}",
              "album": f"Album No. {of // 12}", "track-number": of % 12 + 1, "track-total": 12,
              "disc-number": 1, "duration": 180 + of % 97, "file-size": 5_000_000 + i,
              "location": uri(i), "mtime": 1_600_000_000 + i, "first-seen": 1_600_000_000 + i,
              "last-seen": 1_700_000_000, "rating": i % 6, "play-count": i % 50,
              "last-played": 1_690_000_000 + i, "bitrate": 128 + i % 3 * 64, "date": 726833,
              "media-type": "audio/mpeg", "mb-trackid": f"{i:036}", "album-artist": f"Artist {of // 120}",
              "composer": "Unknown", "comment": "ripped &amp; checked"}
    return '  <entry type="song">\n' + "".join(
        f"    <{name}>{value}</{name}>\n" for name, value in values.items() if value) + "  </entry>\n"


with open(folder + "/rhythmdb.xml", "w", encoding="utf-8") as out:
    out.write('<?xml version="1.0" standalone="yes"?>\n<rhythmdb version="2.0">\n')
    out.writelines(map(entry, range(songs)))
    out.write("</rhythmdb>\n")
with open(folder + "/playlists.xml", "w", encoding="utf-8") as out:
    out.write('<?xml version="1.0"?>\n<rhythmdb-playlists>\n')
    for n in range(lists):
        out.write(f'  <playlist name="List {n}" show-browser="false" browser-position="180" '
                  'search-type="search-match" type="static">\n')
        out.writelines(f"    <location>{uri((n * 977 + i * 13) % songs)}</location>\n"
                       for i in range(min(entries, songs)))
        out.write("  </playlist>\n")
    out.write("</rhythmdb-playlists>\n")
