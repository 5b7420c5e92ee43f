// What libraries lack and their files have.
#include "musicapp/audio/missing_facts.h"

#include <gtest/gtest.h>
#include <vector>

#include "foundation/library_error.h"
#include "musicapp/audio/audio_facts.h"
#include "musicapp/media_library.h"
#include "platform/files.h"
#include "platform/log.h"
#include "tests/musicapp/audio/sample_audio.h"
#include "tests/platform/temporary_folder.h"

namespace kestrel::testing {
namespace {

class MissingFactsTest : public ::testing::Test {
 protected:
  MissingFactsTest() { ::setenv("XDG_CACHE_HOME", (folder_ / "cache").c_str(), 1); }

  /// A song of a library that says nothing but this, and where its file is.
  MediaItem& song(const std::string& name, bool isThere = true) {
    const std::string path = folder_ / name;
    if (isThere) {
      folder_.write(name, sampleAudio(name.substr(name.rfind('.') + 1)));
      tag(path, {{"TITLE", "of the file"}, {"GENRE", "Folk"}, {"TRACKNUMBER", "3/12"}});
    }
    MediaItem& item = block_.emplace_back();
    setLocation(path, item, pool_);
    item.title = pool_.add("of the library");
    return item;
  }
  /// "TITLE GENRE KIND BIT-RATE TIME TRACK/COUNT" of each.
  std::vector<std::string> filled(const LoadWatch& watch = {}) {
    MediaItems items;
    items.append(block_);
    fillMissingFacts(items, "library", files_, log_, watch);
    std::vector<std::string> texts;
    items.forEach([&](const MediaItem& item) {
      texts.push_back(std::string(item.title.view()) + ", " + std::string(item.genre.view()) +
                      ", " + std::string(item.kind.view()) + ", " +
                      (item.bitrate > 0 ? "rate" : "none") + ", " +
                      (item.totalTime == 200'000 ? "its time" : "the file's") + ", " +
                      std::to_string(item.trackNumber) + "/" + std::to_string(item.trackCount));
      EXPECT_EQ(item.fileSize > 0, item.bitrate > 0);
    });
    return texts;
  }

  TemporaryFolder folder_;
  SystemFiles files_;
  MemoryLog log_;
  MediaItems owner_;
  TextPool& pool_ = owner_.newPool();
  std::vector<MediaItem> block_;
};

TEST_F(MissingFactsTest, AreTakenFromTheFilesOfSongsThatLackSomething) {
  song("bare.flac");
  song("timed.mp3").totalTime = 200'000;
  MediaItem& complete = song("complete.flac");
  complete.totalTime = 200'000;
  complete.bitrate = 1;
  complete.fileSize = 1;
  complete.trackNumber = 7;
  complete.kind = pool_.add("FLAC audio file");
  MediaItem& either = song("either.m4a");  // lossless or not
  either.kind = pool_.add("AAC audio file");
  either.bitrate = either.fileSize = 5;
  either.trackNumber = 8;
  song("gone.mp3", false);
  block_.emplace_back().title = pool_.add("stream");
  const std::vector<std::string> expected{
      "of the library, Folk, FLAC audio file, rate, the file's, 3/12",
      "of the library, Folk, MPEG audio file, rate, its time, 3/12",
      "of the library, , FLAC audio file, rate, its time, 7/0",
      "of the library, Folk, AAC audio file, rate, the file's, 8/12",
      "of the library, , , none, the file's, 0/0",
      "stream, , , none, the file's, 0/0"};
  EXPECT_EQ(filled(), expected);
  EXPECT_EQ(filled(), expected) << "from the index";
}

TEST_F(MissingFactsTest, FailWhenTheUserStopsAndKeepWhatWasRead) {
  for (const char* name : {"a.flac", "b.flac", "c.flac"}) song(name);
  LoadWatch watch{{}, [] { return true; }};
  for (int tries = 0; tries < 2; ++tries) EXPECT_THROW(filled(watch), LibraryError);
  int asked = 0;
  watch.cancelled = [&] { return ++asked > 5; };
  EXPECT_EQ(filled(watch).size(), 3U);
  EXPECT_LE(asked, 1) << "of the third alone";
}

}  // namespace
}  // namespace kestrel::testing
