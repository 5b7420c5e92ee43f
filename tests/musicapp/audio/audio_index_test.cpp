// Facts that are kept between runs.
#include "musicapp/audio/audio_index.h"

#include <atomic>
#include <chrono>
#include <filesystem>
#include <gtest/gtest.h>
#include <map>
#include <thread>
#include <utility>

#include "platform/files.h"
#include "platform/log.h"
#include "platform/sqlite_database.h"
#include "tests/musicapp/audio/sample_audio.h"
#include "tests/platform/temporary_folder.h"

namespace kestrel::testing {
namespace {

struct IndexWorld {
  IndexWorld() { ::setenv("XDG_CACHE_HOME", (folder / "cache").c_str(), 1); }
  std::string song(const std::string& name, const std::string& title) {
    const std::string path = folder.write(name, sampleAudio("flac"));
    tag(path, {{"TITLE", title}});
    return path;
  }
  /// "FILE=TITLE" by place, and how many files were opened for that.
  std::string read(const std::vector<std::string>& paths, const LoadWatch& watch = {}) {
    AudioIndex index(files, log);
    std::map<std::size_t, AudioFacts> found;
    const std::vector<AudioFile> wanted = audioFilesAt(paths);
    last = index.read(wanted, watch, [&](std::size_t file, const AudioFacts& facts) {
      EXPECT_TRUE(found.emplace(file, facts).second);
      AudioFacts fresh = *readAudioFacts(paths[file]);
      // A file is as old as the first that was seen in its place.
      EXPECT_LE(facts.added, std::exchange(fresh.added, facts.added));
      EXPECT_TRUE(fresh == facts) << paths[file];
    });
    std::string text;
    for (const auto& [file, facts] : found) text += std::to_string(file) + "=" + facts.title + " ";
    for (const std::size_t file : last.failed) text += std::to_string(file) + "! ";
    return text + "(" + std::to_string(last.readAnew) + ")";
  }
  std::string path() const { return folder / "cache/Kestrel/audio.sqlite"; }

