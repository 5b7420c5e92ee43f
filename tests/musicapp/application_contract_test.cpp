// What every music application keeps to. Another one is a world of its own and a line in the table.
#include <csignal>
#include <fstream>
#include <gtest/gtest.h>
#include <set>

#include "foundation/library_error.h"
#include "musicapp/revealer.h"
#include "tests/musicapp/audio/sample_audio.h"
#include "tests/musicapp/folder/folder_world.h"
#include "tests/musicapp/scripted/scripted_world.h"
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
  /// As another program would, so that what was read is not what is there.
  virtual void changeFromOutside() {}
  /// Kills the program before a step of the first commit after the next `open`.
  virtual void dieAt(CommitStep) {}
};

std::string libraryWithAnUnknownEntry() {
  std::string text = smallLibrary();
  const std::string array = "<array>";
  const std::size_t entries = text.find(array, text.find("<string>Inner<")) + array.size();
  return text.insert(entries, "<dict><key>Track ID</key><integer>99</integer></dict>");
}

std::function<void(CommitStep)> dyingAt(CommitStep moment) {
  return [=](CommitStep step) {
    if (step == moment) ::raise(SIGKILL);
  };
}

struct ShowsNothing : Revealer {
  void revealFile(const std::string&) override {}
  void revealPlaylist(std::uint64_t) override {}
};

class OfDocument final : public World {
 public:
  MusicApplication& app() override { return *world_.app; }
  void open() override { world_.open(); }
  std::string bytes() override { return TemporaryFolder::read(world_.path); }
  void changeFromOutside() override { std::ofstream(world_.path, std::ios::app) << "\n"; }
  void dieAt(CommitStep moment) override { world_.options.onStep = dyingAt(moment); }

 private:
  DocumentWorld world_{libraryWithAnUnknownEntry()};
};

class OfFolder final : public World {
 public:
  OfFolder() {
    for (const std::string title : {"a", "b", "c", "d"})
      tag(world_.folder.write("Music/" + title + ".mp3", sampleAudio("mp3")), {{"TITLE", title}});
    world_.folder.write("Music/Mix.m3u8", "a.mp3\nb.mp3\na.mp3\nc.mp3\n");
    world_.folder.write("Music/Mix.pls", "[playlist]\nFile1=d.mp3\nNumberOfEntries=1\n");
    world_.folder.write("Music/Empty.m3u", "");
    world_.folder.write("Music/Folder/Inner.m3u8", "#EXTM3U\n../gone.mp3\n../b.mp3\n");
    world_.revealer = &revealer_;
    world_.open();
  }
  MusicApplication& app() override { return *world_.app; }
  void open() override { world_.open(); }
  std::string bytes() override { return world_.lists(); }
  void changeFromOutside() override {
    std::ofstream(world_.folder / "Music/Folder/Inner.m3u8", std::ios::app) << "\n";
  }
  void dieAt(CommitStep moment) override { world_.options.onStep = dyingAt(moment); }

 private:
  ShowsNothing revealer_;
  FolderWorld world_;
};

class OfScripted final : public World {
 public:
  MusicApplication& app() override { return *world_.scripted; }
  void open() override { world_.open(); }

 private:
  ShowsNothing revealer_;
  ScriptedWorld world_{libraryWithAnUnknownEntry(), &revealer_};
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
const Application applications[] = {
    {"Document", make<OfDocument>}, {"Folder", make<OfFolder>}, {"Scripted", make<OfScripted>}};

class ApplicationContract : public ::testing::TestWithParam<Application> {
 protected:
  MusicApplication& app() { return world->app(); }
  Capabilities can() { return app().capabilities(); }
  bool isDurableAtOnce() { return world->bytes().empty(); }
  std::string bytes() { return world->bytes(); }

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
        all.playlists->back().name += " and " + std::to_string(playlist.unknownItems) + " unknown";
      }
    return described(all);
  }
  Lines everything() { return everythingBut("no such name"); }

  IDs tracks(std::string_view titles) {
    IDs ids;
    for (const char title : titles)
      app().library().allMediaItems()->forEach([&](const MediaItem& item) {
        if (item.title.view() == std::string_view(&title, 1)) ids.push_back(item.persistentID);
      });
    return ids;
  }
  /// The first of that name.
  Playlist list(std::string_view name) {
    for (const Playlist& playlist : *app().library().allPlaylists())
      if (playlist.name == name) return playlist;
    ADD_FAILURE() << "no playlist " << name;
    return {};
  }
  Command setInner(std::string_view titles) {
    return SetEntries{list("Inner").persistentID, tracks(titles)};
  }

  /// In a batch of its own; its reversal.
  std::string commit(const Command& command) {
    Lines reversals;
    const auto batch = app().beginBatch();
    EXPECT_FALSE(app().run(command).failed());
    batch->commit([&](std::string_view reversal) { reversals.emplace_back(reversal); });
    EXPECT_EQ(reversals.size(), isDurableAtOnce() ? 0U : 1U);
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
}

