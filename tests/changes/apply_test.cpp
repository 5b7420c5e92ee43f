#include <filesystem>
#include <gtest/gtest.h>
#include <random>

#include "changes/library_changes.h"
#include "tests/changes/library_world.h"

namespace kestrel {
namespace {

using namespace kestrel::testing;
using Lines = std::vector<std::string>;
using IDs = std::vector<std::uint64_t>;

TEST(Apply, ReplacesEntriesWhereTheyAreAndNothingElse) {
  LibraryWorld world({playlist("Library", 0xA0, {1, 2, 3}).master(), folder("F", 0xF0),
                      playlist("7\" singles", 0xA1, {2, 3}).in(0xF0),
                      playlist("Ünï & co \\", 0xA2, {3, 2, 2}), playlist("7\" singles", 0xA3, {2}),
                      playlist("Smart", 0xA4, {2}).kind(PlaylistKind::smart)});
  // What an owner has put there by other means: entries of unknown tracks, other keys and
  // spellings.
  std::string document = TemporaryFolder::read(world.path);
  const std::string entry = "<key>Track ID</key><integer>102</integer>";
  const std::size_t first = document.find(entry, document.find("singles"));
  ASSERT_NE(first, std::string::npos);
  document.replace(first, entry.size(),
                   "<!-- x --><key>Track ID</key><integer>\t+0102 </integer>"
                   "<key>Loved</key><true/></dict><dict><key>Track ID</key>"
                   "<integer>999</integer>");
  document.insert(document.find("<key>Playlist Items</key>", document.find("singles")),
                  "<key>Description</key><string>Mine</string>");
  world.folder.write("Music/Library.xml", document);
  world.open();
  const ApplyReport report = world.apply(world.replaylist({{2, 1}}));
  EXPECT_EQ(report.count(Outcome::Kind::done), 3U);
  std::string expected = document;
  const auto put = [&](const std::string& from, const std::string& to, const char* behind) {
    expected.replace(expected.find(from, expected.find(behind)), from.size(), to);
  };
  put("\t+0102 ", "101", "singles");
  for (int i = 0; i < 2; ++i) put("<integer>102</integer>", "<integer>101</integer>", " co ");
  put("<integer>102</integer>", "<integer>101</integer>", " co ");
  EXPECT_EQ(TemporaryFolder::read(world.path), expected);
  EXPECT_FALSE(std::filesystem::exists(world.folder / "support/Kestrel/1700000000.000000.xml"));
  world.undo(1);
  EXPECT_EQ(TemporaryFolder::read(world.path), document) << "to the byte";
}

TEST(Apply, StopsBetweenTwoPlaylistsAndKeepsWhatIsDone) {
  LibraryWorld world(
      {playlist("a", 0xA1, {2}), playlist("b", 0xA2, {2}), playlist("c", 0xA3, {2})});
  ApplyOptions options;
  Lines seen;
  options.progress = [&](const ApplyProgress& at) {
    seen.push_back(std::to_string(at.done) + "/" + std::to_string(at.total) + " " + at.name);
  };
  options.cancelled = [&] { return seen.size() == 3; };
  const ApplyReport report = world.apply(world.replaylist({{2, 1}}), options);
  EXPECT_EQ(seen, (Lines{"0/3 a", "1/3 b", "2/3 c"}));
  EXPECT_EQ(report.lines(), Lines{"Replaced 2 entries in 2 playlists. Cancelled before 1 playlist. "
                                  "This is run 1 of the history."});
  EXPECT_EQ(world.onDisk(), (Lines{"a: 1", "b: 1", "c: 2"}));
  world.undo(1);
  EXPECT_EQ(world.onDisk(), (Lines{"a: 2", "b: 2", "c: 2"}));
}

TEST(Apply, RefusesALibraryThatIsNoLongerTheOne) {
  LibraryWorld world({playlist("a", 0xA1, {2, 3}), playlist("b", 0xA2, {2})});
  const Plan plan = world.replaylist({{2, 1}});
  const std::string document = TemporaryFolder::read(world.path);
  world.folder.write("Music/Library.xml", document + "\n");
  EXPECT_NE(LibraryWorld::errorOf([&] { world.apply(plan); }), "none") << "stale in memory";
  world.open();
  EXPECT_NE(LibraryWorld::errorOf([&] { world.apply(plan); }).find("the plan cannot be applied"),
            std::string::npos);
  Plan current = world.replaylist({{2, 1}});
  current.playlists[0].entries += 1;                      // a playlist of another time
  current.playlists[1].replacements[0].newTrack = 0xBAD;  // a track that left
  const ApplyReport report = world.apply(current);
  EXPECT_EQ(report.count(Outcome::Kind::skipped), 2U);
  EXPECT_FALSE(report.run);
  EXPECT_EQ(TemporaryFolder::read(world.path), document + "\n");
}

TEST(Apply, LeavesOutWhatCommandsCannotTellApart) {
  LibraryWorld world({playlist("a", 0xA1, {2}), playlist("b", 0xA1, {2}), playlist("c", 0xA3, {2}),
                      playlist("d", 0xA4, {2, 5}), playlist("e", 0xA5, {5, 5})});
  const Lines before = world.onDisk();
  Plan plan = world.replaylist({{2, 1}}, {0xA3, 0xA4});
  PlannedPlaylist twice = plan.playlists[0];  // as planned before there was another
  twice.playlist = 0xA1;
  twice.name = "a";
  plan.playlists.push_back(twice);
  EXPECT_TRUE(world.apply(world.replaylist({{2, 1}}, {0xA1})).outcomes.empty());
  std::string document = TemporaryFolder::read(world.path);
  // Tracks 5 and 6 get the same persistent ID.
  const std::string six = "<string>6</string>";
  document.replace(document.find(six), six.size(), "<string>5</string>");
  world.folder.write("Music/Library.xml", document);
  world.open();
  plan.library = world.identity();
  EXPECT_EQ(world.apply(plan).lines(),
            (Lines{"Replaced 2 entries in 2 playlists. 1 playlist left out. This is run 1 of the "
                   "history.",
                   "\"a\": another playlist has the same persistent ID."}));
  EXPECT_EQ(world.apply(world.cleanUp()).count(Outcome::Kind::skipped), 1U);
  world.undo(1);
  EXPECT_EQ(world.onDisk(), before);
}

TEST(Apply, LosesNothingWhenACommandFails) {
  LibraryWorld world({playlist("a", 0xA1, {2}), playlist("b", 0xA2, {2})});
  const std::string document = TemporaryFolder::read(world.path);
  ApplyOptions options;
  options.progress = [&](const ApplyProgress& at) {
    if (at.done == 1) world.app->run(command::DeletePlaylist{0xA2});
  };
  const ApplyReport report = world.apply(world.replaylist({{2, 1}}), options);
  EXPECT_EQ(report.state, RunState::failed);
  EXPECT_EQ(report.lines(), Lines{"Nothing was changed: \"b\": There is no playlist with the "
                                  "persistent ID A2."});
  EXPECT_EQ(TemporaryFolder::read(world.path), document);
  EXPECT_EQ(world.lists().size(), 2U);
  EXPECT_EQ(world.history->run(1)->summary.state, RunState::failed);
  EXPECT_NE(world.undoError(1).find("changed nothing"), std::string::npos);
  EXPECT_EQ(world.apply(world.replaylist({{2, 1}})).state, RunState::finished)
      << "the next one can";
}

TEST(Apply, RandomLibrariesKeepTheirShapeAndComeBack) {
  for (unsigned seed = 1; seed <= 8; ++seed) {
    std::mt19937 random(seed);
    constexpr std::uint64_t trackCount = 30;
    const auto track = [&] { return 1 + random() % trackCount; };
    std::vector<PlaylistBuilder> lists = {folder("F", 0xF0), folder("G", 0xF1).in(0xF0)};
    for (std::uint64_t i = 0; i < 10; ++i) {
      IDs items(random() % 20);
      for (std::uint64_t& item : items) item = track();
      // Few names, so that some collide; some with what scripts and documents stumble over.
      static const std::vector<std::string> names = {"A", "a", "B", "q\"", "<&>", "C", "D"};
      lists.push_back(playlist(names[random() % names.size()], 0x100 + i, items));
      if (i % 3 == 1) lists.back().in(i % 2 ? 0xF0 : 0xF1);
    }
    LibraryWorld world(lists, trackCount);
    std::unordered_map<std::uint64_t, std::uint64_t> keepers;
    for (int i = 0; i < 8; ++i) keepers[track()] = track();
    for (auto& [from, to] : keepers)
      if (keepers.contains(to)) to = from;
    const Lines before = world.onDisk();
    const auto old = world.lists();

    const ApplyReport report = world.apply(world.replaylist(keepers));
    std::unordered_map<std::uint64_t, std::uint64_t> newIDs;
    for (const Outcome& outcome : report.outcomes)
      if (outcome.kind == Outcome::Kind::done) newIDs[outcome.id] = outcome.newID;
    const auto now = world.lists();
    ASSERT_EQ(now.size(), old.size()) << seed;
    for (const Playlist& list : old) {
      const auto done = newIDs.find(list.persistentID);
      IDs expected = list.items;
      if (done != newIDs.end())
        for (std::uint64_t& item : expected)
          if (const auto keeper = keepers.find(item); keeper != keepers.end())
            item = keeper->second;
      const std::uint64_t id = done == newIDs.end() ? list.persistentID : done->second;
      const auto found = std::find_if(
          now.begin(), now.end(), [&](const Playlist& other) { return other.persistentID == id; });
      ASSERT_NE(found, now.end()) << seed;
      EXPECT_EQ(found->items, expected) << seed;
      EXPECT_EQ(found->parentID, list.parentID);
    }
    if (report.run) world.undo(*report.run);
    EXPECT_EQ(world.onDisk(), before) << seed;

    std::unordered_map<std::uint64_t, IDs> once;
    for (const Playlist& list : world.lists())
      for (const std::uint64_t item : list.items)
        if (IDs& items = once[list.persistentID];
            std::find(items.begin(), items.end(), item) == items.end())
          items.push_back(item);
    const ApplyReport cleaned = world.apply(world.cleanUp());
    for (const Playlist& list : world.lists())
      if (list.kind == PlaylistKind::regular) {
        EXPECT_EQ(list.items, once[list.persistentID]) << seed;
      }
    if (cleaned.run) world.undo(*cleaned.run);
    EXPECT_EQ(world.onDisk(), before) << seed;
  }
}

}  // namespace
}  // namespace kestrel
