/// A database as Strawberry makes it, in a folder of a test's own.
#pragma once

#include <memory>
#include <string>

#include "musicapp/strawberry/strawberry_library.h"
#include "platform/sqlite_database.h"
#include "tests/musicapp/application_world.h"

namespace kestrel::testing {

/// Songs 10 to 13, called a to d, and these playlists: "Mix" (2) with a b a c, an empty "Empty"
/// (3), "Inner" (4) in the folder "Folder" with b and a file that is not in the collection, a
/// "Smart" (5) with c that Strawberry fills, and another "Mix" (6) with d.
inline const char* const smallCollection = R"(
CREATE TABLE schema_version(version INTEGER NOT NULL);
INSERT INTO schema_version VALUES(15);
CREATE TABLE songs(title TEXT, album TEXT, artist TEXT, albumartist TEXT,
  track INTEGER NOT NULL DEFAULT -1, disc INTEGER NOT NULL DEFAULT -1,
  year INTEGER NOT NULL DEFAULT -1, genre TEXT, composer TEXT, grouping TEXT, comment TEXT,
  length INTEGER NOT NULL DEFAULT 0, bitrate INTEGER NOT NULL DEFAULT -1,
  samplerate INTEGER NOT NULL DEFAULT -1, source INTEGER NOT NULL DEFAULT 2, url TEXT NOT NULL,
  filetype INTEGER NOT NULL DEFAULT 8, filesize INTEGER NOT NULL DEFAULT -1,
  mtime INTEGER NOT NULL DEFAULT 1000, unavailable INTEGER DEFAULT 0,
  playcount INTEGER NOT NULL DEFAULT 0, skipcount INTEGER NOT NULL DEFAULT 0,
  lastplayed INTEGER NOT NULL DEFAULT -1, compilation_effective INTEGER NOT NULL DEFAULT 0,
  rating INTEGER DEFAULT -1);
CREATE TABLE playlists(name TEXT NOT NULL, last_played INTEGER NOT NULL DEFAULT -1,
  ui_order INTEGER NOT NULL DEFAULT 0, ui_path TEXT, is_favorite INTEGER NOT NULL DEFAULT 0,
  dynamic_playlist_type INTEGER);
CREATE TABLE playlist_items(playlist INTEGER NOT NULL, type INTEGER NOT NULL DEFAULT 0,
  collection_id INTEGER, url TEXT NOT NULL, title TEXT);
INSERT INTO songs(rowid, title, url) VALUES(10, 'a', 'file:///music/a.mp3'),
  (11, 'b', 'file:///music/b.mp3'), (12, 'c', 'file:///music/c.mp3'),
  (13, 'd', 'file:///music/d.mp3');
INSERT INTO playlists(rowid, name, ui_path, dynamic_playlist_type) VALUES(2, 'Mix', '', 0),
  (3, 'Empty', NULL, NULL), (4, 'Inner', 'Folder', 0), (5, 'Smart', '', 1), (6, 'Mix', '', 0);
INSERT INTO playlist_items(playlist, type, collection_id, url, title) VALUES(2, 2, 10, '', ''),
  (2, 2, 11, '', ''), (2, 2, 10, '', ''), (2, 2, 12, '', ''),
  (4, 1, NULL, 'file:///elsewhere/x.mp3', 'x'), (4, 2, 11, '', ''), (5, 2, 12, '', ''),
  (6, 2, 13, '', '');
)";

class StrawberryWorld : public ApplicationWorld<StrawberryLibrary> {
 public:
  explicit StrawberryWorld(const std::string& sql = smallCollection)
      : path(folder.write("strawberry.db", "")) {
    options.reasonNotToWrite = [this](const std::string&) { return reasonNotToWrite; };
    execute(sql);
    open();
  }

  void open() {
    app.reset();
    app = std::make_unique<StrawberryLibrary>(path, services(), options);
  }
  void execute(const std::string& sql) const {
    SqliteDatabase(path, {.access = SqliteOptions::Access::create}).execute(sql);
  }
  /// The first column of what a query gives, a space behind each.
  [[nodiscard]] std::string column(const std::string& sql) const {
    const SqliteDatabase database(path);
    SqliteStatement row = database.prepare(sql);
    std::string all;
    while (row.next()) all.append(row.view(0)).append(" ");
    return all;
  }
  /// The entries of a playlist as they are in the database: titles of songs, and of what is none.
  [[nodiscard]] std::string entries(int playlist) const {
    return column(
        "SELECT coalesce((SELECT title FROM songs WHERE rowid = collection_id), title) "
        "FROM playlist_items WHERE playlist = " +
        std::to_string(playlist) + " ORDER BY rowid");
  }

  Message reasonNotToWrite;
  StrawberryOptions options;
  std::string path;
};

}  // namespace kestrel::testing
