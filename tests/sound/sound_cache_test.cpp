// Sounds that are kept between runs; what is the same for all that is kept of files is tested with
// the index of audio files.
#include "sound/sound_cache.h"

#include <atomic>
#include <filesystem>
#include <gtest/gtest.h>
#include <map>

#include "platform/files.h"
#include "platform/log.h"
#include "platform/sqlite_database.h"
#include "tests/platform/temporary_folder.h"
#include "tests/sound/encoder.h"

namespace kestrel::testing {
namespace {

struct CacheWorld {
  CacheWorld() { ::setenv("XDG_CACHE_HOME", (folder / "cache").c_str(), 1); }
  ~CacheWorld() { ::unsetenv("XDG_CACHE_HOME"); }
  std::string song(const std::string& name, unsigned melody) const {
    encode(folder / name, Tune{.melody = melody, .seconds = 6});
    return folder / name;
  }
  /// By place, and how many were listened to.
  std::pair<std::map<std::size_t, Sound>, std::size_t> read(const std::vector<std::string>& paths,
                                                            const LoadWatch& watch = {}) {
    SoundCache cache(files, log);
    std::map<std::size_t, Sound> found;
    last = cache.read(audioFilesAt(paths), watch, [&](std::size_t file, Sound&& sound) {
      EXPECT_TRUE(found.emplace(file, std::move(sound)).second);
    });
    return {found, last.done};
  }

  TemporaryFolder folder;
  SystemFiles files;
  MemoryLog log;
  FileCache::Reading last;
};

TEST(SoundCache, ListensToAFileOnceUntilItChanges) {
  CacheWorld world;
  const std::vector<std::string> paths{world.song("b.wav", 1), world.song("a.wav", 2),
                                       world.folder.write("c.mp3", "none")};
  const auto first = world.read(paths);
  EXPECT_EQ(first.second, 3U);
  ASSERT_EQ(first.first.size(), 3U);
  const auto again = world.read(paths);
  EXPECT_EQ(again.second, 0U) << "faults are remembered too";
  for (const std::size_t i : {0U, 1U, 2U}) {
    const Sound fresh = *readSound(paths[i], [] { return false; });
    for (const Sound& sound : {first.first.at(i), again.first.at(i)}) {
      EXPECT_EQ(sound.fault, fresh.fault);
      EXPECT_EQ(sound.milliseconds, fresh.milliseconds);
      EXPECT_EQ(sound.silence, fresh.silence);
      EXPECT_EQ(sound.checksum, fresh.checksum);
      EXPECT_EQ(sound.fingerprint, fresh.fingerprint);
    }
  }
  EXPECT_EQ(first.first.at(2).fault, SoundFault::noAudio);
  world.song("b.wav", 3);
  EXPECT_EQ(world.read(paths).second, 1U);
  EXPECT_EQ(world.log.lines(), std::vector<std::string>{});
}

TEST(SoundCache, GoesOnWhereItWasStopped) {
  CacheWorld world;
  std::vector<std::string> paths;
  for (unsigned i = 0; i < 12; ++i) paths.push_back(world.song(std::to_string(i) + ".wav", i + 1));
  std::atomic<bool> isEnough{false};
  std::size_t told = 0;
  const auto some = world.read(paths, {[&](std::size_t done, std::size_t total) {
                                         EXPECT_EQ(total, 12U);
                                         told = done;
                                         isEnough = done > 0;
                                       },
                                       [&] { return isEnough.load(); }});
  EXPECT_TRUE(world.last.isCancelled);
  EXPECT_GT(told, 0U);
  EXPECT_EQ(some.first.size(), some.second) << "what was broken off is not handed over";
  EXPECT_LT(some.second, 12U);
  const auto rest = world.read(paths);
  EXPECT_EQ(rest.second, 12U - some.second);
  EXPECT_EQ(rest.first.size(), 12U);
}

TEST(SoundCache, TakesNothingForGrantedThatStandsInIt) {
  CacheWorld world;
  const std::vector<std::string> paths{world.song("a.wav", 1)};
  world.read(paths);
  SqliteDatabase(world.folder / "cache/Kestrel/sounds.sqlite",
                 {.access = SqliteOptions::Access::write})
      .execute("UPDATE file SET fault = 99, fingerprint = x'0102030405'");
  const Sound sound = world.read(paths).first.at(0);
  EXPECT_EQ(sound.fault, SoundFault::noAudio);
  EXPECT_EQ(sound.fingerprint.size(), 1U);
}

TEST(SoundCache, ForgetsFilesThatAreGoneButNotThoseOfADiskThatIsNotThere) {
  CacheWorld world;
  std::vector<std::string> paths;
  for (const char* name :
       {"here/a.wav", "here/b.wav", "here/c.wav", "disk/sub/d.wav", "old/e.wav"}) {
    std::filesystem::create_directories(
        (world.folder / name).substr(0, (world.folder / name).rfind('/')));
    paths.push_back(world.song(name, static_cast<unsigned>(paths.size()) + 1));
  }
  world.read(paths);
  for (const char* gone : {"here/b.wav", "disk/sub", "old"})
    std::filesystem::remove_all(world.folder / gone);
  const auto names = [&] {
    SqliteDatabase database(world.folder / "cache/Kestrel/sounds.sqlite");
    SqliteStatement row = database.prepare("SELECT path FROM file ORDER BY path");
    std::string found;
    while (row.next()) found += row.text(0).substr(row.text(0).rfind('/') + 1, 1);
    return found;
  };
  world.read({world.song("here/f.wav", 7)});
  EXPECT_EQ(names(), "dacf");
  std::filesystem::remove(paths[2]);
  FileCache cache({"sounds.sqlite", 2, "fault,milliseconds,checksum,fingerprint,silence"},
                  world.files, world.log);
  for (int look = 0; look < 4; ++look) cache.forgetGone(1);
  EXPECT_EQ(names(), "daf") << "each look goes on from the last";
  EXPECT_EQ(world.log.lines(), std::vector<std::string>{});
}

}  // namespace
}  // namespace kestrel::testing
