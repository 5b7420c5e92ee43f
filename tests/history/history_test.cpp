#include "history/history.h"

#include <gtest/gtest.h>
#include <random>
#include <sched.h>
#include <sys/mount.h>
#include <sys/wait.h>
#include <unistd.h>

#include "history/entry_codec.h"
#include "history/history_database.h"
#include "musicapp/file_url.h"
#include "tests/platform/temporary_folder.h"

namespace kestrel {
namespace {

using IDs = std::vector<std::uint64_t>;

const LibraryIdentity library{"file:///music/Library.xml", "ABCD", "1"};

struct HistoryFile {
  TemporaryFolder folder;
  ManualClock clock{Moment(std::chrono::seconds(1'700'000'000))};
  std::string path = folder / "history.sqlite";
  [[nodiscard]] History open() const { return History(path, clock); }
};

PlaylistChange change(std::uint64_t id, IDs before, IDs after) {
  PlaylistChange made;
  made.oldPlaylist = id;
  made.name = "P \"" + std::to_string(id) + "\"";
  made.folder = 0xFFFFFFFFFFFFFFFF;
  made.folderName = "F";
  made.oldEntries = std::move(before);
  made.newEntries = std::move(after);
  return made;
}

TEST(HistoryEntries, ComeBackAsTheyWere) {
  std::mt19937_64 random(1);
  for (int round = 0; round < 300; ++round) {
    IDs before, after;
    for (auto count = random() % 200; count > 0; --count) before.push_back(random());
    for (const std::uint64_t id : before)
      if (round % 3 == 2) {
        after.push_back(id);
      } else if (round % 3 == 0) {
        if (random() % 4 != 0) after.push_back(id);
      } else {
        after.push_back(random() % 8 == 0 ? random() : id);
      }
    for (auto count = round % 3 == 2 ? random() % 5 : 0; count > 0; --count)
      after.push_back(random());
    if (round % 10 == 0) std::reverse(after.begin(), after.end());
    const std::string bytes = bytesOfChange(before, after);
    EXPECT_LE(bytes.size(), 1 + 8 * after.size());
    EXPECT_EQ(entriesOfBytes(bytes, before), after);
    EXPECT_EQ(entriesOfBytes(bytesOfEntries(before)), before);
  }
  EXPECT_LT(bytesOfChange(IDs(10'000, 1), IDs(9'999, 1)).size(), 10U);
  EXPECT_LT(bytesOfChange(IDs(9'999, 1), IDs(10'000, 1)).size(), 10U);
  for (const char* bad : {"", "X", "E1234567", "R\x01", "D\x05", "R\x80\x80\x80"})
    EXPECT_FALSE(entriesOfBytes(bad, IDs{1, 2, 3})) << bad;
}

TEST(History, ARunSurvivesReopening) {
  const HistoryFile file;
  std::vector<PlaylistChange> lists = {change(~std::uint64_t{0}, {1, 2, 3}, {1, 9, 3}),
                                       change(2, {1, 2, 1}, {1, 2}), change(3, {}, {})};
  lists[2].lost = true;
  std::vector<FileChange> files(2);
  files[0].item.originalPath = "/m/\xFF.mp3";
  files[0].size = 5'000'000'000;
  std::vector<TrackChange> tracks = {{0, ChangeState::planned, 5, "T", {}}};
  std::vector<ValueChange> values(2);
  values[0].track = 7;
  values[0].name = "N";
  values[0].which = {TrackValue::plays, TrackValue::comments};
  values[0].before.stored = "{\"Rating\":\"<integer>1</integer>\"}";
  values[0].after.plays = 12;
  values[0].after.rating = 100;
  values[0].after.added = OptionalDate{-5};
  values[0].after.lastPlayed = OptionalDate{1'700'000'000};
  values[0].after.comments = "\xC3\xA9 \"x\"\n";
  values[1].leaves = true;
  {
    History history = file.open();
    EXPECT_EQ(history.begin(RunKind::replaylist, library, {lists, files, tracks, values}), 1);
    EXPECT_EQ(history.runs()[0].state, RunState::running);
    lists[0].newPlaylist = 77;
    lists[0].state = lists[2].state = ChangeState::done;
    lists[1].state = ChangeState::skipped;
    lists[1].note = "why";
    history.record(lists);
    files[0].state = ChangeState::done;
    files[0].item.trashedPath = "/trash/\xFF.mp3";
    files[0].mark = FileMark{files[0].size, Moment(std::chrono::nanoseconds(-5)), ~1ULL};
    history.record(std::span<const FileChange>(files.data(), 1));
    tracks[0].state = ChangeState::done;
    history.record(tracks);
    values[0].state = ChangeState::done;
    values[0].after.plays = 13;
    history.record(values);
    history.recordReversal(1, std::string_view("\0x", 2));
    history.finish(1, RunState::cancelled);
    EXPECT_EQ(history.begin(RunKind::undo, library, {}, 1), 2);
    history.finish(2, RunState::finished, {{&lists[0].id, 1}, {}, {}, {&values[0].id, 1}});
  }
  History history = file.open();
  std::optional<RunRecord> run = history.run(1);
  ASSERT_TRUE(run);
  EXPECT_EQ(run->summary.state, RunState::cancelled);
  EXPECT_EQ(run->summary.started, file.clock.now());
  EXPECT_EQ(run->summary.playlists, 2U);
  EXPECT_EQ(run->summary.files, 1U);
  EXPECT_EQ(run->summary.undone, 2U);
  EXPECT_FALSE(run->summary.isUndone());
  lists[0].undoneBy = 2;
  for (PlaylistChange& list : run->playlists) list.lineage.clear();  // runs make it
  EXPECT_EQ(run->playlists, lists);
  EXPECT_EQ(run->files, files);
  EXPECT_EQ(run->tracks, tracks);
  values[0].undoneBy = 2;
  EXPECT_EQ(run->values, values);
  EXPECT_EQ(run->summary.tracks, 1U);
  EXPECT_EQ(run->reversal, std::string("\0x", 2));
  EXPECT_EQ(history.run(2)->summary.undoes, 1);
  EXPECT_FALSE(history.run(3));
}

/// Goes where this process and its number are not seen, as in a container. False where that is not
/// allowed.
bool hideProcesses() {
  if (::unshare(CLONE_NEWPID | CLONE_NEWNS) != 0 &&
      ::unshare(CLONE_NEWUSER | CLONE_NEWPID | CLONE_NEWNS) != 0)
    return false;
  if (const pid_t inside = ::fork(); inside != 0) {
    ::waitpid(inside, nullptr, 0);
    ::_exit(0);
  }
  return ::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 &&
         ::mount("proc", "/proc", "proc", 0, nullptr) == 0;
}

TEST(History, ARunIsAtWorkAsLongAsItsProgramLivesWhereverThatIs) {
  const HistoryFile file;
  for (const bool hidden : {false, true}) {
    int told[2], ended[2];
    ASSERT_TRUE(::pipe(told) == 0 && ::pipe(ended) == 0);
    const pid_t child = ::fork();
    if (child == 0) {
      ::close(told[0]);
      ::close(ended[1]);
      if (hidden && !hideProcesses()) ::_exit(0);
      History history = file.open();
      history.begin(RunKind::trash, library, {}, {});
      char byte = 1;
      static_cast<void>(::write(told[1], &byte, 1));
      static_cast<void>(::read(ended[0], &byte, 1));
      ::_exit(0);
    }
    ::close(told[1]);
    ::close(ended[0]);
    char byte = 0;
    const bool begun = ::read(told[0], &byte, 1) == 1;
    if (begun) {
      EXPECT_EQ(file.open().runs()[0].state, RunState::running) << hidden;
    }
    ::close(ended[1]);
    ASSERT_EQ(::waitpid(child, nullptr, 0), child);
    ::close(told[0]);
    if (!begun) GTEST_SKIP() << "no process may be hidden here";
    EXPECT_EQ(file.open().runs()[0].state, RunState::brokenOff) << hidden;
  }
  // Of earlier versions there is only the process.
  HistoryDatabase(file.path).execute("UPDATE run SET process = '1 1 another-boot' WHERE id = 1");
  EXPECT_EQ(file.open().run(1)->summary.state, RunState::brokenOff);
  for (const char* part : {"", "-runs"})
    EXPECT_EQ(std::filesystem::status(file.path + part).permissions(),
              std::filesystem::perms(0600));
}

TEST(History, OfAnEarlierVersionGoesOn) {
  const HistoryFile file;
  std::vector<FileChange> files(1);
  files[0].item.originalPath = "/a.mp3";
  file.open().begin(RunKind::trash, library, {{}, files, {}});
  const auto goBackTo = [&](const std::string& version, const std::vector<std::string>& without) {
    HistoryDatabase database(file.path);
    database.execute("ALTER TABLE playlist_change DROP COLUMN unknown_at");
    database.execute("DROP TABLE value_change");
    database.execute("DROP TABLE track_change");
    database.execute("ALTER TABLE run DROP COLUMN reversal");
    database.execute("ALTER TABLE run RENAME COLUMN library_uri TO library_path");
    database.execute("UPDATE run SET library_path = '/music/My \u00E9.xml'");
    for (const std::string& column : without)
      database.execute(("ALTER TABLE file_change DROP COLUMN " + column).c_str());
    database.execute(("PRAGMA user_version = " + version).c_str());
  };
  {
    HistoryDatabase database(file.path);
    database.execute("ALTER TABLE playlist_change DROP COLUMN unknown_at");
    database.execute("DROP TABLE value_change");
    database.execute("PRAGMA user_version = 3");
  }
  EXPECT_TRUE(file.open().run(1)->values.empty());
  goBackTo("2", {"modified", "content"});
  EXPECT_FALSE(file.open().run(1)->files[0].mark);
  goBackTo("1", {"modified", "content", "fingerprint"});
  History history = file.open();
  EXPECT_EQ(history.run(1)->files[0].item.originalPath, "/a.mp3");
  const LibraryIdentity same{fileUrlOfPath("/music/My \u00E9.xml"), {}, {}};
  EXPECT_EQ(history.runs(&same).size(), 1U) << "libraries had paths";
  files[0].track = 7;
  files[0].fingerprint = ~std::uint64_t{0};
  history.record(files);
  EXPECT_EQ(file.open().run(1)->files[0].fingerprint, ~std::uint64_t{0});
  EXPECT_EQ(file.open().run(1)->files[0].track, 7U);
}

TEST(History, BelongsToLibraries) {
  const HistoryFile file;
  const std::string here = file.folder.write("Library.xml", "");
  History history = file.open();
  history.begin(RunKind::cleanUp, {fileUrlOfPath(here), "ABCD", {}}, {});
  history.begin(RunKind::cleanUp, {"file:///moved/away.xml", "ABCD", {}}, {});
  history.begin(RunKind::cleanUp, {"file:///moved/away.xml", "", {}}, {});
  const auto runs = [&](const LibraryIdentity& of) {
    std::string ids;
    for (const RunSummary& run : history.runs(&of)) ids += std::to_string(run.id);
    return ids;
  };
  EXPECT_EQ(runs({fileUrlOfPath(here), "ABCD", "2"}), "21");
  EXPECT_EQ(runs({"file:///a/copy.xml", "ABCD", "2"}), "2")
      << "the first is another file with this ID";
  EXPECT_EQ(runs({"file:///moved/away.xml", "", "2"}), "32");
  EXPECT_EQ(history.runs().size(), 3U);
  history.begin(RunKind::cleanUp, {"mpd:/a", "server:x", {}}, {});
  history.begin(RunKind::cleanUp, {"mpd://b:6600", "server:x", {}}, {});
  EXPECT_EQ(runs({"mpd:/c", "server:x", {}}), "54") << "at whatever address";
  EXPECT_EQ(runs({"mpd:/a", {}, {}}), "4");
}

/// By whatever address it is opened: with the folders of further playlists, or without.
TEST(History, OfAFolderIsOne) {
  const HistoryFile file;
  History history = file.open();
  file.folder.write("music/a", "");
  const std::string place = "//" + file.folder / "music";
  const LibraryIdentity plain{"file:" + place, "folder-1", "1"},
      more{"folder:" + place + "?playlists=/lists", "folder-1", "2"},
      moved{"folder:" + place + "2?playlists=/lists", "folder-1", "2"},
      other{"folder:" + place + "3?playlists=/lists", "folder-2", "2"};
  history.begin(RunKind::cleanUp, plain, {});
  history.begin(RunKind::cleanUp, more, {});
  EXPECT_EQ(history.runs(&plain).size() + history.runs(&more).size(), 4U);
  EXPECT_EQ(history.numberOf(2, plain), 2);
  EXPECT_EQ(history.runs(&moved).size() + history.runs(&other).size(), 0U);
  std::filesystem::rename(file.folder / "music", file.folder / "music2");
  EXPECT_EQ(history.runs(&moved).size(), 2U);
  EXPECT_EQ(history.runs(&other).size(), 0U);
}

TEST(History, NumbersTheRunsOfEachLibrary) {
  const HistoryFile file;
  History history = file.open();
  const LibraryIdentity other{"file:///music/Other.xml", "EF", {}};
  for (const bool isOther : {true, false, true, true, false})
    history.begin(RunKind::cleanUp, isOther ? other : library, {});
  const auto numbers = [&](const LibraryIdentity* of) {
    std::string text;
    for (const RunSummary& run : history.runs(of)) {
      text += std::to_string(run.id) + "=" + std::to_string(run.number) + " ";
      if (of) {
        EXPECT_EQ(history.numberOf(run.id, *of), run.number);
      }
    }
    return text;
  };
  EXPECT_EQ(numbers(&library), "5=2 2=1 ");
  EXPECT_EQ(numbers(&other), "4=3 3=2 1=1 ");
  EXPECT_EQ(numbers(nullptr), "5=0 4=0 3=0 2=0 1=0 ");
  EXPECT_EQ(history.numberOf(2, other), 0) << "it is none of them";
  EXPECT_EQ(history.numberOf(9, other), 0);
}

TEST(History, TwoProgramsWriteInTurn) {
  const HistoryFile file;
  History one = file.open(), other = file.open();
  EXPECT_EQ(one.begin(RunKind::cleanUp, library, {}), 1);
  EXPECT_EQ(other.begin(RunKind::cleanUp, library, {}), 2);
  one.finish(1, RunState::failed);
  EXPECT_EQ(other.run(1)->summary.state, RunState::failed);
}

TEST(History, WhatCannotBeReadIsNamedAndMovedAsideOnRequestOnly) {
  const HistoryFile file;
  {
    History history = file.open();
    history.begin(RunKind::cleanUp, library, {});
  }
  const auto error = [&]() -> std::string {
    try {
      file.open().runs();
    } catch (const HistoryError& thrown) {
      EXPECT_NE(std::string(thrown.what()).find(file.path), std::string::npos);
      return std::string(thrown.unreadable ? "unreadable: " : "") + thrown.what();
    }
    return "none";
  };
  std::string bytes = TemporaryFolder::read(file.path);
  std::string newer = bytes, damaged = bytes, foreign = bytes;
  newer[63] = 9;  // the schema's version
  foreign[68] = 'X';
  damaged.replace(100, 3000, 3000, '\x7F');
  for (const auto& [contents, expected] : std::vector<std::pair<std::string, std::string>>{
           {"no database at all, but a text of some length", "unreadable: "},
           {damaged, "unreadable: "},
           {foreign, "another program's"},
           {newer, "newer Kestrel"}}) {
    file.folder.write("history.sqlite", contents);
    EXPECT_NE(error().find(expected), std::string::npos) << error();
    EXPECT_EQ(TemporaryFolder::read(file.path), contents) << "it is left as it is";
  }
  const auto moved = [&](bool evenIfReadable) {
    try {
      return TemporaryFolder::read(History::moveAside(file.path, file.clock, evenIfReadable));
    } catch (const MessageError& thrown) {
      return std::string(thrown.what());
    }
  };
  EXPECT_NE(moved(false).find("newer Kestrel"), std::string::npos) << "which can read it";
  EXPECT_EQ(moved(true), newer);
  EXPECT_EQ(error(), "none");
  EXPECT_NE(moved(false).find("the history can be read"), std::string::npos);
  // In the same second, and with what belongs to it; what was moved before is not touched.
  file.folder.write("history.sqlite", damaged);
  file.folder.write("history.sqlite-wal", "log");
  const std::string aside = History::moveAside(file.path, file.clock, true);
  EXPECT_EQ(TemporaryFolder::read(aside), damaged);
  EXPECT_EQ(TemporaryFolder::read(aside + "-wal"), "log");
  EXPECT_EQ(TemporaryFolder::read(file.path + ".aside-1700000000/history.sqlite"), newer);
  EXPECT_NE(moved(true).find("cannot be moved"), std::string::npos) << "there is none";
  EXPECT_EQ(file.folder.count(), 3U) << "and who is running";
  file.folder.write("history.sqlite", damaged);
  EXPECT_EQ(moved(false), damaged);
  EXPECT_THROW(History(file.folder / "none/history.sqlite", file.clock), HistoryError);
}

}  // namespace
}  // namespace kestrel
