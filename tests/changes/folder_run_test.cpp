// Runs over a folder of audio files are taken back, whatever became of the folder.
#include <filesystem>
#include <functional>

#include "changes/library_changes.h"
#include "changes/report.h"
#include "tests/musicapp/folder/folder_world.h"
#include "tools/make_library/audio_files.h"

namespace kestrel::testing {
namespace {

/// In which a run has added the first track to the list.
struct FolderRun : FolderWorld {
  FolderRun() {
    for (const std::string name : {"Music/a.wav", "Music/A/b.wav"})
      folder.write(name, make_library::makeAudio("wav", 100, 32, 440).bytes);
    folder.write("Music/A/list.m3u", before);
    open();
    LibraryChanges changes(*app, files, clock);
    const ApplyReport report =
        changes.apply(changes.additionPlan(id("list"), {app->allPlaylists()->front().items[1]}));
    EXPECT_EQ(report.state, RunState::finished) << report.problem.english();
    EXPECT_EQ(TemporaryFolder::read(folder / "Music/A/list.m3u"), after);
    run = report.run.value_or(0);
  }
  /// For b.wav to go, and a.wav to stay in its place.
  Plan trash() {
    Plan plan;
    plan.kind = RunKind::trash;
    plan.library = app->identity();
    const auto items = app->allPlaylists()->front().items;
    PlannedFile& file = plan.files.emplace_back();
    file.track = items[0];
    file.path = folder / "Music/A/b.wav";
    file.keeper = items[1];
    file.keeperPath = folder / "Music/a.wav";
    const auto status = files.status(file.path);
    file.device = status->device;
    file.inode = status->inode;
    file.size = status->size;
    return plan;
  }

