#include <csignal>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <random>

#include "history/history_database.h"
#include "platform/file_error.h"
#include "platform/trash.h"
#include "tests/changes/library_world.h"
#include "tests/platform/watched_trash.h"
#include "tools/make_library/audio_files.h"

namespace kestrel {
namespace {

using namespace kestrel::testing;
using Lines = std::vector<std::string>;

/// A library in which tracks 2 and 5 were replaced by 1 and 3 in two playlists; run 1.
struct UndoWorld : LibraryWorld {
  UndoWorld()
      : LibraryWorld({playlist("Library", 0xA0, {1, 2, 3, 4, 5}).master(),
                      testing::folder("F", 0xF0), playlist("in", 0xA1, {2, 4, 2}).in(0xF0),
                      playlist("Q \"x\"", 0xA2, {5, 2}), playlist("other", 0xA3, {9}),
                      testing::folder("G", 0xF1)}) {
    before = onDisk();
    EXPECT_EQ(apply(replaylist({{2, 1}, {5, 3}})).lines()[0],
              "Replaced 4 entries in 2 playlists. This is run 1 of the history.");
    after = onDisk();
  }
  /// Changes the library as its owner might.
  void change(const Command& command) {
    const CommandResult result = app->run(command);
    ASSERT_FALSE(result.failed()) << result.failure->message.english();
  }
  Lines before, after;
};

TEST(Undo, TakesARunBackAndOnlyOnce) {
  UndoWorld world;
  EXPECT_EQ(world.after, (Lines{"F/in: 1 4 1", "F:", "G:", "Q \"x\": 3 1", "other: 9"}));
  const std::uint64_t in = world.id("in");
  const UndoReport report = world.undo(1);
  EXPECT_EQ(report.run, 2);
  EXPECT_EQ(world.onDisk(), world.before);
  EXPECT_EQ(world.id("in"), in) << "the playlist stays the same one";
  EXPECT_TRUE(world.history->run(1)->summary.isUndone());
  const auto lists = world.history->run(1)->playlists, undone = world.history->run(2)->playlists;
  for (std::size_t i = 0; i < lists.size(); ++i) {
    EXPECT_EQ(undone[i].oldEntries, lists[i].newEntries);
    EXPECT_EQ(undone[i].newEntries, lists[i].oldEntries);
  }
  for (const auto& [run, text] : std::vector<std::pair<std::int64_t, std::string>>{
           {1, "undone already by run 2"}, {2, "itself an undo"}, {3, "no run 3"}})
    EXPECT_NE(world.undoError(run).find(text), std::string::npos) << world.undoError(run);
  EXPECT_EQ(world.onDisk(), world.before);
  world.path = world.folder.write("Copy.xml", world.bytes());
  world.open();
  EXPECT_NE(world.undoError(1).find("another library"), std::string::npos);
}

/// At random: whatever stands between them, entries of unknown tracks are where they were, also
/// when something else was changed since and the document cannot be put back to the byte.
TEST(Undo, PutsEntriesOfUnknownTracksWhereTheyWere) {
  std::mt19937 random(4);
  for (int round = 0; round < 60; ++round) {
    std::vector<std::uint64_t> items;
    for (auto count = 1 + random() % 14; count > 0; --count)
      items.push_back(random() % 3 == 0 ? 50 + random() % 9 : 1 + random() % 3);
    LibraryWorld world(
        {playlist("Library", 0xA0, {1, 2, 3}).master(), playlist("Mix", 0xA1, items)});
    const auto ids = [&] {  // the document's Track IDs, in order
      std::string text;
      const PropertyList list = world.parsed().find("Playlists")->values().at(1);
      if (const PropertyList* entries = list.find("Playlist Items"))
        for (const PropertyList& entry : entries->values())
          text += std::to_string(entry.find("Track ID")->integer()) + " ";
      return text;
    };
    const std::string before = ids();
    SCOPED_TRACE(before);
    const bool isCleanUp = round % 2 == 0;
    const ApplyReport report =
        world.apply(isCleanUp ? world.cleanUp() : world.replaylist({{1, 2}}));
    if (!report.run) continue;
    ASSERT_EQ(report.state, RunState::finished) << report.problem.english();
    if (round % 4 < 2) {
      ASSERT_FALSE(world.app->run(command::CreatePlaylist{"New"}).failed());
    }
    world.undo(*report.run);
    EXPECT_EQ(ids(), before);
  }
}

TEST(Undo, TakesOnePlaylistBackThenTheRest) {
  UndoWorld world;
  world.apply(world.replaylist({{1, 7}}));
  world.undo(2);
  world.undo(1, {world.id("in"), false});
  EXPECT_EQ(world.onDisk(), (Lines{"F/in: 2 4 2", "F:", "G:", "Q \"x\": 3 1", "other: 9"}));
  EXPECT_NE(world.undoError(1, {0xA1, false}).find("already"), std::string::npos);
  EXPECT_NE(world.undoError(1, {0xA3, false}).find("did not change"), std::string::npos);
  world.open();  // another day
  world.undo(1);
  EXPECT_EQ(world.onDisk(), world.before);
}

TEST(Undo, WhatWasChangedSinceIsToldAndKept) {
  const std::vector<std::pair<Command, std::string>> cases = {
      {command::DuplicateTracks{{7}, 0xA1}, "position 4 on (4 instead of 3)"},
      {command::DeleteEntries{0xA1, {2}}, "position 2 on (2 instead of 3)"},
      {command::MovePlaylist{0xA1, 0xF1}, "in the folder \"G\""},
      {command::DeleteTracks{{2}}, "tracks of 2 of its old entries"}};
  for (const auto& [command, expected] : cases) {
    UndoWorld world;
    world.change(command);
    const Lines changed = world.onDisk();
    const std::string error = world.undoError(1);
    EXPECT_NE(error.find(expected), std::string::npos) << error;
    EXPECT_EQ(error.find("Undo run"), std::string::npos) << error;
    EXPECT_EQ(world.onDisk(), changed);
    EXPECT_EQ(world.history->runs().size(), 1U);
  }
}

TEST(Undo, NamesTheLaterRunThatIsToBeTakenBackFirst) {
  UndoWorld world;
  world.apply(world.replaylist({{1, 7}}));
  world.apply(world.replaylist({{3, 6}}));
  world.apply(world.replaylist({{9, 8}}));  // has no part in this
  const auto isToldFor = [&](std::int64_t run, int later) {
    const std::string error = world.undoError(run);
    EXPECT_NE(error.find("Undo run " + std::to_string(later) + " first."), std::string::npos)
        << error;
    world.undo(later);
  };
  isToldFor(1, 3);
  isToldFor(1, 2);
  world.undo(1);
  world.undo(4);
  EXPECT_EQ(world.onDisk(), world.before);
}

TEST(Undo, CanLeaveWhatDiffersAndMakeAnewWhatIsGone) {
  UndoWorld world;
  world.change(command::DeleteEntries{0xA2, {1}});
  world.change(command::DeletePlaylist{0xA1});
  EXPECT_EQ(world.onDisk(), (Lines{"F:", "G:", "Q \"x\": 1", "other: 9"}));
  const UndoReport report = world.undo(1, {std::nullopt, true});
  EXPECT_EQ(world.onDisk(), (Lines{"F/in: 2 4 2", "F:", "G:", "Q \"x\": 1", "other: 9"}));
  EXPECT_EQ(report.lines()[2],
            "\"Q \"x\"\": its entries were changed from position 1 on (1 "
            "instead of 2).");
}

TEST(Undo, WhatIsAsBeforeTheRunIsNotChangedAndCountsAsTakenBack) {
  UndoWorld world;
  world.change(command::SetEntries{0xA1, {2, 4, 2}});
  const UndoReport report = world.undo(1);
  EXPECT_EQ(report.outcomes[0].kind, Outcome::Kind::asBefore);
  EXPECT_EQ(report.outcomes[1].kind, Outcome::Kind::done);
  EXPECT_TRUE(report.isComplete);
  EXPECT_EQ(world.onDisk(), world.before);
  EXPECT_TRUE(world.history->run(1)->summary.isUndone());
}

/// A record of which the list "other" (0xA3) is the old playlist, as an application leaves it that
/// makes a new playlist of each changed one.
std::int64_t recordRun(UndoWorld& world, ChangeState state, std::uint64_t made, RunState end) {
  PlaylistChange change;
  change.state = state;
  change.oldPlaylist = 0xA3;
  change.newPlaylist = made;
  change.name = "other";
  change.oldEntries = {8};
  change.newEntries = {9};
  const std::int64_t run =
      world.history->begin(RunKind::replaylist, world.identity(), {{&change, 1}, {}, {}});
  world.history->finish(run, end);
  return run;
}

TEST(Undo, LeavesAListAloneThatTheRunDidNotMake) {
  UndoWorld world;
  // The one that it made is gone, and the old one is there again and has been worked on since.
  const std::int64_t done = recordRun(world, ChangeState::done, 0xBB, RunState::finished);
  EXPECT_EQ(world.undo(done).outcomes[0].kind, Outcome::Kind::asBefore);
  EXPECT_EQ(world.onDisk(), world.after);
  // What a run that came to its end had not reached is not its work, though it looks like it.
  const std::int64_t ended = recordRun(world, ChangeState::planned, 0xA3, RunState::incomplete);
  EXPECT_NE(world.undoError(ended).find("changed nothing"), std::string::npos)
      << world.undoError(ended);
  EXPECT_EQ(world.onDisk(), world.after);
}

TEST(Undo, MakesAListAnewInThePlaceOfTheLastThatStoodThere) {
  UndoWorld world;
  for (const std::uint64_t then : {7, 6})
    world.apply(world.replaylist({{then == 7 ? 1U : 7U, then}}, {0xA1}));
  for (const std::int64_t run : {3, 2}) {  // each time the list is gone
    world.change(command::DeletePlaylist{world.id("in")});
    world.undo(run, {0xA1, false});
  }
  const std::uint64_t list = world.id("in");
  world.undo(1, {0xA1, false});
  EXPECT_EQ(world.id("in"), list) << "found by the first run too";
  EXPECT_EQ(world.onDisk(), (Lines{"F/in: 2 4 2", "F:", "G:", "Q \"x\": 3 1", "other: 9"}));
}

/// Does `act` in a program that is killed before `step`, and opens the library again.
template <typename Act>
void killAt(CommitStep step, LibraryWorld& world, Act&& act) {
  const int status = inChild([&] {
    world.open({10, [step](CommitStep at) {
                  if (at == step) ::raise(SIGKILL);
                }});
    act();
  });
  ASSERT_TRUE(WIFSIGNALED(status)) << "the step came";
  world.open();
}

TEST(Undo, ARunKilledAtAnyStepIsToldAndTakenBack) {
  for (const CommitStep step : {CommitStep::check, CommitStep::create, CommitStep::backUp,
                                CommitStep::replace, CommitStep::syncFolder, CommitStep::prune}) {
    LibraryWorld world({playlist("a", 0xA1, {2, 3}), playlist("b", 0xA2, {2})});
    const Lines before = world.onDisk();
    killAt(step, world, [&] { world.apply(world.replaylist({{2, 1}})); });
    const bool done = step == CommitStep::syncFolder || step == CommitStep::prune;
    EXPECT_EQ(world.onDisk(), done ? (Lines{"a: 1 3", "b: 1"}) : before);
    const RunRecord run = *world.history->run(1);
    EXPECT_EQ(run.summary.state, RunState::brokenOff);
    const UndoCheck check = inspectRun(run, world.app->library(), world.files);
    EXPECT_EQ(check.lines()[0],
              done ? "\"a\": as the run left it." : "\"a\": as it was before the run.");
    // What the record says of it is true once the library has been looked at.
    settleBrokenRuns(*world.history, *world.app, world.files);
    EXPECT_EQ(world.history->run(1)->summary.playlists, done ? 2U : 0U);
    RunRecord other = run;
    other.playlists[0].oldEntries = other.playlists[0].newEntries = {4};
    EXPECT_EQ(inspectRun(other, world.app->library(), world.files).playlists[0].state,
              UndoState::different);
    if (done)
      world.undo(1);
    else
      EXPECT_NE(world.undoError(1).find("changed nothing"), std::string::npos);
    EXPECT_EQ(world.onDisk(), before);
  }
}

/// Runs one after the other, a letter each, in a library with two playlists of one name: r and s
/// replace tracks, c takes repeated entries out, a digit takes back the run of that number.
struct ChainWorld : LibraryWorld {
  ChainWorld()
      : LibraryWorld({testing::folder("F", 0xF0), playlist("Mix", 0xA1, {2, 3, 2}).in(0xF0),
                      playlist("Mix", 0xA2, {2}), playlist("R", 0xA3, {2, 5, 2}),
                      playlist("C", 0xA4, {7, 7})}) {}

