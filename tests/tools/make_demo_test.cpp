#include <cstdlib>
#include <fileref.h>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <tag.h>

#include "tests/tools/written_library.h"
#include "tools/make_library/audio_files.h"
#include "tools/make_library/demo.h"

namespace kestrel::make_library {
namespace {

namespace fs = std::filesystem;

class MakeDemo : public testing::Test {
 protected:
  MakeDemo() {
    std::string pattern = (fs::temp_directory_path() / "kestrel démo & XXXXXX").string();
    if (mkdtemp(pattern.data()) == nullptr) throw std::runtime_error("no temporary folder");
    folder_ = pattern;
  }
  ~MakeDemo() override {
    std::error_code ignored;
    fs::remove_all(folder_, ignored);
  }

  std::string write(const Options& options) const {
    const fs::path document = folder_ / "new" / "Library.xml";
    writeDemo(document, options);
    std::ifstream in(document, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
  }

  fs::path folder_;
};

std::string pathOf(std::string_view url) {
  std::string path;
  url.remove_prefix(std::string_view{"file://"}.size());
  for (std::size_t i = 0; i < url.size(); ++i) {
    if (url[i] != '%') {
      path += url[i];
      continue;
    }
    path += static_cast<char>(std::stoi(std::string{url.substr(i + 1, 2)}, nullptr, 16));
    i += 2;
  }
  return path;
}

TEST_F(MakeDemo, FilesAreWhatTheLibrarySays) {
  Options options;
  options.tracks = 300;
  options.seed = kDemoSeed;
  const WrittenLibrary library = readLibrary(write(options));
  std::map<std::string, int> found;  // by extension
  int missing = 0;
  for (const auto& [id, track] : library.tracks) {
    const auto location = track.find("Location");
    if (location == track.end() || !location->second.starts_with("file:")) continue;
    const fs::path path = pathOf(location->second);
    if (!fs::exists(path)) {
      ++missing;
      continue;
    }
    ++found[path.extension().string()];
    EXPECT_EQ(std::to_string(fs::file_size(path)), track.at("Size")) << path;
    TagLib::FileRef file(path.c_str());
    ASSERT_TRUE(!file.isNull() && file.audioProperties() != nullptr) << path;
    EXPECT_EQ(file.tag()->title().to8Bit(true), track.at("Name"));
    EXPECT_EQ(file.tag()->album().to8Bit(true), track.at("Album"));
    EXPECT_EQ(file.tag()->artist().to8Bit(true), track.count("Artist") ? track.at("Artist") : "");
    EXPECT_EQ(std::to_string(file.audioProperties()->lengthInMilliseconds()),
              track.at("Total Time"))
        << path;
    EXPECT_EQ(std::to_string(file.audioProperties()->bitrate()), track.at("Bit Rate")) << path;
    EXPECT_EQ(std::to_string(file.audioProperties()->sampleRate()), track.at("Sample Rate"))
        << path;
  }
  for (const std::string extension : {".mp3", ".m4a", ".wav", ".aif"}) {
    EXPECT_GE(found[extension], 3) << extension;
  }
  EXPECT_GE(missing, 1);
  EXPECT_LE(missing, 30);
}

TEST_F(MakeDemo, WritingItAgainChangesNothing) {
  Options options;
  options.tracks = 60;
  const std::string first = write(options);
  const fs::path own = folder_ / "new" / "Media" / "my own song.mp3";
  std::ofstream(own) << "mine";
  EXPECT_EQ(write(options), first);
  EXPECT_TRUE(fs::exists(own));
  for (const fs::directory_entry& entry : fs::recursive_directory_iterator(folder_)) {
    EXPECT_NE(entry.path().extension(), ".partial");
  }
}

TEST_F(MakeDemo, AFailureLeavesTheOldDocument) {
  Options options;
  options.tracks = 20;
  const std::string first = write(options);
  fs::remove_all(folder_ / "new" / "Media");
  std::ofstream(folder_ / "new" / "Media") << "a file where the folder should be";
  options.seed = 2;
  EXPECT_THROW(write(options), std::exception);
  std::ifstream in(folder_ / "new" / "Library.xml", std::ios::binary);
  EXPECT_EQ(std::string(std::istreambuf_iterator<char>(in), {}), first);
}

TEST(MakeAudio, UnknownFormatsAreRefused) {
  EXPECT_THROW(makeAudio("ogg", 1000, 64, 440), std::invalid_argument);
}

}  // namespace
}  // namespace kestrel::make_library
