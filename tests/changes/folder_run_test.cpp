// Runs over a folder of audio files: recorded, found again after the folder was moved, taken back.
#include <filesystem>
#include <gtest/gtest.h>

#include "changes/library_changes.h"
#include "foundation/library_error.h"
#include "musicapp/folder/folder_library.h"
#include "platform/clock.h"
#include "platform/files.h"
#include "platform/log.h"
#include "platform/random.h"
#include "tests/platform/temporary_folder.h"
#include "tools/make_library/audio_files.h"

namespace kestrel::testing {
namespace {

class FolderRun : public ::testing::Test {
 protected:
  FolderRun() {
    ::setenv("XDG_DATA_HOME", (folder / "support").c_str(), 1);
    ::setenv("XDG_CACHE_HOME", (folder / "cache").c_str(), 1);
    for (const std::string name : {"Music/a.wav", "Music/A/b.wav"})
      folder.write(name, make_library::makeAudio("wav", 100, 32, 440).bytes);
    folder.write("Music/A/list.m3u", before);
  }
  /// Opens the folder and does something with what changes it.
  template <typename Do>
  auto with(const std::string& name, Do&& act) {
    FolderLibrary library(folder / name, {files, log, random, clock});
    LibraryChanges changes(library, files, clock);
    return act(library, changes);
  }
  std::string list(const std::string& name) const {
    return TemporaryFolder::read(folder / (name + "/A/list.m3u"));
  }
  /// Adds the first track to the list; the number of the run.
  std::int64_t add() {
    return with("Music", [&](FolderLibrary& library, LibraryChanges& changes) {
      const Playlist& own = library.allPlaylists()->back();
      const auto report = changes.apply(
          changes.additionPlan(own.persistentID, {library.allPlaylists()->front().items[1]}));
      EXPECT_EQ(report.state, RunState::finished) << report.problem.english();
      return report.run.value_or(0);
    });
  }

  const std::string before = "# mine\r\nb.wav\r\ngone.wav\r\n", after = before + "../a.wav\r\n";
  TemporaryFolder folder;
  SystemFiles files;
  MemoryLog log;
  SeededRandom random{1};
  SystemClock clock;
};

TEST_F(FolderRun, IsTakenBackToTheByteEvenAfterAMove) {
  const std::int64_t run = add();
  EXPECT_EQ(list("Music"), after);
  std::filesystem::rename(folder / "Music", folder / "Moved");
  with("Moved", [&](FolderLibrary&, LibraryChanges& changes) {
    EXPECT_EQ(changes.runs().size(), 1U);
    EXPECT_TRUE(changes.undo(run).isComplete);
  });
  EXPECT_EQ(list("Moved"), before);
}

TEST_F(FolderRun, IsTakenBackEntryByEntryWhenTheFileHasOtherBytes) {
  const std::int64_t run = add();
  folder.write("Music/A/list.m3u", "# yours\n" + after);
  with("Music",
       [&](FolderLibrary&, LibraryChanges& changes) { EXPECT_TRUE(changes.undo(run).isComplete); });
  EXPECT_EQ(list("Music"), "# yours\n" + before);
}

TEST_F(FolderRun, MakesAListAnewThatIsGone) {
  const std::int64_t run = add();
  folder.write("Music/A/other.m3u", "b.wav\n");
  std::filesystem::remove(folder / "Music/A/list.m3u");
  with("Music", [&](FolderLibrary& library, LibraryChanges& changes) {
    EXPECT_TRUE(changes.undo(run).isComplete);
    EXPECT_EQ(library.allPlaylists()->at(2).name, "list");
    EXPECT_EQ(library.allPlaylists()->at(2).items.size(), 1U);
  });
  EXPECT_EQ(TemporaryFolder::read(folder / "Music/A/list.m3u8"),
            "#EXTM3U\n#EXTINF:1,b.wav\nb.wav\n");
}

TEST_F(FolderRun, IsNotAppliedToAFolderThatIsAnotherByNow) {
  with("Music", [&](FolderLibrary& library, LibraryChanges& changes) {
    const Plan plan = changes.additionPlan(library.allPlaylists()->back().persistentID,
                                           {library.allPlaylists()->front().items[1]});
    folder.write("Music/A/list.m3u", "b.wav\n");
    EXPECT_THROW(changes.apply(plan), LibraryError);
    library.reload();
    EXPECT_THROW(changes.apply(plan), LibraryError);
  });
  EXPECT_EQ(list("Music"), "b.wav\n");
}

}  // namespace
}  // namespace kestrel::testing
