#include "musicapp/strawberry/strawberry_library.h"

#include <csignal>
#include <gtest/gtest.h>
#include <sys/resource.h>

#include "foundation/library_error.h"
#include "musicapp/applications.h"
#include "tests/musicapp/document/described_document.h"
#include "tests/musicapp/strawberry/strawberry_world.h"

namespace kestrel::testing {
namespace {

using namespace command;

Lines songsOf(StrawberryLibrary& library) {
  LibraryDocument songs;
  songs.items = std::const_pointer_cast<MediaItems>(library.allMediaItems());
  songs.playlists = std::make_shared<std::vector<Playlist>>();
  Lines lines = described(songs);
  lines.pop_back();  // of the document
  return lines;
}

TEST(StrawberryLibrary, ReadsWhatTheDatabaseHasAndLeavesTheRestUnset) {
  StrawberryWorld world(std::string(smallCollection) + R"(
    DELETE FROM songs;
    INSERT INTO songs(rowid, title, album, artist, albumartist, track, disc, year, genre, composer,
      grouping, comment, length, bitrate, samplerate, url, filetype, filesize, mtime, playcount,
      skipcount, lastplayed, compilation_effective, rating)
    VALUES(7, 'T', 'L', 'A', 'AA', 3, 2, 1991, 'G', 'C', 'Gr', 'Co', 3023456789, 320, 44100,
      'file:///M/a%20%C3%A9/1.flac', 2, 4711, 1700000000, 5, 6, 1600000000, 1, 0.7);
    INSERT INTO songs(rowid, url, filetype, mtime) VALUES(9, 'http://host/x', 99, -1);)");
  const Lines expected{
      "item | id=7 | Name=T | Artist=A | Album=L | Album Artist=AA | Composer=C | Genre=G | "
      "Grouping=Gr | Comments=Co | Kind=FLAC audio file | Year=1991 | Rating=70 | Bit Rate=320 | "
      "Sample Rate=44100 | Play Count=5 | Skip Count=6 | Track Number=3 | Disc Number=2 | "
      "Total Time=3023 | Size=4711 | Date Modified=1700000000 | Play Date UTC=1600000000 | "
      "folder=/M/a \u00E9 | name=1.flac | mediaKind=2 | locationType=1 | compilation=1",
      "item | id=9 | name=http://host/x | mediaKind=2 | locationType=2"};
  EXPECT_EQ(songsOf(*world.app), expected);

  // Of an older or newer version.
  world.execute(
      "ALTER TABLE songs DROP COLUMN rating; ALTER TABLE songs DROP COLUMN unavailable;"
      "ALTER TABLE songs DROP COLUMN compilation_effective; ALTER TABLE songs ADD COLUMN bpm;"
      "ALTER TABLE playlists DROP COLUMN ui_path;");
  world.open();
  EXPECT_EQ(songsOf(*world.app)[0].find("Rating"), std::string::npos);
  EXPECT_EQ(songsOf(*world.app)[1], expected[1]);
}

TEST(StrawberryLibrary, KeepsRowsOrderAndWhatIsNoSong) {
  StrawberryWorld world;
  const auto rows = [&] {
    return world.column("SELECT rowid FROM playlist_items WHERE playlist = 2 ORDER BY rowid");
  };
  EXPECT_EQ(world.failureOf(ReplaceEntries{2, {{2, 13}}}), "");
  EXPECT_EQ(world.entries(2) + rows(), "a d a c 1 2 3 4 ");
  EXPECT_EQ(world.failureOf(DeleteEntries{2, {3, 1}}), "");
  EXPECT_EQ(world.entries(2) + rows(), "d c 2 4 ");
  EXPECT_EQ(world.failureOf(DuplicateTracks{{10, 10}, 2}), "");
  EXPECT_EQ(world.entries(2) + rows(), "d c a a 2 4 9 10 ");
  EXPECT_EQ(world.failureOf(SetEntries{2, {13, 11, 12, 10, 10}}), "");  // moves those behind
  EXPECT_EQ(world.entries(2), "d b c a a ");

  EXPECT_EQ(world.failureOf(SetEntries{4, {10, 11, 12}}), "");
  EXPECT_EQ(world.entries(4), "a x b c ");
  EXPECT_EQ(world.column("SELECT url FROM playlist_items WHERE title = 'x'"),
            "file:///elsewhere/x.mp3 ");
  EXPECT_EQ(world.failureOf(DeleteAllEntries{4}), "");
  EXPECT_EQ(world.entries(4), "");

  EXPECT_NE(world.failureOf(ReplaceEntries{5, {{1, 10}}}), "") << "Strawberry fills it";
  EXPECT_EQ(world.failureOf(DeletePlaylist{world.app->allPlaylists()->at(3).persistentID}), "");
  EXPECT_EQ(world.column("SELECT name FROM playlists"), "Mix Empty Smart Mix ") << "the folder";
}

TEST(StrawberryLibrary, TakesAnEntryOfAFileForTheSongThatItIs) {
  StrawberryWorld world(
      std::string(smallCollection) +
      "INSERT INTO songs(title, url) VALUES('overture', 'file:///music/disc.flac'),"
      "('finale', 'file:///music/disc.flac');"
      "INSERT INTO playlist_items(playlist, type, url, title) VALUES"
      "(3, 1, 'file:///music/d.mp3', 'd'), (3, 1, 'file:///music/disc.flac', 'x')");
  const Playlist list = world.app->allPlaylists()->at(2);
  EXPECT_EQ(list.items, std::vector<std::uint64_t>{13});
  EXPECT_EQ(list.unknownItems(), 1U);
  EXPECT_EQ(world.failureOf(ReplaceEntries{3, {{1, 10}}}), "");
  EXPECT_EQ(world.entries(3), "a x ");
  EXPECT_EQ(world.column("SELECT type || url FROM playlist_items WHERE collection_id = 10 "
                         "AND playlist = 3"),
            "2 ");
}

TEST(StrawberryLibrary, IsChangedOnlyWhileNoOtherProgramCouldUndoIt) {
  StrawberryWorld world;
  const Command change = SetEntries{6, {10}};
  const auto expectRefused = [&](const char* why) {
    EXPECT_NE(world.failureOf(change).find(why), std::string::npos) << world.failureOf(change);
    EXPECT_EQ(world.entries(6), "d ");
  };
  world.reasonNotToWrite = Message::verbatim("it runs");
  expectRefused("it runs");
  EXPECT_THROW(world.app->beginBatch(), LibraryError);
  world.reasonNotToWrite = {};

  world.options.onStep = [&](StrawberryStep step) {
    if (step == StrawberryStep::commit) world.reasonNotToWrite = Message::verbatim("it runs now");
  };
  world.open();
  expectRefused("it runs now");
  world.reasonNotToWrite = {};
  EXPECT_TRUE(world.files.list(LibraryBackups(world.files, world.path, ".db").folder()).empty());

  // Changed so that the file does not show it.
  world.options.onStep = [&](StrawberryStep step) {
    if (step == StrawberryStep::begin) world.execute("UPDATE playlist_items SET rowid = rowid + 9");
  };
  world.open();
  expectRefused("changed by another program");
  world.options.onStep = {};
  world.open();
  EXPECT_EQ(world.failureOf(change), "");
  EXPECT_EQ(world.entries(6), "a ");
}

TEST(StrawberryLibrary, SaysWhatIsWrongWithAnAddress) {
  StrawberryWorld world;
  const auto problem = [&](const std::string& address) -> std::string {
    try {
      openApplication(address, world.services());
      return "";
    } catch (const LibraryError& error) {
      return error.what();
    }
  };
  EXPECT_EQ(problem("strawberry:" + world.path), "");
  ::setenv("HOME", world.folder.path().c_str(), 1);
  EXPECT_NE(problem("strawberry:").find("has no database here"), std::string::npos);
  world.folder.write("support/strawberry/strawberry/strawberry.db",
                     TemporaryFolder::read(world.path));
  EXPECT_EQ(problem("strawberry:"), "");
  EXPECT_EQ(applicationOf("strawberry:", world.files)->found(world.services()),
            std::vector<std::string>{
                "strawberry:" + (world.folder / "support/strawberry/strawberry/strawberry.db")});
  EXPECT_NE(problem(world.folder / "none.db").find("No such file"), std::string::npos);
  EXPECT_NE(problem(world.folder.write("text.db", "no database")).find("not a database"),
            std::string::npos);
  EXPECT_NE(problem(world.folder.write("empty.db", "")).find("no database of Strawberry's"),
            std::string::npos);
}

TEST(StrawberryLibrary, ReadsWhatAProgramThatWasKilledWhileWritingHadFound) {
  StrawberryWorld world;
  const Lines before = songsOf(*world.app);
  const int status = inChild([&] {
    SqliteDatabase database(world.path, {.access = SqliteOptions::Access::write});
    // Writes pages before it commits.
    database.execute("PRAGMA cache_size = 1; BEGIN; UPDATE songs SET title = hex(zeroblob(9999))");
    ::raise(SIGKILL);
  });
  ASSERT_TRUE(WIFSIGNALED(status));
  ASSERT_GT(TemporaryFolder::read(world.path + "-journal").size(), 0U);
  world.open();
  EXPECT_EQ(songsOf(*world.app), before);
}

TEST(StrawberryLibrary, MarksSongsThatLeaveAndBringsThemBackAsTheyWere) {
  StrawberryWorld world(std::string(smallCollection) +
                        "UPDATE songs SET unavailable = 1 WHERE rowid = 11");
  EXPECT_EQ(songsOf(*world.app).size(), 4U) << "its file may be missing, its entries can be mended";
  std::string reversal;
  {
    const auto batch = world.app->beginBatch();
    EXPECT_EQ(world.failureOf(DeleteTracks{{10, 11}}), "");
    batch->commit([&](std::string_view text) { reversal = text; });
  }
  const std::string files = "SELECT unavailable || '/' || mtime FROM songs";
  EXPECT_EQ(world.column(files), "1/0 1/0 0/1000 0/1000 ");
  EXPECT_EQ(world.entries(2), "a b a c ");
  world.open();
  EXPECT_EQ(songsOf(*world.app).size(), 2U);
  EXPECT_EQ(world.app->allPlaylists()->at(1).unknownItems(), 3U);
  world.execute("UPDATE songs SET unavailable = 0, mtime = 2000 WHERE rowid = 10");  // Strawberry
  world.open();
  EXPECT_EQ(world.failureOf(RestoreTracks{reversal}), "");
  EXPECT_EQ(world.column(files), "0/2000 1/1000 0/1000 0/1000 ");
}

TEST(StrawberryLibrary, IsNotChangedWithoutRoomForABackup) {
  StrawberryWorld world;
  const int status = inChild([&] {
    ::signal(SIGXFSZ, SIG_IGN);
    const rlimit small{4096, 4096};
    ::setrlimit(RLIMIT_FSIZE, &small);
    ::_exit(world.failureOf(SetEntries{6, {10}}).empty() ? 1 : 7);
  });
  EXPECT_EQ(status, 7 << 8);
  EXPECT_EQ(world.entries(6), "d ");
  EXPECT_TRUE(world.files.list(LibraryBackups(world.files, world.path, ".db").folder()).empty());
}

TEST(StrawberryLibrary, KeepsTheLatestBackups) {
  StrawberryWorld world;
  world.options.keptBackups = 2;
  world.open();
  for (const std::uint64_t track : {10, 11, 12}) world.failureOf(SetEntries{6, {track}});
  const LibraryBackups backups(world.files, world.path, ".db");
  EXPECT_EQ(world.files.list(backups.folder()), (std::vector<std::string>{"0002.db", "0003.db"}));
  world.path = backups.folder() + "/0003.db";
  EXPECT_EQ(world.entries(6), "b ") << "as it was before the last change";
}

TEST(StrawberryLibrary, WhatIsInTheLogBesideTheDatabaseCounts) {
  StrawberryWorld world;
  SqliteDatabase other(world.path, {.access = SqliteOptions::Access::write});
  other.execute("PRAGMA journal_mode = WAL");
  other.execute("UPDATE songs SET playcount = 1");
  world.open();
  EXPECT_FALSE(world.app->hasChanged());
  const std::string version = world.app->identity().version;
  other.execute("UPDATE playlist_items SET collection_id = 13 WHERE playlist = 6");
  other.execute(
      "INSERT INTO playlist_items(playlist, type, collection_id, url) VALUES(6, 2, 10, '')");
  EXPECT_TRUE(world.app->hasChanged());
  EXPECT_NE(world.failureOf(command::SetEntries{6, {11}}), "") << "changed since it was read";
  world.app->reload();
  EXPECT_NE(world.app->identity().version, version);
  EXPECT_EQ(world.app->allPlaylists()->back().items.size(), 2U);
  EXPECT_EQ(world.failureOf(command::SetEntries{6, {11}}), "");
  EXPECT_EQ(world.entries(6), "b ");
  EXPECT_FALSE(world.app->hasChanged());
}

}  // namespace
}  // namespace kestrel::testing
