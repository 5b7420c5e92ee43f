#include "musicapp/audio/file_answers.h"

#include <cstdlib>
#include <filesystem>
#include <gtest/gtest.h>

#include "platform/files.h"
#include "platform/log.h"
#include "tests/musicapp/audio/sample_audio.h"
#include "tests/platform/temporary_folder.h"

namespace kestrel::testing {
namespace {

TEST(FileAnswers, TellOfSamplesAndCovers) {
  const TemporaryFolder folder;
  ::setenv("XDG_CACHE_HOME", (folder / "cache").c_str(), 1);
  SystemFiles files;
  MemoryLog log;
  const auto make = [&](const std::string& name) {
    return folder.write(name, sampleAudio(name.substr(name.rfind('.') + 1)));
  };
  const std::string flac = make("a/a.flac"), wav = make("a/b.wav"), mp3 = make("b/c.mp3"),
                    text = folder.write("b/d.mp3", "no sound");
  folder.write("b/Cover.jpg", "\xFF\xD8\xFF\xE0");
  {
    FileAnswers answers(files, log);
    const std::string all[] = {flac, wav, mp3, text};
    answers.prepare(all);
    EXPECT_EQ(answers.soundOf(flac)->bitDepth, 16);
    EXPECT_GT(answers.soundOf(flac)->channels, 0);
    EXPECT_GT(answers.soundOf(wav)->bitDepth, 0);
    EXPECT_EQ(answers.soundOf(mp3)->bitDepth, 0) << "its format has no samples of so many bits";
    EXPECT_EQ(answers.hasCover(flac), false);
    EXPECT_EQ(answers.hasCover(mp3), true) << "beside it";
    EXPECT_FALSE(answers.soundOf(text));
    EXPECT_FALSE(answers.hasCover(text)) << "no audio";
    EXPECT_FALSE(answers.hasCover(folder / "gone.mp3"));
  }
  // What was looked at is kept: another one opens no file that is as it was.
  std::filesystem::permissions(flac, std::filesystem::perms::none);
  FileAnswers later(files, log);
  EXPECT_EQ(later.soundOf(flac)->bitDepth, 16) << "without having been prepared";
  ::unsetenv("XDG_CACHE_HOME");
}

}  // namespace
}  // namespace kestrel::testing
