// What every music application keeps to. Another one is a world of its own and a line in the table.
#include <csignal>
#include <fstream>
#include <gtest/gtest.h>
#include <set>
#include <tuple>

#include "foundation/library_error.h"
#include "tests/musicapp/folder/folder_world.h"
#include "tests/musicapp/mpd/mpd_server.h"
#include "tests/musicapp/rhythmbox/rhythmbox_world.h"
#include "tests/musicapp/scripted/scripted_world.h"
#include "tests/musicapp/strawberry/strawberry_world.h"
#include "tools/make_library/audio_files.h"

namespace kestrel::testing {
namespace {

using namespace command;
using IDs = std::vector<std::uint64_t>;

/// A library with the tracks a to d and the playlists of `smallLibrary`, where "Inner" has an entry
/// more of a track that the library does not have.
class World {
 public:
  virtual ~World() = default;
  virtual MusicApplication& app() = 0;
  /// Opens the library again, as another run of the program would.
  virtual void open() = 0;
  /// All that a batch changes; empty where each command takes effect at once.
  virtual std::string bytes() { return {}; }
  /// All that says what tracks have been given; empty where that cannot be looked at as it stands.
  virtual std::string storedValues() { return {}; }
  /// Whether a batch can be reverted.
  virtual bool reverts() { return true; }
  /// As another program would, so that what was read is not what is there.
  virtual void changeFromOutside() {}
  /// Kills the program before a step of the first commit after the next `open`.
  virtual void dieAt(int) {}
  /// The last step, and the first from which on it is the new library that is there.
  virtual std::pair<int, int> steps() {
    return {static_cast<int>(CommitStep::prune), static_cast<int>(CommitStep::compare)};
  }
  /// A file that the application takes as a song.
  virtual std::string newSong() {
    return folder_.write("song.wav", make_library::makeAudio("wav", 100, 32, 440).bytes);
  }

 private:
  TemporaryFolder folder_;
};

std::string libraryWithAnUnknownEntry() {
  std::string text = smallLibrary();
  const std::string array = "<array>";
  const std::size_t entries = text.find(array, text.find("<string>Inner<")) + array.size();
  return text.insert(entries, "<dict><key>Track ID</key><integer>99</integer></dict>");
}

template <typename Step>
std::function<void(Step)> dyingAt(int moment) {
  return [=](Step step) {
    if (static_cast<int>(step) == moment) ::raise(SIGKILL);
  };
}

/// In the world of the application's own tests.
template <typename Kind>
class Of : public World {
 public:
  MusicApplication& app() override { return *world_.app; }
  void open() override { world_.open(); }