  /// Nothing happens where there is nothing to do, or to be taken back.
  void act(char action, bool leaveDifferent = false) {
    if (action == 'r') apply(replaylist({{2, 1}}));
    if (action == 's') apply(replaylist({{1, 4}}));
    if (action == 'c') apply(cleanUp());
    if (action == 'd')
      for (const Playlist& list : lists())
        if (list.name == "R") app->run(command::DeletePlaylist{list.persistentID});
    if (action >= '1' && action <= '9') errorOf([&] { undo(action - '0', {{}, leaveDifferent}); });
    EXPECT_LE(lists().size(), 5U) << "a playlist too many";
  }
  /// In the order that ends with what there was first, perhaps after an order that cannot.
  void takeAllBack(bool oldestFirst) {
    const auto last = static_cast<char>('0' + history->runs().size());
    for (char run = '1'; oldestFirst && run <= last; ++run) act(run, true);
    for (char run = last; run > '0'; --run) act(run, true);
  }
};

TEST(Undo, WhateverWasKilledOrPutBackNothingIsLostOrDoubled) {
  struct Way {
    CommitStep killed;
    bool again, oldestFirst;
  };
  const Lines before = ChainWorld().onDisk();
  for (const std::string actions : {"r", "rs", "rc", "crd", "rs21", "r1r"}) {
    // Killed in the last action, which is done again or not.
    for (const Way& way :
         {Way{CommitStep::check, false, true}, Way{CommitStep::replace, true, false},
          Way{CommitStep::syncFolder, false, false}, Way{CommitStep::syncFolder, true, true}}) {
      SCOPED_TRACE(actions + " killed at step " + std::to_string(static_cast<int>(way.killed)) +
                   (way.again ? ", done again" : ""));
      ChainWorld world;
      for (std::size_t i = 0; i + 1 < actions.size(); ++i) world.act(actions[i]);
      killAt(way.killed, world, [&] { world.act(actions.back()); });
      if (way.again) world.act(actions.back());
      world.takeAllBack(way.oldestFirst);
      EXPECT_EQ(world.onDisk(), before);
    }
    // The document as it was after some of the actions is put back by hand.
    for (std::size_t kept = 0; kept < actions.size(); ++kept) {
      SCOPED_TRACE(actions + " put back to " + std::to_string(kept));
      ChainWorld world;
      std::string document;
      for (std::size_t i = 0; i < actions.size(); ++i) {
        if (i == kept) document = TemporaryFolder::read(world.path);
        world.act(actions[i]);
      }
      world.folder.write("Music/Library.xml", document);
      world.open();
      world.takeAllBack(false);
      EXPECT_EQ(world.onDisk(), before);
    }
  }
}

TEST(Undo, IsDoneEvenWhenTheHistoryCannotBeWrittenAfterwards) {
  ChainWorld world;
  const Lines before = world.onDisk();
  world.act('r');
  world.open({10, [&](CommitStep at) {
                if (at == CommitStep::prune)
                  HistoryDatabase(world.historyPath).execute("ALTER TABLE run RENAME TO away");
              }});
  const UndoReport report = world.undo(1);
  EXPECT_TRUE(report.changedLibrary);
  EXPECT_NE(report.lines().back().find("the history cannot be used"), std::string::npos);
  EXPECT_EQ(world.onDisk(), before);
  HistoryDatabase(world.historyPath).execute("ALTER TABLE away RENAME TO run");
  world.open();
  const RunRecord run = *world.history->run(1);
  for (const UndoItem& item : inspectRun(run, world.app->library(), world.files).playlists)
    EXPECT_TRUE(item.state == UndoState::asBefore || item.state == UndoState::notDone) << item.name;
  world.takeAllBack(true);
  EXPECT_EQ(world.onDisk(), before);
}

/// A library of which the tracks 1 and 2 have files that go to the trash, and 3 one that stays.
struct TrashWorld : LibraryWorld {
  TrashWorld() : LibraryWorld({playlist("P", 0xA1, {1})}) {
    PropertyList document = libraryDocument({playlist("P", 0xA1, {1})});
    for (int i = 1; i <= 3; ++i) {
      paths.push_back(folder.write("Media/" + std::to_string(i), sound + std::to_string(i)));
      document.find("Tracks")
          ->find(std::to_string(100 + i))
          ->set("Location", "file://" + paths.back());
    }
    folder.write("Music/Library.xml", writePropertyList(document));
    open();
    plan.kind = RunKind::trash;
    plan.library = identity();
    for (const std::uint64_t track : {1, 2}) {
      const std::string& file = paths[track - 1];
      const FileStatus is = *files.status(file);
      plan.files.push_back({file, track, "", 0, is.size, is.device, is.inode, paths[2], {}, 3});
    }
  }
  ApplyReport move(Trash& with) { return applyTrash(plan, app->library(), with, files, *history); }
  UndoReport undoFiles(bool leave = false) { return undo(1, {std::nullopt, leave}, &trash); }
  [[nodiscard]] std::string read(std::size_t number) const {
    const std::string bytes = TemporaryFolder::read(paths[number - 1]);
    return bytes.starts_with(sound) ? bytes.substr(sound.size()) : bytes;
  }

