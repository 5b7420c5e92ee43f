#include <fileref.h>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <tag.h>

#include "musicapp/audio/cover.h"
#include "musicapp/file_url.h"
#include "platform/files.h"
#include "tests/platform/temporary_folder.h"
#include "tests/tools/written_library.h"
#include "tools/make_library/demo.h"

namespace kestrel::make_library {
namespace {

namespace fs = std::filesystem;

class MakeDemo : public testing::Test {
 protected:
  std::string write(const Options& options) const {
    writeDemo(folder_ / "Library.xml", options);
    return TemporaryFolder::read(folder_ / "Library.xml");
  }

  TemporaryFolder home_;
  const fs::path folder_ = home_ / "kestrel d\u00E9mo & more";
};

TEST_F(MakeDemo, FilesAreWhatTheLibrarySays) {
  Options options;
  options.tracks = 300;
  options.seed = kDemoSeed;
  const PropertyList library = parsePropertyList(write(options), "written");
  std::map<std::string, int> kinds;  // by extension
  int missing = 0, covered = 0, coverless = 0;
  const SystemFiles files;
  for (const auto& [id, entry] : tracksOf(library)) {
    const PropertyList& track = entry;
    const std::string location(track.textAt("Location"));
    if (!location.starts_with("file:")) continue;
    std::string found;
    ASSERT_TRUE(pathOfFileUrl(location, found));
    const fs::path path = found;
    if (!fs::exists(path)) {
      ++missing;
      continue;
    }
    ++kinds[path.extension().string()];
    const auto cover = coverOf(found, files);
    ++(cover ? covered : coverless);
    if (cover) {
      EXPECT_EQ(cover->mime, "image/png");
    }
    const auto number = [&](const char* key) { return track.find(key)->integer(); };
    EXPECT_EQ(static_cast<std::int64_t>(fs::file_size(path)), number("Size")) << path;
    TagLib::FileRef file(path.c_str());
    ASSERT_TRUE(!file.isNull() && file.audioProperties() != nullptr) << path;
    EXPECT_EQ(file.tag()->title().to8Bit(true), track.textAt("Name"));
    EXPECT_EQ(file.tag()->album().to8Bit(true), track.textAt("Album"));
    EXPECT_EQ(file.tag()->artist().to8Bit(true), track.textAt("Artist"));
    EXPECT_EQ(file.audioProperties()->lengthInMilliseconds(), number("Total Time")) << path;
    EXPECT_EQ(file.audioProperties()->bitrate(), number("Bit Rate")) << path;
    EXPECT_EQ(file.audioProperties()->sampleRate(), number("Sample Rate")) << path;
  }
  for (const std::string extension : {".mp3", ".m4a", ".wav", ".aif"}) {
    EXPECT_GE(kinds[extension], 3) << extension;
  }
  EXPECT_GT(covered, coverless);
  EXPECT_GT(coverless, 0);
  EXPECT_GE(missing, 1);
  EXPECT_LE(missing, 30);
}

TEST_F(MakeDemo, WritingItAgainChangesNothingNorDoesAFailure) {
  Options options;
  options.tracks = 60;
  const std::string first = write(options);
  const fs::path own = folder_ / "Media" / "my own song.mp3";
  std::ofstream(own) << "mine";
  EXPECT_EQ(write(options), first);
  EXPECT_TRUE(fs::exists(own));
  for (const fs::directory_entry& entry : fs::recursive_directory_iterator(folder_)) {
    EXPECT_NE(entry.path().extension(), ".partial");
  }
  fs::remove_all(folder_ / "Media");
  std::ofstream(folder_ / "Media") << "a file where the folder should be";
  options.seed = 2;
  EXPECT_THROW(write(options), std::exception);
  EXPECT_EQ(TemporaryFolder::read(folder_ / "Library.xml"), first);
}

}  // namespace
}  // namespace kestrel::make_library
