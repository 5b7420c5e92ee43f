// Runs over Strawberry's database, which commands take back.
#include <algorithm>
#include <gtest/gtest.h>

#include "changes/library_changes.h"
#include "tests/musicapp/strawberry/strawberry_world.h"

namespace kestrel::testing {
namespace {

TEST(StrawberryRuns, AreTakenBackAlsoWhereThePlaylistIsGone) {
  StrawberryWorld world;
  LibraryChanges changes(*world.app, world.files, world.clock);
  const auto add = [&](std::uint64_t playlist) {
    const ApplyReport report = changes.apply(changes.additionPlan(playlist, {10, 10}));
    EXPECT_EQ(report.state, RunState::finished);
    return report.run.value();
  };
  const std::int64_t first = add(6), second = add(4);
  EXPECT_EQ(world.entries(6) + world.entries(4), "d a a x b a a ");
  EXPECT_TRUE(changes.undo(first).isComplete);
  EXPECT_EQ(world.entries(6), "d ");

  const auto lists = world.app->allPlaylists();
  EXPECT_EQ(world.failureOf(command::MovePlaylist{3, *lists->at(4).parentID}), "");
  EXPECT_EQ(world.failureOf(command::DeletePlaylist{4}), "");
  const UndoReport undone = changes.undo(second);
  EXPECT_TRUE(undone.isComplete);
  EXPECT_EQ(undone.outcomes.at(0).newID, 7U);
  EXPECT_EQ(world.entries(7), "b ") << "what was no song is gone with the list";
  EXPECT_EQ(world.column("SELECT name || ' in ' || ui_path FROM playlists WHERE rowid = 7"),
            "Inner in Folder ");
}

/// Strawberry keeps the place of a file that it did not know, also once it does.
TEST(StrawberryRuns, GiveEntriesBackThePlaceThatTheyHad) {
  StrawberryWorld world;
  world.execute(
      "INSERT INTO playlist_items(playlist, type, collection_id, url, title) VALUES"
      "(6, 1, NULL, 'file:///music/c.mp3', 'C'), (6, 1, -1, 'file:///music/b.mp3', 'B'),"
      "(6, 2, 12, '', '')");
  world.open();
  const auto rows = [&] {
    return world.column(
        "SELECT rowid || quote(type) || quote(collection_id) || quote(url) || quote(title) "
        "FROM playlist_items ORDER BY rowid");
  };
  const std::string before = rows();
  LibraryChanges changes(*world.app, world.files, world.clock);
  const auto replace = [&](std::uint64_t track, std::uint64_t keeper) {
    const ReplaylistChoice choice{6, true, {{track, keeper}}};
    Plan plan = planReplaylist(*world.app->allPlaylists(), {&choice, 1}, {});
    plan.library = world.app->identity();
    const ApplyReport report = changes.apply(plan);
    EXPECT_EQ(report.state, RunState::finished) << report.problem.english();
    return report.run.value();
  };
  const std::int64_t first = replace(12, 10);
  EXPECT_EQ(world.entries(6), "d a B a ");
  const std::int64_t second = replace(11, 13);
  Plan clean =
      planCleanUp(*world.app->allPlaylists(), choicesOf(findRepeats(world.app->allPlaylists())));
  clean.playlists.erase(std::remove_if(clean.playlists.begin(), clean.playlists.end(),
                                       [](const auto& list) { return list.playlist != 6; }),
                        clean.playlists.end());
  clean.library = world.app->identity();
  const std::string made = rows();
  const ApplyReport cleaned = changes.apply(clean);
  EXPECT_EQ(world.entries(6), "d a ") << cleaned.problem.english();
  for (const bool onlyList : {false, true}) {
    const std::string kept = TemporaryFolder::read(world.path);
    world.open();  // another day
    LibraryChanges later(*world.app, world.files, world.clock);
    UndoOptions options;
    if (onlyList) options.playlist = 6;
    EXPECT_TRUE(later.undo(*cleaned.run, options).isComplete);
    EXPECT_EQ(rows(), made);
    EXPECT_TRUE(later.undo(second, options).isComplete);
    EXPECT_TRUE(later.undo(first, options).isComplete);
    EXPECT_EQ(rows(), before);
    if (onlyList) break;
    world.folder.write("strawberry.db", kept);
  }
}

}  // namespace
}  // namespace kestrel::testing