TEST_P(ApplicationContract, ReplacesAndSetsEntries) {
  const Playlist old = list("Inner");
  const Lines others = everythingBut("Inner");
  ASSERT_EQ(old.unknownItems, 1U);
  const CommandResult set = app().run(setInner("aba"));
  ASSERT_TRUE(set.playlist);
  EXPECT_EQ(list("Inner").items, tracks("aba")) << "repeats";
  const CommandResult replaced =
      app().run(ReplaceEntries{*set.playlist, {{2, tracks("c")[0]}, {3, tracks("d")[0]}}});
  for (int openings = 0; openings < 2; ++openings, world->open()) {
    const Playlist now = list("Inner");
    EXPECT_EQ(now.items, tracks("acd"));
    EXPECT_EQ(now.parentID, old.parentID);
    EXPECT_EQ(now.persistentID, replaced.playlist);
    EXPECT_EQ(now.persistentID == old.persistentID, can().editsInPlace);
    EXPECT_EQ(now.unknownItems, can().editsInPlace ? 1U : 0U);
    EXPECT_EQ(firstDifference(others, everythingBut("Inner")), "");
  }
}

TEST_P(ApplicationContract, DoesWhatItsCapabilitiesSayAndElseChangesNothing) {
  const TemporaryFolder folder;
  const std::string song =
      folder.write("song.wav", make_library::makeAudio("wav", 100, 32, 440).bytes);
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
      {said.changesPlaylists, setInner("dd")},
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
  {
    const auto uncommitted = app().beginBatch();
    EXPECT_FALSE(app().run(setInner("dd")).failed());
  }
  EXPECT_EQ(list("Inner").items, tracks(isDurableAtOnce() ? "dd" : "b"));
  expectNow(everything());
  if (isDurableAtOnce()) return;
  const std::string untouched = bytes();
  world->changeFromOutside();
  EXPECT_NE(bytes(), untouched);
  EXPECT_THROW(app().beginBatch(), LibraryError);
  const std::string others = bytes();
  EXPECT_TRUE(app().run(setInner("dd")).failed());
  EXPECT_EQ(bytes(), others);
  app().library().reload();
  const auto batch = app().beginBatch();
  EXPECT_FALSE(app().run(setInner("dd")).failed());
  world->changeFromOutside();
  const std::string changedAgain = bytes();
  EXPECT_THROW(batch->commit(), LibraryError);
  EXPECT_EQ(bytes(), changedAgain);
}

TEST_P(ApplicationContract, KilledInTheMiddleItLeavesTheOldLibraryOrTheNew) {
  const int last = isDurableAtOnce() ? -1 : static_cast<int>(CommitStep::prune);
  for (int step = -1; step <= last; ++step) {  // -1: before the commit
    SCOPED_TRACE(step);
    world = GetParam().make();
    const Lines before = everything(), others = everythingBut("Inner");
    const int status = inChild([&] {
      if (step >= 0) world->dieAt(static_cast<CommitStep>(step));
      world->open();
      const auto batch = app().beginBatch();
      app().run(ReplaceEntries{list("Inner").persistentID, {{1, tracks("d")[0]}}});
      if (step < 0) ::raise(SIGKILL);
      batch->commit();
    });
    ASSERT_TRUE(WIFSIGNALED(status));
    world->open();
    const bool isNew = isDurableAtOnce() || step >= static_cast<int>(CommitStep::compare);
    EXPECT_EQ(list("Inner").items, tracks(isNew ? "d" : "b"));
    EXPECT_EQ(firstDifference(others, everythingBut("Inner")), "");
    EXPECT_EQ(everything() == before, !isNew);
    EXPECT_FALSE(app().run(CreatePlaylist{"New"}).failed());
  }
}

TEST_P(ApplicationContract, UndoGivesTheListBack) {
  const IDs old = list("Inner").items;
  const Lines before = everything();
  const std::string bytesBefore = bytes(), reversal = commit(setInner("dad"));
  const auto revert = [&] {
    const auto batch = app().beginBatch();
    const bool reverted = batch->revert(reversal);
    batch->commit();
    return reverted;
  };
  EXPECT_EQ(revert(), !isDurableAtOnce());
  EXPECT_EQ(bytes(), bytesBefore);
  if (!isDurableAtOnce()) expectNow(before);

  commit(setInner("dad"));
  commit(setInner("dbd"));  // as long
  const Lines changed = everything();
  EXPECT_FALSE(revert());
  expectNow(changed);
  EXPECT_FALSE(app().run(SetEntries{list("Inner").persistentID, old}).failed());
  EXPECT_EQ(list("Inner").items, old);
  if (can().editsInPlace) expectNow(before);
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