 protected:
  template <typename... Arguments>
  explicit Of(const Arguments&... arguments) : world_(arguments...) {
    world_.revealer = &revealer_;
  }
  ShowsNothing revealer_;
  Kind world_;
};

class OfDocument final : public Of<DocumentWorld> {
 public:
  OfDocument() : Of(libraryWithAnUnknownEntry()) { world_.open(); }
  std::string storedValues() override { return bytes(); }
  std::string bytes() override { return TemporaryFolder::read(world_.path); }
  void changeFromOutside() override { std::ofstream(world_.path, std::ios::app) << "\n"; }
  void dieAt(int moment) override { world_.options.onStep = dyingAt<CommitStep>(moment); }
};

class OfFolder final : public Of<FolderWorld> {
 public:
  OfFolder() {
    for (const std::string title : {"a", "b", "c", "d"}) world_.song("Music/" + title + ".mp3");
    world_.folder.write("Music/Mix.m3u8", "a.mp3\nb.mp3\na.mp3\nc.mp3\n");
    world_.folder.write("Music/Other/Mix.pls", "[playlist]\nFile1=../d.mp3\nNumberOfEntries=1\n");
    world_.folder.write("Music/Empty.m3u", "");
    world_.folder.write("Music/Folder/Inner.m3u8", "#EXTM3U\n../gone.mp3\n../b.mp3\n");
    world_.open();
  }
  std::string bytes() override { return world_.lists(); }
  void changeFromOutside() override {
    std::ofstream(world_.folder / "Music/Folder/Inner.m3u8", std::ios::app) << "\n";
  }
  void dieAt(int moment) override { world_.options.onStep = dyingAt<CommitStep>(moment); }
};

class OfScripted final : public Of<ScriptedWorld> {
 public:
  OfScripted() : Of(libraryWithAnUnknownEntry()) { world_.open(); }
  MusicApplication& app() override { return *world_.scripted; }
  void changeFromOutside() override { std::ofstream(world_.path, std::ios::app) << "\n"; }
};

/// As far as a server has such playlists.
class OfMpd final : public Of<MpdTestServer> {
 public:
  OfMpd() {
    world_.writeList("Inner", {"songs/b.mp3", "gone/old.mp3"});
    world_.writeList("Mix", {"songs/a.mp3", "songs/b.mp3", "songs/a.mp3", "songs/c.mp3"});
    world_.writeList("Empty", {});
    world_.open();
  }
  void changeFromOutside() override { world_.writeList("Inner", {"songs/d.mp3"}); }
  std::string newSong() override { return world_.addSong("songs/new.mp3", "new"); }
};

class OfRhythmbox : public Of<RhythmboxWorld> {
 public:
  OfRhythmbox() { world_.open(); }
  std::string storedValues() override {
    return TemporaryFolder::read(world_.folder / "data/rhythmbox/rhythmdb.xml");
  }
  std::string bytes() override { return world_.stored(); }
  bool reverts() override { return false; }
  void changeFromOutside() override {
    std::string text = world_.stored();
    std::ofstream(world_.playlists) << text.insert(text.find("Empty"), "x");
  }
  void dieAt(int moment) override { world_.options.onStep = dyingAt<CommitStep>(moment); }
};

class OfRunningRhythmbox final : public OfRhythmbox {
 public:
  OfRunningRhythmbox() { world_.startPlayer(); }
  std::string bytes() override { return world_.player->described(); }
  void changeFromOutside() override {
    auto uris = world_.player->uris("Inner");
    uris.push_back(world_.uri(uris.size() == 2 ? "a" : "c"));
    world_.player->set("Inner", uris);
    // Which the player does some seconds later.
    std::string text = world_.stored();
    std::ofstream(world_.playlists) << text.insert(text.find("</playlist>", text.find("Inner")),
                                                   "<location>" + uris.back() + "</location>");
  }
  void dieAt(int moment) override { world_.player->dieAt(moment); }
  /// One call puts a track in, and the next takes the other out.
  std::pair<int, int> steps() override { return {1, 2}; }
};

class OfStrawberry final : public Of<StrawberryWorld> {
 public:
  OfStrawberry() { world_.open(); }
  std::string storedValues() override {
    return world_.column(
        "SELECT quote(playcount) || quote(lastplayed) || quote(rating) || quote(comment) "
        "FROM songs");
  }
  std::string bytes() override { return TemporaryFolder::read(world_.path); }
  void changeFromOutside() override {
    world_.execute("UPDATE songs SET playcount = playcount + 1 WHERE title = 'a'");
  }
  bool reverts() override { return false; }
  std::pair<int, int> steps() override {
    return {static_cast<int>(StrawberryStep::prune), static_cast<int>(StrawberryStep::prune)};
  }
  void dieAt(int moment) override { world_.options.onStep = dyingAt<StrawberryStep>(moment); }
};

struct Application {
  const char* name;
  std::unique_ptr<World> (*make)();
  friend std::ostream& operator<<(std::ostream& out, const Application& application) {
    return out << application.name;
  }
};
template <typename Kind>
std::unique_ptr<World> make() {
  return std::make_unique<Kind>();
}
/// Nothing where the application is not installed.
std::unique_ptr<World> makeMpd() { return MpdTestServer::isInstalled() ? make<OfMpd>() : nullptr; }
const Application applications[] = {{"Document", make<OfDocument>},
                                    {"Folder", make<OfFolder>},
                                    {"Mpd", makeMpd},
                                    {"Scripted", make<OfScripted>},
                                    {"Rhythmbox", make<OfRhythmbox>},
                                    {"RunningRhythmbox", make<OfRunningRhythmbox>},
                                    {"Strawberry", make<OfStrawberry>}};

class ApplicationContract : public ::testing::TestWithParam<Application> {
 protected:
  void SetUp() override {
    if (!world) GTEST_SKIP() << "not installed here";
  }
  MusicApplication& app() { return world->app(); }
  Capabilities can() { return app().capabilities(); }
  bool isDurableAtOnce() { return world->bytes().empty(); }
  bool reverts() { return world->reverts() && !isDurableAtOnce(); }
  std::string bytes() { return world->bytes(); }
  /// The titles without those that an application would not list again.
  std::string_view held(std::string_view repeating, std::string_view once) {
    return can().keepsRepeats ? repeating : once;
  }