  TemporaryFolder folder;
  SystemFiles files;
  MemoryLog log;
  AudioIndex::Reading last;
};

TEST(AudioIndex, ReadsAFileOnceUntilItChanges) {
  IndexWorld world;
  const std::vector<std::string> paths{world.song("b.flac", "B"), world.song("a/1.flac", "A1"),
                                       world.folder.write("c.flac", "none"),
                                       world.song("a b.flac", "AB"), world.folder / "gone.flac"};
  EXPECT_EQ(world.read(paths), "0=B 1=A1 3=AB 2! 4! (5)");
  EXPECT_EQ(world.read(paths), "0=B 1=A1 3=AB 2! 4! (1)") << "what is not there can come";
  EXPECT_EQ(world.read({paths[3], paths[3]}), "0=AB 1=AB (0)");
  // The same size and time, but another file.
  const auto time = std::filesystem::last_write_time(paths[0]);
  std::filesystem::rename(world.song("new", "N"), paths[0]);
  std::filesystem::last_write_time(paths[0], time);
  std::filesystem::last_write_time(paths[1], time - std::chrono::nanoseconds(1));
  EXPECT_EQ(world.read(paths), "0=N 1=A1 3=AB 2! 4! (3)");
  EXPECT_EQ(world.log.lines(), std::vector<std::string>{});
}

TEST(AudioIndex, FindsFewAmongManyAndForgetsOthers) {
  IndexWorld world;
  std::vector<std::string> paths;
  for (int i = 100; i < 150; ++i)
    paths.push_back(world.song("m/" + std::to_string(i) + ".flac", std::to_string(i)));
  paths.push_back(world.song("other.flac", "O"));
  world.read(paths);
  EXPECT_EQ(world.read({paths[49], paths[0], paths[25]}), "0=149 1=100 2=125 (0)");
  const std::vector<std::string> kept{paths[0], paths[49]};
  AudioIndex(world.files, world.log).forgetOthers(world.folder / "m", audioFilesAt(kept));
  EXPECT_EQ(world.read({paths[0], paths[1], paths[49], paths[50]}), "0=100 1=101 2=149 3=O (1)");
}

TEST(AudioIndex, IsMadeAnewOrDoneWithoutWhenItCannotBeUsed) {
  using Access = SqliteOptions::Access;
  const auto execute = [](const char* sql) {
    return
        [sql](IndexWorld& w) { SqliteDatabase(w.path(), {.access = Access::write}).execute(sql); };
  };
  struct Case {
    const char* name;
    std::function<void(IndexWorld&)> breakIt;
    bool isMadeAnew;
  };
  std::optional<SqliteDatabase> locking;
  const Case cases[] = {
      {"no database", [](IndexWorld& w) { w.folder.write("cache/Kestrel/audio.sqlite", "none"); },
       true},
      {"cut short", [](IndexWorld& w) { std::filesystem::resize_file(w.path(), 3000); }, true},
      {"another version", execute("PRAGMA user_version = 99"), true},
      {"another table", execute("DROP TABLE file; CREATE TABLE file (path)"), true},
      {"locked",
       [&](IndexWorld& w) {
         locking.emplace(w.path(), SqliteOptions{.access = Access::write});
         locking->execute("PRAGMA locking_mode = EXCLUSIVE; BEGIN EXCLUSIVE");
       },
       false},
      {"a folder in its place",
       [](IndexWorld& w) {
         std::filesystem::remove(w.path());
         std::filesystem::create_directories(w.path() + "/x");
       },
       false},
      {"no cache folder",
       [](IndexWorld& w) {
         std::filesystem::remove_all(w.folder / "cache");
         w.folder.write("cache", "");
       },
       false}};
  for (const Case& one : cases) {
    SCOPED_TRACE(one.name);
    IndexWorld world;
    const std::vector<std::string> paths{world.song("a.flac", "A"), world.song("b.flac", "B")};
    world.read(paths);
    one.breakIt(world);
    EXPECT_EQ(world.read(paths), "0=A 1=B (2)");
    EXPECT_EQ(world.log.lines().size(), 1U);
    EXPECT_EQ(world.read(paths), one.isMadeAnew ? "0=A 1=B (0)" : "0=A 1=B (2)");
    locking.reset();
  }
}

TEST(AudioIndex, TellsItsProgressAndKeepsWhatWasReadWhenItIsStopped) {
  IndexWorld world;
  std::vector<std::string> paths;
  for (int i = 0; i < 40; ++i)
    paths.push_back(world.song(std::to_string(i) + ".flac", std::to_string(i)));
  std::size_t asked = 0, told = 0;
  world.read(paths, {[&](std::size_t done, std::size_t total) {
                       EXPECT_EQ(total, paths.size());
                       told = done;
                     },
                     [&] { return ++asked > 9; }});
  EXPECT_TRUE(world.last.isCancelled);
  EXPECT_GT(told, 0U);
  const std::size_t first = world.last.readAnew;
  EXPECT_LT(first, paths.size());
  world.read(paths);
  EXPECT_EQ(world.last.readAnew, paths.size() - first);
}

TEST(AudioIndex, ThreadsAndProgramsShareIt) {
  IndexWorld world;
  std::vector<std::string> paths;
  for (int i = 0; i < 60; ++i)
    paths.push_back(world.song(std::to_string(i) + ".flac", std::to_string(i)));
  std::vector<std::jthread> readers;
  std::atomic<std::size_t> found{0};
  for (int reader = 0; reader < 3; ++reader)
    readers.emplace_back([&] {
      NullLog log;
      AudioIndex index(world.files, log);
      index.read(audioFilesAt(paths), {}, [&](std::size_t, const AudioFacts&) { ++found; });
    });
  readers.clear();
  EXPECT_EQ(found, 180U);
}

}  // namespace
}  // namespace kestrel::testing
