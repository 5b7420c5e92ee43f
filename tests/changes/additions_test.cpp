#include <filesystem>
#include <gtest/gtest.h>

#include "changes/library_checks.h"
#include "history/history_database.h"
#include "tests/changes/library_world.h"
#include "tools/make_library/audio_files.h"

namespace kestrel {
namespace {

using namespace kestrel::testing;
using Lines = std::vector<std::string>;

struct AdditionWorld : LibraryWorld {
  using LibraryWorld::LibraryWorld;
  ApplyReport add(std::uint64_t playlist, std::vector<std::uint64_t> tracks) {
    return apply(ofThis(planAddToPlaylist(lists(), playlist, std::move(tracks))));
  }
  std::string audio(const std::string& name) {
    return folder.write(name, make_library::makeAudio("mp3", 500, 32, 440).bytes);
  }
  ApplyReport addFiles(const std::vector<std::string>& paths, const ApplyOptions& options = {}) {
    return applyAdditions(ofThis(planAddToLibrary(paths)), *app, files, *history, options);
  }
  [[nodiscard]] std::vector<std::uint64_t> tracks() const {
    std::vector<std::uint64_t> ids;
    app->library().allMediaItems()->forEach(
        [&](const MediaItem& item) { ids.push_back(item.persistentID); });
    return ids;
  }
};

TEST(Additions, ToAPlaylistAreARunThatCanBeTakenBack) {
  AdditionWorld world({playlist("Library", 0xA0, {1, 2, 3}).master(), playlist("P", 0xA1, {1, 2}),
                       playlist("S", 0xA2, {}).kind(PlaylistKind::smart)});
  const std::string before = TemporaryFolder::read(world.path);
  EXPECT_EQ(world.add(0xA1, {3, 1}).lines(),
            Lines{"Added 2 tracks to 1 playlist. This is run 1 of the history."});
  EXPECT_EQ(world.onDisk(), (Lines{"P: 1 2 3 1", "S:"}));
  EXPECT_EQ(world.history->run(1)->summary.kind, RunKind::addToPlaylist);
  world.undo(1);
  EXPECT_EQ(TemporaryFolder::read(world.path), before) << "nothing else was touched";

  EXPECT_EQ(world.add(0xA1, {77}).state, RunState::failed) << "a track that is not there";
  for (const std::uint64_t none : {0xA2, 0xAF})
    EXPECT_FALSE(world.add(none, {1}).run) << "fills itself, is not there";
  EXPECT_EQ(TemporaryFolder::read(world.path), before);
}

TEST(Additions, UndoLeavesEntriesAloneThatNameUnknownTracks) {
  PropertyList document = libraryDocument({playlist("P", 0xA1, {1, 77, 2})});
  AdditionWorld world(writePropertyList(document));
  const std::string before = TemporaryFolder::read(world.path);
  world.add(0xA1, {3});
  EXPECT_EQ(world.onDisk(), Lines{"P: 1 2 3"});
  world.undo(1);
  EXPECT_EQ(TemporaryFolder::read(world.path), before);

  for (const std::vector<std::uint64_t>& entries :
       {std::vector<std::uint64_t>{1, 77, 2, 78, 1}, {77, 1, 1, 78, 2}}) {
    AdditionWorld cleaned(writePropertyList(libraryDocument({playlist("P", 0xA1, entries)})));
    const std::string uncleaned = TemporaryFolder::read(cleaned.path);
    cleaned.apply(cleaned.cleanUp());
    EXPECT_EQ(cleaned.onDisk(), Lines{"P: 1 2"});
    cleaned.undo(1);
    EXPECT_EQ(TemporaryFolder::read(cleaned.path), uncleaned);
  }
}

TEST(Additions, OfFilesNameEachFileAndAreTakenBack) {
  AdditionWorld world({playlist("Library", 0xA0, {1, 2}).master(), playlist("P", 0xA1, {1})});
  const std::string before = TemporaryFolder::read(world.path);
  const auto known = world.tracks();
  const std::string a = world.audio("a.mp3"), b = world.audio("50% b.mp3");
  const ApplyReport report =
      world.addFiles({a, b, world.folder / "x/../a.mp3", world.folder / "none.mp3", "/music/a.mp3",
                      world.folder / "Music", world.path,
                      world.folder.write("text.mp3", "no audio"), world.audio("\"q\".mp3")});
  const std::vector<std::pair<Outcome::Kind, const char*>> expected = {
      {Outcome::Kind::done, ""},
      {Outcome::Kind::done, ""},
      {Outcome::Kind::skipped, "there is no such file"},
      {Outcome::Kind::skipped, "the library has it already"},
      {Outcome::Kind::skipped, "it is a folder"},
      {Outcome::Kind::skipped, "it is a library"},
      {Outcome::Kind::failed, nullptr},
      {Outcome::Kind::done, ""}};
  ASSERT_EQ(report.outcomes.size(), expected.size()) << "each file counts once";
  for (std::size_t i = 0; i < expected.size(); ++i) {
    EXPECT_EQ(report.outcomes[i].kind, expected[i].first) << report.outcomes[i].name;
    if (expected[i].second) {
      EXPECT_EQ(report.outcomes[i].reason.english(), expected[i].second);
    }
  }
  EXPECT_NE(report.lines()[1].find("none.mp3"), std::string::npos) << report.lines()[1];
  ASSERT_EQ(world.tracks().size(), known.size() + 3);
  const RunRecord run = *world.history->run(*report.run);
  EXPECT_EQ(run.summary.files, 3U);
  EXPECT_EQ(run.files[1].track, world.tracks()[known.size() + 1]);

  world.open();  // as a later start of the program reads them
  EXPECT_EQ(world.addFiles({a}).run, std::nullopt) << "nothing to add";
  world.undo(*report.run);
  EXPECT_EQ(world.tracks(), known);
  EXPECT_TRUE(std::filesystem::exists(a)) << "files stay";
  EXPECT_TRUE(world.history->run(*report.run)->summary.isUndone());
  EXPECT_NE(world.undoError(*report.run).find("already"), std::string::npos);
  EXPECT_EQ(TemporaryFolder::read(world.path), before);
}

TEST(Additions, OfFilesStayWhenTheyBecameAPartOfTheUsersWork) {
  const struct {
    const char* name;
    std::function<void(AdditionWorld&, std::uint64_t track)> change;
    const char* difference;
  } cases[] = {
      {"in a playlist",
       [](AdditionWorld& world, std::uint64_t track) {
         world.app->run(command::DuplicateTracks{{track, track}, 0xA1});
       },
       "the playlist \"P\" lists it"},
      {"in playlists",
       [](AdditionWorld& world, std::uint64_t track) {
         for (const std::uint64_t list : {0xA1, 0xA2})
           world.app->run(command::DuplicateTracks{{track}, list});
       },
       "the playlist \"P\" and 1 other list it"},
      {"rated",
       [](AdditionWorld& world, std::uint64_t) {
         std::string text = TemporaryFolder::read(world.path);
         const std::size_t at = text.rfind("<key>Location</key>");
         text.insert(at, "<key>Rating</key><integer>80</integer>");
         world.folder.write("Music/Library.xml", text);
         world.open();
       },
       "its track was changed, or played, since"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    AdditionWorld world({playlist("Library", 0xA0, {1}).master(), playlist("P", 0xA1, {1}),
                         playlist("Q", 0xA2, {1})});
    world.addFiles({world.audio("a.mp3")});
    const std::uint64_t track = world.tracks().back();
    c.change(world, track);
    EXPECT_NE(world.undoError(1).find(c.difference), std::string::npos) << world.undoError(1);
    EXPECT_EQ(world.tracks().back(), track);
    // What the user has deleted needs no undoing.
    world.app->run(command::DeleteTracks{{track}});
    world.undo(1);
    EXPECT_TRUE(world.history->run(1)->summary.isUndone());
  }
}

TEST(Additions, OfFilesAreAllKeptOrNone) {
  const std::pair<bool, bool> cases[] = {{false, true}, {true, true}, {true, false}};
  for (const auto& [commits, historyEnds] : cases) {
    AdditionWorld world({playlist("Library", 0xA0, {1}).master()});
    const std::string before = TemporaryFolder::read(world.path);
    if (!commits)
      world.open({10, [](CommitStep step) {
                    if (step == CommitStep::replace)
                      throw LibraryError("x", {}, Message::verbatim("full"), {});
                  }});
    if (!historyEnds)
      HistoryDatabase(world.historyPath)
          .execute(
              "CREATE TRIGGER fails BEFORE UPDATE ON run BEGIN "
              "SELECT RAISE(FAIL, 'broken'); END");
    int asked = 0;
    ApplyOptions options;
    options.cancelled = [&] { return ++asked > 1; };
    const ApplyReport report =
        world.addFiles({world.audio("a.mp3"), world.audio("b.mp3")}, options);
    // What the history cannot take back is not done.
    const bool kept = commits && historyEnds;
    EXPECT_EQ(report.state, kept ? RunState::cancelled : RunState::failed);
    EXPECT_EQ(report.count(Outcome::Kind::done), kept ? 1U : 0U);
    EXPECT_EQ(report.count(Outcome::Kind::notReached), kept ? 1U : 0U);
    EXPECT_EQ(world.tracks().size(), kept ? worldTracks + 1 : worldTracks);
    EXPECT_EQ(TemporaryFolder::read(world.path) == before, !kept);
    EXPECT_EQ(report.changedLibrary, kept);
    EXPECT_EQ(report.problem.empty(), kept);
    EXPECT_EQ(world.history->run(1)->summary.state,
              historyEnds ? report.state : RunState::brokenOff);
  }
}

}  // namespace
}  // namespace kestrel