  /// All tracks and playlists with their IDs, but for the playlists of a name.
  Lines everythingBut(std::string_view name) {
    LibraryDocument all;
    all.items = std::const_pointer_cast<MediaItems>(app().library().allMediaItems());
    all.playlists = std::make_shared<std::vector<Playlist>>();
    for (const Playlist& playlist : *app().library().allPlaylists())
      if (playlist.name != name) {
        all.playlists->push_back(playlist);
        // What folders hold follows what the playlists in them do.
        if (playlist.kind == PlaylistKind::folder) all.playlists->back().items.clear();
        all.playlists->back().name +=
            " and " + std::to_string(playlist.unknownItems()) + " unknown";
      }
    return described(all);
  }
  Lines everything() { return everythingBut("no such name"); }

  IDs tracks(std::string_view titles) { return tracksCalled(app().library(), titles); }
  Playlist list(std::string_view name) { return listCalled(app().library(), name); }
  Command setInner(std::string_view titles) {
    return SetEntries{list("Inner").persistentID, tracks(titles)};
  }

  /// A change, in a batch of its own; its reversal.
  std::string commit(const Command& command) {
    Lines reversals;
    const auto batch = app().beginBatch();
    EXPECT_FALSE(app().run(command).failed());
    // The second time there is nothing to commit.
    for (int commits = 0; commits < 2; ++commits)
      batch->commit([&](std::string_view reversal) { reversals.emplace_back(reversal); });
    EXPECT_LE(reversals.size(), 1U);
    EXPECT_GE(reversals.size(), reverts() || can().restoresTracks ? 1U : 0U);
    return reversals.empty() ? "" : reversals[0];
  }
  void expectNow(const Lines& expected) {
    EXPECT_EQ(firstDifference(expected, everything()), "");
    world->open();
    EXPECT_EQ(firstDifference(expected, everything()), "") << "when opened again";
  }