  const std::string before = "# mine\r\nb.wav\r\ngone.wav\r\n", after = before + "../a.wav\r\n";
  std::int64_t run = 0;
};

TEST(FolderRuns, AreTakenBackEvenAfterAMoveOrEntryByEntryOrInAListMadeAnew) {
  namespace fs = std::filesystem;
  const struct {
    std::function<void(FolderRun&)> change;
    std::string list, is;
  } cases[] = {
      {[](FolderRun& world) {
         fs::rename(world.folder / "Music", world.folder / "Moved");
         world.address = world.folder / "Moved";
       },
       "Moved/A/list.m3u", "# mine\r\nb.wav\r\ngone.wav\r\n"},
      {[](FolderRun& world) { world.folder.write("Music/A/list.m3u", "# yours\n" + world.after); },
       "Music/A/list.m3u", "# yours\n# mine\r\nb.wav\r\ngone.wav\r\n"},
      {[](FolderRun& world) { fs::remove(world.folder / "Music/A/list.m3u"); }, "Music/A/list.m3u8",
       "#EXTM3U\n#EXTINF:1,b.wav\nb.wav\n"}};
  for (const auto& [change, list, is] : cases) {
    SCOPED_TRACE(is);
    FolderRun world;
    world.folder.write("Music/A/other.m3u", "b.wav\n");
    change(world);
    world.open();
    LibraryChanges changes(*world.app, world.files, world.clock);
    EXPECT_EQ(changes.runs().size(), 1U);
    EXPECT_TRUE(changes.undo(world.run).isComplete);
    EXPECT_EQ(TemporaryFolder::read(world.folder / list), is);
  }
}

TEST(FolderRuns, MakeNoListAnewThatAnotherAddressHas) {
  FolderRun world;
  const std::string list = world.folder.write("Lists/more.m3u", world.folder / "Music/A/b.wav\n");
  const std::string plain = world.address;
  world.address = "folder://" + world.folder / "Music?playlists=" + world.folder / "Lists";
  const auto changes = [&] {
    world.open();
    return std::make_unique<LibraryChanges>(*world.app, world.files, world.clock);
  };
  auto at = changes();
  std::uint64_t more = 0, track = world.app->allPlaylists()->front().items[0];
  for (const Playlist& one : *world.app->allPlaylists())
    if (one.name == "more") more = one.persistentID;
  const std::int64_t run = at->apply(at->additionPlan(more, {track})).run.value();
  const std::string added = TemporaryFolder::read(list);
  // A line of its own keeps the file from being what the run made of it.
  world.folder.write("Lists/more.m3u", "# yours\n" + added);
  world.address = plain;
  at = changes();
  EXPECT_EQ(at->runs().size(), 2U) << "one history";
  EXPECT_THROW(at->undo(run), DifferentError);
  EXPECT_FALSE(world.files.exists(world.folder / "Music/more.m3u8"));
  world.address = "folder://" + world.folder / "Music?playlists=" + world.folder / "Lists";
  at = changes();
  EXPECT_TRUE(at->undo(run).isComplete);
  EXPECT_NE(TemporaryFolder::read(list), "# yours\n" + added);
}

TEST(FolderRuns, LeaveFilesAloneWhoseTagsWereEditedSinceTheyWereCompared) {
  for (const char* edited : {"", "Music/a.wav", "Music/A/b.wav"}) {
    SCOPED_TRACE(edited);
    FolderRun world;
    world.open();
    const Plan plan = world.trash();
    if (*edited) {
      const std::string path = world.folder / edited;
      std::filesystem::last_write_time(
          path, std::filesystem::last_write_time(path) + std::chrono::seconds(2));
    }
    const ApplyReport report = LibraryChanges(*world.app, world.files, world.clock).apply(plan);
    EXPECT_EQ(report.count(Outcome::Kind::done), *edited ? 0U : 1U)
        << report.outcomes.at(0).reason.english();
    EXPECT_EQ(world.files.exists(world.folder / "Music/A/b.wav"), *edited != 0);
  }
}

TEST(FolderRuns, RepairPlaylistsAndMoveFilesAsOne) {
  for (const bool isRepaired : {true, false}) {
    FolderRun world;
    world.folder.write("Music/A/other.m3u", "b.wav\n");
    world.open();
    Plan plan = world.trash();
    const auto& file = plan.files.front();
    const std::vector<ReplaylistChoice> choices{
        {world.id("other"), true, {{file.track, *file.keeper}}}};
    plan.playlists = planReplaylist(*world.app->allPlaylists(), choices, {}).playlists;
    ASSERT_EQ(plan.playlists.size(), 1U);
    // As if the list had been changed since.
    if (!isRepaired) ++plan.playlists.front().entries;
    LibraryChanges changes(*world.app, world.files, world.clock);
    const ApplyReport report = changes.apply(plan);
    EXPECT_EQ(world.files.exists(world.folder / "Music/A/b.wav"), !isRepaired);
    const auto list = [&] { return TemporaryFolder::read(world.folder / "Music/A/other.m3u"); };
    if (!isRepaired) {
      EXPECT_EQ(report.outcomes.at(1).reason.english(), "the playlist \"other\" still lists it");
      EXPECT_EQ(list(), "b.wav\n");
      EXPECT_EQ(changes.runs().size(), 1U);
      continue;
    }
    EXPECT_EQ(list(), "../a.wav\n");
    EXPECT_NE(report.lines().at(0).find("1 file. Replaced 1 entry in 1 playlist."),
              std::string::npos)
        << report.lines().at(0);
    const auto runs = changes.runs();
    ASSERT_EQ(runs.size(), 2U);
    EXPECT_EQ(runs[0].playlists + runs[0].files, 2U);
    EXPECT_TRUE(changes.undo(runs[0].id).isComplete);
    EXPECT_EQ(list(), "b.wav\n");
    EXPECT_TRUE(world.files.exists(world.folder / "Music/A/b.wav"));
  }
}

TEST(FolderRuns, NameListsThatCannotBeReadBeforeFilesGo) {
  FolderRun world;
  const std::string list = world.folder.write("Music/bad.xspf", "<playlist>");
  world.open();
  const Plan plan = LibraryChanges(*world.app, world.files, world.clock).trashPlan({}, true, {});
  ASSERT_EQ(plan.leftOut.size(), 1U);
  EXPECT_EQ(
      sentence(warningsOf(plan).at(0)).english(),
      "Left out, because it cannot be read, so that what it lists is not known: \"" + list + "\".");
}

}  // namespace
}  // namespace kestrel::testing
