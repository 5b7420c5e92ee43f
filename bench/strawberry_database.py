#!/usr/bin/env python3
"""Writes an invented database of Strawberry's. Usage: bench/strawberry_database.py PATH [SONGS]

Every fifth song is there twice. The first of the 100 playlists lists 1,000 of the copies, the
others 1,000 songs each; the last one has an entry that names no song.
"""
import sqlite3
import sys

path, songs = sys.argv[1], int(sys.argv[2]) if len(sys.argv) > 2 else 100_000
database = sqlite3.connect(path)
database.executescript(f"""
PRAGMA synchronous = OFF;
CREATE TABLE songs(title TEXT, album TEXT, artist TEXT, albumartist TEXT, track INTEGER, disc INTEGER,
  year INTEGER, genre TEXT, composer TEXT, grouping TEXT, comment TEXT, lyrics TEXT,
  artist_id TEXT, song_id TEXT, length INTEGER, bitrate INTEGER, samplerate INTEGER,
  bitdepth INTEGER, source INTEGER, directory_id INTEGER, url TEXT NOT NULL, filetype INTEGER,
  filesize INTEGER, mtime INTEGER, ctime INTEGER, unavailable INTEGER, playcount INTEGER,
  skipcount INTEGER, lastplayed INTEGER, compilation_effective INTEGER, rating INTEGER);
CREATE TABLE playlists(name TEXT NOT NULL, last_played INTEGER, ui_order INTEGER, special_type TEXT,
  ui_path TEXT, is_favorite INTEGER, dynamic_playlist_type INTEGER);
CREATE TABLE playlist_items(playlist INTEGER NOT NULL, type INTEGER, collection_id INTEGER,
  playlist_url TEXT, title TEXT, artist TEXT, url TEXT NOT NULL);
WITH RECURSIVE n(i) AS (SELECT 0 UNION ALL SELECT i + 1 FROM n WHERE i + 1 < {songs}),
  s AS (SELECT i, i - (i % 5 = 4) AS same FROM n)
INSERT INTO songs SELECT 'Song ' || same, 'Album ' || (same / 12), 'Artist ' || (same / 120), '',
  same % 12 + 1, -1, 1950 + same / 120 % 70, 'Genre ' || (same / 1200 % 20), '', '', '', '', '', '',
  (180 + same % 97) * 1000000000, 128 + i % 5 * 32, 44100, 16, 2, 1,
  'file:///home/someone/Music/Artist%20' || (same / 120) || '/Album%20' || (same / 12) || '/' ||
    (same % 12) || '%20Song%20' || i || '.mp3', 8, 4000000 + i, 1600000000 + i, 1600000000, 0, i % 40,
  0, -1, 0, i % 6 / 5.0 FROM s;
CREATE INDEX idx_url ON songs(url);
CREATE INDEX idx_title ON songs(title);
WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 100)
INSERT INTO playlists SELECT 'List ' || i, -1, i, '', iif(i % 2, 'Folder', ''), 0, 0 FROM n;
WITH RECURSIVE n(i) AS (SELECT 0 UNION ALL SELECT i + 1 FROM n WHERE i + 1 < 100000)
INSERT INTO playlist_items(playlist, type, collection_id, url)
  SELECT i / 1000 + 1, 2, iif(i < 1000, i * 5 + 5, i * 7919 % {songs} + 1), '' FROM n;
INSERT INTO playlist_items(playlist, type, url, title) VALUES(100, 1, 'file:///gone.mp3', 'Gone');
""")