  std::unique_ptr<World> world = GetParam().make();
};

TEST_P(ApplicationContract, HasTheSameIDsWhenOpenedAgain) {
  ASSERT_FALSE(app().run(CreatePlaylist{"New"}).failed());
  std::set<std::uint64_t> ids;
  for (const Playlist& playlist : *app().library().allPlaylists())
    ids.insert(playlist.persistentID);
  EXPECT_EQ(ids.size(), app().library().allPlaylists()->size());
  expectNow(everything());
  EXPECT_EQ(list("New").name, "New");
}

TEST_P(ApplicationContract, ReplacesAndSetsEntries) {
  const Playlist old = list("Inner");
  const Lines others = everythingBut("Inner");
  ASSERT_EQ(old.unknownItems(), 1U);
  const std::string_view wanted = held("aba", "abd");
  const CommandResult set = app().run(setInner(wanted));
  ASSERT_TRUE(set.playlist);
  EXPECT_EQ(list("Inner").items, tracks(wanted));
  const CommandResult replaced =
      app().run(ReplaceEntries{*set.playlist, {{2, tracks("c")[0]}, {3, tracks("d")[0]}}});
  for (int openings = 0; openings < 2; ++openings, world->open()) {
    const Playlist now = list("Inner");
    EXPECT_EQ(now.items, tracks("acd"));
    EXPECT_EQ(now.parentID, old.parentID);
    EXPECT_EQ(now.persistentID, replaced.playlist);
    EXPECT_EQ(now.persistentID == old.persistentID, can().editsInPlace);
    EXPECT_EQ(now.unknownItems(), can().editsInPlace ? 1U : 0U);
    EXPECT_EQ(firstDifference(others, everythingBut("Inner")), "");
  }
}

TEST_P(ApplicationContract, PutsAnEntryOfAnUnknownTrackWhereItIsToBe) {
  if (!can().editsInPlace) GTEST_SKIP() << "it makes lists anew";
  const std::uint64_t inner = list("Inner").persistentID;
  const std::tuple<const char*, const char*, std::uint64_t> steps[] = {
      {"aba", "ab", 1}, {"abcd", "abcd", 4}, {"dcba", "dcba", 0},
      {"aab", "ab", 2}, {"", "", 0},         {"babab", "ba", 2}};
  for (const auto& [repeating, once, at] : steps) {
    const std::string_view titles = held(repeating, once);
    ASSERT_FALSE(app().run(SetEntries{inner, tracks(titles), {at}}).failed()) << titles;
    for (int openings = 0; openings < 2; ++openings, world->open()) {
      EXPECT_EQ(list("Inner").items, tracks(titles));
      EXPECT_EQ(list("Inner").unknownAt, IDs{at}) << titles;
    }
  }
  if (!can().keepsRepeats) return;
  // What is taken out is what the positions say, and not one like it elsewhere.
  ASSERT_FALSE(app().run(SetEntries{inner, tracks("aba"), {2}}).failed());
  ASSERT_FALSE(app().run(DeleteEntries{inner, {3}}).failed());
  EXPECT_EQ(list("Inner").unknownAt, IDs{2});
  ASSERT_FALSE(app().run(SetEntries{inner, tracks("aba"), {2}}).failed());
  ASSERT_FALSE(app().run(DeleteEntries{inner, {1}}).failed());
  EXPECT_EQ(list("Inner").items, tracks("ba"));
  EXPECT_EQ(list("Inner").unknownAt, IDs{1});
}

TEST_P(ApplicationContract, DoesWhatItsCapabilitiesSayAndElseChangesNothing) {
  const std::string song = world->newSong();
  const std::uint64_t inner = list("Inner").persistentID, mix = list("Mix").persistentID;
  const std::uint64_t track = tracks("c")[0], none = 0xFFFF;
  const Capabilities said = can();
  const std::pair<bool, Command> cases[] = {
      {false, ReplaceEntries{inner, {{1, track}, {2, track}}}},
      {false, ReplaceEntries{inner, {{0, track}}}},
      {false, ReplaceEntries{inner, {{1, none}}}},
      {false, SetEntries{inner, {track, none}}},
      {false, SetEntries{none, {track}}},
      {false, RestoreTracks{"no reversal"}},
      {false, said.keepsRepeats ? RestoreTracks{} : setInner("dd")},
      {said.changesPlaylists, setInner(held("dd", "cd"))},
      {said.changesPlaylists, CreatePlaylist{"New"}},
      {said.editsInPlace, ReplaceEntries{mix, {{1, track}}}},  // there is another "Mix"
      {said.deletesTracks, DeleteTracks{{track}}},
      {said.addsFiles, AddFile{song}},
      {said.reveals, RevealPlaylist{mix}}};
  for (const auto& [isSaid, command] : cases) {
    SCOPED_TRACE(command.index());
    const Lines before = everything();
    const std::string bytesBefore = bytes();
    EXPECT_EQ(app().run(command).failed(), !isSaid);
    const bool isChanged = everything() != before;
    EXPECT_EQ(isChanged, isSaid && changesLibrary(command));
    EXPECT_EQ(bytes() != bytesBefore, isChanged && !isDurableAtOnce());
    expectNow(everything());
  }
}

TEST_P(ApplicationContract, ABatchIsForgottenUnlessCommittedAndRefusedWhenChangedMeanwhile) {
  const std::string bytesBefore = bytes(), versionBefore = app().library().identity().version;
  {
    const auto uncommitted = app().beginBatch();
    EXPECT_FALSE(app().run(setInner("d")).failed());
    if (!isDurableAtOnce()) {
      EXPECT_THROW(app().beginBatch(), LibraryError) << "one at a time";
    }
    EXPECT_EQ(bytes(), bytesBefore);
  }
  EXPECT_EQ(list("Inner").items, tracks(isDurableAtOnce() ? "d" : "b"));
  expectNow(everything());
  if (isDurableAtOnce()) return;
  world->changeFromOutside();
  EXPECT_THROW(app().beginBatch(), LibraryError);
  const std::string others = bytes();
  EXPECT_TRUE(app().run(setInner("d")).failed());
  EXPECT_EQ(bytes(), others);
  app().library().reload();
  EXPECT_NE(app().library().identity().version, versionBefore);
  const auto batch = app().beginBatch();
  EXPECT_FALSE(app().run(setInner("d")).failed());
  world->changeFromOutside();
  const std::string changedAgain = bytes();
  EXPECT_NE(changedAgain, others);
  EXPECT_THROW(batch->commit(), LibraryError);
  EXPECT_EQ(bytes(), changedAgain);
}

TEST_P(ApplicationContract, TellsWhetherAnotherProgramHasChangedIt) {
  EXPECT_FALSE(app().library().hasChanged());
  commit(setInner("d"));
  EXPECT_FALSE(app().library().hasChanged()) << "by itself";
  const Lines before = everything();
  world->changeFromOutside();
  EXPECT_TRUE(app().library().hasChanged());
  EXPECT_TRUE(app().library().hasChanged()) << "until it is read";
  EXPECT_EQ(everything(), before);
  app().library().reload();
  EXPECT_FALSE(app().library().hasChanged());
}

TEST_P(ApplicationContract, KilledInTheMiddleItLeavesTheOldLibraryOrTheNew) {
  const auto [last, firstNew] = isDurableAtOnce() ? std::pair(-1, 0) : world->steps();
  for (int step = -1; step <= last; ++step) {  // -1: before the commit
    SCOPED_TRACE(step);
    world = GetParam().make();
    const Lines before = everything(), others = everythingBut("Inner");
    const int status = inChild([&] {
      if (step >= 0) world->dieAt(step);
      world->open();
      const auto batch = app().beginBatch();
      app().run(ReplaceEntries{list("Inner").persistentID, {{1, tracks("d")[0]}}});
      if (step < 0) ::raise(SIGKILL);
      batch->commit();
    });
    ASSERT_TRUE(WIFSIGNALED(status));
    world->open();
    const bool isNew = isDurableAtOnce() || step >= firstNew;
    EXPECT_EQ(list("Inner").items, tracks(isNew ? "d" : "b"));
    EXPECT_EQ(firstDifference(others, everythingBut("Inner")), "");
    EXPECT_EQ(everything() == before, !isNew);
    EXPECT_FALSE(app().run(CreatePlaylist{"New"}).failed());
  }
}

TEST_P(ApplicationContract, UndoGivesTheListBack) {
  const IDs old = list("Inner").items;
  const Lines before = everything();
  const std::string bytesBefore = bytes(), reversal = commit(setInner(held("dad", "da")));
  const auto revert = [&] {
    const auto batch = app().beginBatch();
    const bool reverted = batch->revert(reversal);
    batch->commit();
    return reverted;
  };
  EXPECT_EQ(revert(), reverts());
  if (reverts()) {
    EXPECT_EQ(bytes(), bytesBefore);
    expectNow(before);
  }

  commit(setInner(held("dcd", "dc")));
  commit(setInner(held("dbd", "db")));  // as long
  const Lines changed = everything();
  EXPECT_FALSE(revert());
  expectNow(changed);
  EXPECT_FALSE(app().run(SetEntries{list("Inner").persistentID, old}).failed());
  EXPECT_EQ(list("Inner").items, old);
  if (can().editsInPlace) expectNow(before);
}

TEST_P(ApplicationContract, GivesTracksTheValuesThatItSaysAndTakesThemBackAsTheyWere) {
  const TrackValueSet takes = can().takesValues;
  const IDs ids = tracks("ab");
  TrackValues first, second;
  first.plays = 3;
  first.rating = 60;
  first.lastPlayed = OptionalDate{1'400'000'000};
  first.added = OptionalDate{1'300'000'000};
  first.comments = "once";
  second.plays = 12;
  second.rating = 80;
  second.lastPlayed = OptionalDate{1'500'000'000};
  second.added = OptionalDate{1'000'000'000};
  second.comments = "<a> & \"b\"\nc \xC3\xA9";
  const auto give = [&](TrackValueSet which, const TrackValues& values) {
    return app().run(SetValues{which, {{ids[0], values}}});
  };
  EXPECT_EQ(can().whyNoOthers.empty(), takes == TrackValueSet::all());
  const std::string untouched = world->storedValues();
  for (const TrackValue value : TrackValueSet::all().without(takes).list())
    EXPECT_TRUE(give({value}, first).failed()) << nameOf(trackValueNames, value);
  EXPECT_TRUE(app().run(SetValues{TrackValueSet::all(), {{0xFFFF, first}}}).failed());
  EXPECT_EQ(world->storedValues(), untouched);
  if (takes.empty()) return;

  const auto expectNow = [&](const TrackValues& expected) {
    for (int openings = 0; openings < 2; ++openings) {
      const auto now = app().valuesOf(ids);
      ASSERT_TRUE(now[0] && now[1]);
      EXPECT_EQ(gainOf(takes, expected, *now[0]).english(), "");
      EXPECT_EQ(gainOf(takes, {}, *now[1]).english(), "") << "another track";
      if (openings == 0) world->open();
    }
  };
  // What each step finds before it, as the application itself has it.
  std::vector<TrackValues> before;
  for (const TrackValues& values : {first, second}) {
    {
      const auto batch = app().beginBatch();
      before.push_back(*app().valuesOf(ids)[0]);
      EXPECT_FALSE(give(takes, values).failed());
      EXPECT_TRUE(isSame(takes, *app().valuesOf(ids)[0], values)) << "at once";
      batch->commit();
    }
    expectNow(values);
  }
  for (; !before.empty(); before.pop_back()) {
    const CommandResult result = give(takes, before.back());
    EXPECT_FALSE(result.failed()) << result.failure->whole().english();
    expectNow(before.back());
  }
  EXPECT_EQ(world->storedValues(), untouched);
}

TEST_P(ApplicationContract, BringsDeletedTracksBackIfItSaysSo) {
  if (!can().deletesTracks) GTEST_SKIP() << "it deletes none";
  const Lines before = everything();
  const std::string reversal = commit(DeleteTracks{tracks("ab")});
  ASSERT_FALSE(app().run(CreatePlaylist{"New"}).failed());
  EXPECT_EQ(tracks("abcd").size(), 2U);
  const Lines deleted = everythingBut("New");
  EXPECT_EQ(app().run(RestoreTracks{reversal}).failed(), !can().restoresTracks);
  EXPECT_EQ(firstDifference(can().restoresTracks ? before : deleted, everythingBut("New")), "");
  expectNow(everything());
}

INSTANTIATE_TEST_SUITE_P(Every, ApplicationContract, ::testing::ValuesIn(applications),
                         [](const auto& test) { return test.param.name; });

}  // namespace
}  // namespace kestrel::testing