  const std::string sound = make_library::makeAudio("wav", 1, 8, 440).bytes;
  std::vector<std::string> paths;
  Plan plan;
  FreedesktopTrash trash{clock, folder / "data"};
};

TEST(Undo, BringsFilesBackFromTheTrash) {
  TrashWorld world;
  world.move(world.trash);
  world.folder.write("Media/2", "new");
  const std::string error = LibraryWorld::errorOf([&] { world.undoFiles(); });
  EXPECT_NE(error.find("taken its place"), std::string::npos) << error;
  EXPECT_EQ(world.read(1), "");
  world.undoFiles(true);
  EXPECT_EQ(world.read(1) + world.read(2), "1new");
  std::filesystem::remove(world.paths[1]);
  world.undoFiles();
  EXPECT_EQ(world.read(2), "2");
  EXPECT_TRUE(world.history->run(1)->summary.isUndone());
}

/// To the byte, and, once something else was changed, as what was in it: also where another track
/// has the number by now that one had in the document.
TEST(Undo, BringsRemovedTracksBackAndHasTheHistoryKnowIt) {
  enum class Since : std::uint8_t { nothing, list, numbers };
  for (const Since since : {Since::nothing, Since::list, Since::numbers}) {
    const bool isExact = since == Since::nothing;
    TrashWorld world;
    const auto tracks = [&] { return world.app->library().allMediaItems()->size(); };
    const std::string before = world.bytes();
    const std::size_t count = tracks();
    Plan removal = world.replaylist({{1, 3}});
    removal.kind = RunKind::remove;
    removal.tracks.push_back({1, "a", 0, 3, {}});
    const ApplyReport report =
        applyRemoval(removal, *world.app, world.trash, world.files, *world.history);
    ASSERT_EQ(report.state, RunState::finished) << report.problem.english();
    EXPECT_EQ(tracks(), count - 1);
    const auto countOf = [&](const std::string& text) {
      const std::string bytes = world.bytes();
      int found = 0;
      for (std::size_t at = 0; (at = bytes.find(text, at)) != std::string::npos; ++at) ++found;
      return found;
    };
    if (since == Since::list) {
      ASSERT_FALSE(world.app->run(command::CreatePlaylist{"New"}).failed());
    } else if (since == Since::numbers) {
      std::string bytes = world.bytes();
      for (const std::string name : {"<key>", "<integer>"})
        for (std::size_t at = 0; (at = bytes.find(name + "102</", at)) != std::string::npos;)
          bytes.replace(at, name.size() + 3, name + "101");
      std::ofstream(world.path, std::ios::binary) << bytes;
      world.open();
    }
    EXPECT_TRUE(world.undoFiles().isComplete);
    EXPECT_EQ(tracks(), count);
    EXPECT_EQ(world.bytes() == before, isExact);
    world.open();
    EXPECT_EQ(tracks(), count);
    EXPECT_EQ(countOf("<key>101</key>"), 1);
    if (since == Since::numbers) {
      EXPECT_EQ(countOf("<key>Track ID</key><integer>101</integer>"), 1);
    }
    EXPECT_EQ(world.lists().front().items, std::vector<std::uint64_t>{1});
    const RunRecord run = *world.history->run(1);
    EXPECT_EQ(run.tracks.at(0).undoneBy, 2);
    EXPECT_TRUE(run.summary.isUndone());
    EXPECT_EQ(world.history->run(2)->tracks.at(0).state, ChangeState::done);
  }
}

TEST(Undo, CanBeStoppedAndGoneOnWith) {
  TrashWorld world;
  Plan plan = world.plan;
  plan.playlists = world.replaylist({{1, 3}}).playlists;
  const ApplyReport moved =
      applyTrashAndRepair(plan, *world.app, world.trash, world.files, *world.history);
  ASSERT_EQ(moved.count(Outcome::Kind::done), 3U) << moved.problem.english();
  const auto undo = [&](std::size_t steps) {
    std::vector<std::string> told;
    UndoOptions options;
    options.progress = [&](const ApplyProgress& progress) {
      if (!progress.name.empty()) told.push_back(progress.name);
    };
    options.cancelled = [&] { return told.size() > steps; };
    const UndoReport report = world.undo(1, options, &world.trash);
    EXPECT_EQ(report.isCancelled, !report.isComplete);
    EXPECT_EQ(told.size(), std::min<std::size_t>(steps + 1, 2)) << "what comes next, each time";
    return report;
  };
  const UndoReport first = undo(0);
  EXPECT_NE(first.lines()[0].find("Cancelled before 2 changes."), std::string::npos)
      << first.lines()[0];
  EXPECT_EQ(world.lists().front().items, std::vector<std::uint64_t>{1}) << "at once, to the byte";
  EXPECT_EQ(world.history->run(1)->summary.undone, 1U);
  EXPECT_TRUE(undo(9).isComplete);
  EXPECT_EQ(world.read(1) + world.read(2), "12");
  EXPECT_TRUE(world.history->run(1)->summary.isUndone());
}

TEST(Undo, BringsFilesBackWhileTheLibraryCannotBeChanged) {
  TrashWorld world;
  world.move(world.trash);
  const LibraryLock others(world.files, realPathOf(world.path));
  world.undoFiles();
  EXPECT_EQ(world.read(1) + world.read(2), "12");
}

TEST(Undo, TakesNoOtherFileForTheOneThatWentToTheTrash) {
  namespace fs = std::filesystem;
  TrashWorld world;
  world.move(world.trash);
  const std::string place = world.history->run(1)->files[0].item.trashedPath;
  const auto time = fs::last_write_time(place);
  std::ofstream(place) << world.sound << "B";
  fs::last_write_time(place, time + std::chrono::hours(1));
  const std::string error = LibraryWorld::errorOf([&] { world.undoFiles(); });
  EXPECT_NE(error.find("another file lies in its place in the trash"), std::string::npos) << error;
  // Even with the size and the time of the one that was there.
  fs::last_write_time(place, time);
  const UndoReport report = world.undoFiles();
  EXPECT_EQ(report.outcomes[0].kind, Outcome::Kind::failed);
  EXPECT_NE(report.outcomes[0].reason.english(), "");
  EXPECT_EQ(report.outcomes[1].kind, Outcome::Kind::done);
  EXPECT_EQ(world.read(1) + world.read(2), "2");
  EXPECT_EQ(TemporaryFolder::read(place), world.sound + "B");
  const auto state = [&] {
    return inspectRun(*world.history->run(1), world.app->library(), world.files).files[0].state;
  };
  EXPECT_EQ(world.history->run(1)->summary.undone, 1U) << "the other is still to be had back";
  // With the trash emptied, another file at the path is not the one that was there.
  fs::remove(place);
  world.folder.write("Media/1", "new");
  EXPECT_EQ(state(), UndoState::different);
  world.folder.write("Media/1", world.sound + "1");
  fs::last_write_time(world.paths[0], time);
  EXPECT_EQ(state(), UndoState::asBefore);
}

TEST(Undo, FindsNothingInARunOfWhichEachFileFailed) {
  TrashWorld world;
  WatchedTrash full(world.trash, [](WatchedTrash::Step, int) {
    throw FileError("x", Message::tr("cannot be moved"), {});
  });
  EXPECT_EQ(world.move(full).count(Outcome::Kind::failed), 2U);
  EXPECT_EQ(world.history->runs()[0].state, RunState::failed) << "and not done, with no files";
  EXPECT_EQ(world.read(1) + world.read(2), "12");
}

TEST(Undo, OfWhatItHasBroughtBackSaysThatItIsThere) {
  TrashWorld world;
  world.move(world.trash);
  const std::int64_t undo = world.undoFiles().run.value();
  const auto states = [&](std::int64_t run) {
    std::vector<UndoState> found;
    for (const UndoItem& item :
         inspectRun(*world.history->run(run), world.app->library(), world.files).files)
      found.push_back(item.state);
    return found;
  };
  using States = std::vector<UndoState>;
  EXPECT_EQ(states(1), States(2, UndoState::undone));
  EXPECT_EQ(states(undo), States(2, UndoState::ready));
  std::filesystem::remove(world.paths[0]);
  EXPECT_EQ(states(undo), (States{UndoState::different, UndoState::ready}));
}

TEST(Undo, ARunThatWasKilledWhileItMovedFilesComesBackWhole) {
  using Step = WatchedTrash::Step;
  struct Killed {};
  for (const Step last : {Step::reserved, Step::moving, Step::moved}) {
    SCOPED_TRACE(static_cast<int>(last));
    TrashWorld world;
    WatchedTrash deadly(world.trash, [&](Step step, int number) {
      if (step == last && number == 2) throw Killed();
    });
    EXPECT_THROW(world.move(deadly), Killed);
    EXPECT_EQ(world.read(2), last == Step::moved ? "" : "2");
    HistoryDatabase(world.historyPath).execute("UPDATE run SET process = '1 1 x'");
    world.open();
    clearBrokenRuns(*world.history, world.trash);
    const auto notes = std::filesystem::directory_iterator(world.folder / "data/Trash/info");
    EXPECT_EQ(std::distance(notes, {}), last == Step::moved ? 2 : 1);
    EXPECT_TRUE(world.history->runs()[0].ended) << "which is to be done once";
    world.undoFiles();
    EXPECT_EQ(world.read(1) + world.read(2), "12");
    EXPECT_TRUE(std::filesystem::is_empty(world.folder / "data/Trash/info"));
  }
}

}  // namespace
}  // namespace kestrel
