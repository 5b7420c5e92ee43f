#include "platform/trash.h"

#include <gtest/gtest.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/clock.h"
#include "platform/file_error.h"
#include "temporary_folder.h"

namespace kestrel {
namespace {

namespace fs = std::filesystem;

class FreedesktopTrashTest : public testing::Test {
 protected:
  FreedesktopTrashTest() {
    ::setenv("TZ", "UTC-2", 1);
    ::tzset();
  }
  ~FreedesktopTrashTest() override {
    ::unsetenv("TZ");
    ::tzset();
  }
  TrashedItem recycled(const std::string& path) {
    const auto results = trash.recycle(std::vector{path});
    EXPECT_TRUE(results.at(0).item) << results.at(0).problem.english();
    return results[0].item.value_or(TrashedItem{});
  }

  TemporaryFolder folder;
  ManualClock clock{Moment(std::chrono::seconds(1'000'000'000))};
  FreedesktopTrash trash{clock, folder / "home/data"};
};

TEST_F(FreedesktopTrashTest, WritesTheNoteThatFileManagersRead) {
  const std::string path = folder.write("music/50% käse\n[1].mp3", "sound");
  const TrashedItem item = recycled(path);
  EXPECT_FALSE(fs::exists(path));
  EXPECT_EQ(item.trashedPath, folder / "home/data/Trash/files/50% käse\n[1].mp3");
  EXPECT_EQ(TemporaryFolder::read(item.trashedPath), "sound");
  EXPECT_EQ(TemporaryFolder::read(folder / "home/data/Trash/info/50% käse\n[1].mp3.trashinfo"),
            "[Trash Info]\nPath=" + (folder / "music/50%25%20k%C3%A4se%0A%5B1%5D.mp3") +
                "\nDeletionDate=2001-09-09T03:46:40\n");
  EXPECT_EQ(fs::status(folder / "home/data/Trash").permissions(), fs::perms(0700));
}

TEST_F(FreedesktopTrashTest, BringsBackWhatItTook) {
  const std::string path = folder.write("music/Album/song.mp3", "sound");
  const TrashedItem item = recycled(folder / "music/Album/");
  EXPECT_FALSE(fs::exists(folder / "music/Album"));
  fs::remove(folder / "music");
  trash.restore(item);
  EXPECT_EQ(TemporaryFolder::read(path), "sound");
  EXPECT_FALSE(fs::exists(item.infoPath));
}

TEST_F(FreedesktopTrashTest, OverwritesNothingInEitherDirection) {
  std::vector<TrashedItem> items;
  // Another program's, with a note and without, and a name too long to take a number or a note.
  folder.write("home/data/Trash/files/song.mp3", "theirs");
  folder.write("home/data/Trash/info/song 2.mp3.trashinfo", "theirs");
  const std::string longName = std::string(122, 'x') + "ä" + std::string(122, 'x') + ".mp3";
  for (const std::string& name : {std::string("song.mp3"), longName})
    for (int i = 0; i < 3; ++i)
      items.push_back(recycled(folder.write("music/" + name, std::to_string(i))));
  EXPECT_EQ(items[0].trashedPath, folder / "home/data/Trash/files/song 3.mp3");
  EXPECT_EQ(TemporaryFolder::read(folder / "home/data/Trash/files/song.mp3"), "theirs");
  EXPECT_EQ(TemporaryFolder::read(folder / "home/data/Trash/info/song 2.mp3.trashinfo"), "theirs");
  for (std::size_t i = 0; i < items.size(); ++i) {
    EXPECT_EQ(TemporaryFolder::read(items[i].trashedPath), std::to_string(i % 3));
    EXPECT_TRUE(items[i].trashedPath.ends_with(".mp3"));
  }
  trash.restore(items[1]);
  EXPECT_THROW(trash.restore(items[0]), FileError);
  EXPECT_EQ(TemporaryFolder::read(folder / "music/song.mp3"), "1");
  EXPECT_TRUE(fs::exists(items[0].trashedPath) && fs::exists(items[0].infoPath));
}

TEST_F(FreedesktopTrashTest, ReportsEachPathOnItsOwn) {
  const std::string path = folder.write("music/song.mp3", "sound");
  fs::create_symlink("song.mp3", folder / "music/link.mp3");
  fs::create_directory(folder / "home");
  const auto results = trash.recycle(
      std::vector<std::string>{folder / "music/none.mp3", "song.mp3", folder / "home",
                               folder / "music/link.mp3", path + std::string("\0x", 2)});
  ASSERT_EQ(results.size(), 5U);
  EXPECT_FALSE(results[0].item || results[1].item || results[2].item || results[4].item);
  EXPECT_EQ(results[0].problem.english(),
            (folder / "music/none.mp3") +
                ": cannot be moved to the trash: No such file or directory. "
                "Check the path.");
  EXPECT_NE(results[1].problem.english().find("full path"), std::string::npos);
  EXPECT_NE(results[2].problem.english().find("holds the trash"), std::string::npos);
  // A link goes by itself; what it leads to stays.
  ASSERT_TRUE(results[3].item);
  EXPECT_TRUE(fs::is_symlink(results[3].item->trashedPath));
  EXPECT_TRUE(fs::exists(path));
  EXPECT_FALSE(fs::is_empty(folder / "home/data/Trash/info"));
}

TEST_F(FreedesktopTrashTest, AFileOnAnotherVolumeStaysThere) {
  struct stat here {};
  struct stat there {};
  struct stat above {};
  ::stat(folder.path().c_str(), &here);
  // In some containers /dev/shm is a folder of another volume and not the top of one.
  if (::stat("/dev/shm", &there) != 0 || ::stat("/dev", &above) != 0 ||
      here.st_dev == there.st_dev || above.st_dev == there.st_dev ||
      ::access("/dev/shm", W_OK) != 0)
    GTEST_SKIP() << "needs a second volume";
  const std::string own = "/dev/shm/kestrel-trash-test-" + std::to_string(::getpid());
  std::ofstream(own) << "sound";
  const TrashedItem item = recycled(own);
  EXPECT_EQ(item.trashedPath.substr(0, 16), "/dev/shm/.Trash-");
  EXPECT_NE(TemporaryFolder::read(item.infoPath).find("\nPath=kestrel-trash-test-"),
            std::string::npos);
  trash.restore(item);
  EXPECT_EQ(TemporaryFolder::read(own), "sound");
  fs::remove(own);
  std::error_code ignored;
  for (const char* part : {"/files", "/info", ""})
    fs::remove("/dev/shm/.Trash-" + std::to_string(::getuid()) + part, ignored);
}

TEST_F(FreedesktopTrashTest, APlaceIsKnownBeforeTheMoveAndCanBeGivenUp) {
  const std::string path = folder.write("music/song.mp3", "sound");
  fs::create_directory_symlink("music", folder / "link");
  const auto notes = [&] {
    return std::distance(fs::directory_iterator(folder / "home/data/Trash/info"), {});
  };
  const TrashedItem item = trash.reserve(folder / "link/song.mp3");
  EXPECT_TRUE(fs::exists(path) && fs::exists(item.infoPath));
  EXPECT_NE(trash.reserve(path).trashedPath, item.trashedPath);
  EXPECT_TRUE(trash.release({path, item.trashedPath, item.infoPath}));
  EXPECT_EQ(notes(), 1);
  // Of a place that was not written down in time, the note is found by its path.
  const TrashedItem taken = recycled(folder.write("music/other.mp3", "sound"));
  folder.write("home/data/Trash/info/song 9.mp3.trashinfo", "");
  EXPECT_TRUE(trash.release({folder / "link/song.mp3", {}, {}}));
  EXPECT_TRUE(trash.release(taken)) << "there is something in that place";
  EXPECT_EQ(notes(), 1);
  EXPECT_TRUE(fs::exists(taken.infoPath));
  EXPECT_FALSE(trash.release({"/none/song.mp3", {}, {}}));
}

/// In a process of its own, which can mount folders elsewhere unseen by others.
/// Returns what is wrong, or nothing.
std::string trashFromFolderMountedElsewhere(const std::string& folder, Trash& trash) {
  if (::unshare(CLONE_NEWUSER | CLONE_NEWNS) != 0 ||
      ::mount((folder + "/music").c_str(), (folder + "/seen").c_str(), nullptr, MS_BIND, nullptr))
    return "skip";
  const TrashResult result = trash.recycle(std::vector{folder + "/seen/song.mp3"}).at(0);
  if (!result.item) return result.problem.english();
  // The folder is the whole volume, as far as renaming goes.
  if (!result.item->trashedPath.starts_with(folder + "/seen/.Trash-"))
    return result.item->trashedPath;
  trash.restore(*result.item);
  return fs::exists(folder + "/music/song.mp3") ? "" : "not put back";
}

TEST_F(FreedesktopTrashTest, AFolderMountedAtASecondPlaceHasATrashOfItsOwn) {
  folder.write("music/song.mp3", "sound");
  fs::create_directories(folder / "seen");
  inChild([&] { folder.write("result", trashFromFolderMountedElsewhere(folder.path(), trash)); });
  const std::string result = TemporaryFolder::read(folder / "result");
  if (result == "skip") GTEST_SKIP() << "needs the right to mount";
  EXPECT_EQ(result, "");
}

}  // namespace
}  // namespace kestrel
