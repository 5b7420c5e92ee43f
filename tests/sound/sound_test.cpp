// What a file is found to sound like, be it whole, odd or damaged.
#include "sound/sound.h"

#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <random>
#include <sstream>
#include <sys/stat.h>

#include "tests/musicapp/audio/sample_audio.h"
#include "tests/platform/temporary_folder.h"
#include "tests/sound/encoder.h"

namespace kestrel::testing {
namespace {

constexpr auto toTheEnd = [] { return false; };

std::string bytesOf(const std::string& path) {
  std::ostringstream bytes;
  bytes << std::ifstream(path, std::ios::binary).rdbuf();
  return bytes.str();
}

TEST(ReadSound, GivesTheSameAudioTheSameChecksumWhateverItsFormat) {
  const Tune tune{.seconds = 3};
  const std::vector<float> samples = samplesOf(tune);
  struct Form {
    int channels, bits;
    std::vector<std::pair<const char*, const char*>> files;  ///< names and codecs
  };
  const Form forms[] = {
      {2,
       16,
       {{"a.wav", "pcm_s16le"},
        {"a.aiff", "pcm_s16be"},
        {"a.flac", "flac"},
        {"a.m4a", "alac"},
        {"a.wv", "wavpack"},
        {"a.tta", "tta"},
        {"b.mka", "flac"},
        {"c.oga", "flac"},
        {"d.caf", "alac"}}},
      {1,
       24,
       {{"a.wav", "pcm_s24le"}, {"a.aiff", "pcm_s24be"}, {"a.flac", "flac"}, {"a.m4a", "alac"}}},
      {1, 8, {{"a.wav", "pcm_u8"}, {"a.aiff", "pcm_s8"}}},
  };
  std::vector<std::string> different;
  for (const Form& form : forms) {
    TemporaryFolder folder;
    std::string first;
    for (const auto& [name, codec] : form.files) {
      encode(folder / name, samples, tune.rate,
             {.codec = codec, .channels = form.channels, .bits = form.bits});
      const Sound sound = *readSound(folder / name, toTheEnd);
      EXPECT_EQ(sound.fault, SoundFault::tooShort) << name;
      EXPECT_EQ(sound.milliseconds, 3000) << name;
      if (first.empty()) first = sound.checksum;
      EXPECT_EQ(sound.checksum, first) << name << " of " << form.bits << " bits";
      EXPECT_TRUE(sound.checksum.starts_with("16000/" + std::to_string(form.channels) + "/" +
                                             std::to_string(form.bits) + "/"))
          << name << ": " << sound.checksum;
    }
    different.push_back(first);
  }
  EXPECT_NE(different[0].substr(different[0].rfind('/')),
            different[1].substr(different[1].rfind('/')));
}

/// An APE file of two channels whose frames say that they are silent: nothing here can encode more.
std::string silentApe(std::uint32_t rate, std::uint32_t samples) {
  constexpr std::uint32_t frameSamples = 73'728, frameBytes = 32, header = 52 + 24;
  const std::uint32_t frames = (samples + frameSamples - 1) / frameSamples;
  std::string bytes = "MAC ";
  const auto add = [&](std::uint64_t value, int size) {
    for (; size > 0; --size, value >>= 8) bytes += static_cast<char>(value & 0xFF);
  };
  const auto addAll = [&](std::initializer_list<std::pair<std::uint32_t, int>> values) {
    for (const auto& [value, size] : values) add(value, size);
  };
  addAll({{3990, 2}, {0, 2}, {52, 4}, {24, 4}, {4 * frames, 4}, {0, 4}, {frames * frameBytes, 4}});
  bytes += std::string(8 + 16, '\0');
  addAll({{2000, 2}, {32, 2}, {frameSamples, 4}, {samples - (frames - 1) * frameSamples, 4}});
  addAll({{frames, 4}, {16, 2}, {2, 2}, {rate, 4}});
  for (std::uint32_t i = 0; i < frames; ++i) add(header + 4 * frames + i * frameBytes, 4);
  for (std::uint32_t i = 0; i < frames; ++i) {
    addAll({{0x80000000, 4}, {3, 4}});  // flags follow: both channels are silent
    bytes += std::string(frameBytes - 8, '\0');
  }
  return bytes;
}

TEST(ReadSound, DecodesApe) {
  TemporaryFolder folder;
  const std::vector<float> silence(16'000 * 7);
  encode(folder / "a.wav", silence, 16'000, {.channels = 2});
  const Sound wav = *readSound(folder / "a.wav", toTheEnd);
  const Sound ape = *readSound(folder.write("a.ape", silentApe(16'000, 16'000 * 7)), toTheEnd);
  EXPECT_EQ(ape.checksum, wav.checksum);
  EXPECT_EQ(ape.milliseconds, 7000);
  EXPECT_EQ(nameOf(ape.fault), "featureless");
}

TEST(ReadSound, BelievesFlacsOwnChecksumOnlyWhenTheAudioHasIt) {
  TemporaryFolder folder;
  const std::string path = folder / "a.flac";
  encode(path, Tune{}, {.codec = "flac"});
  const Sound whole = *readSound(path, toTheEnd);
  EXPECT_EQ(whole.fault, SoundFault::none);
  const std::string bytes = bytesOf(path);
  std::string without = bytes;
  without.replace(26, 16, 16, '\0');  // where its header has the checksum
  folder.write("a.flac", without);
  EXPECT_EQ(readSound(path, toTheEnd)->checksum, whole.checksum);

  std::string other = bytes;
  other[30] = static_cast<char>(other[30] + 1);
  const std::pair<const char*, std::string> cases[] = {
      {"another checksum", other},
      {"the end is missing", bytes.substr(0, bytes.size() / 4 * 3)},
      {"a hole", std::string(bytes).replace(bytes.size() / 2, 300, 300, '\0')}};
  for (const auto& [what, damaged] : cases) {
    folder.write("a.flac", damaged);
    const Sound sound = *readSound(path, toTheEnd);
    EXPECT_EQ(nameOf(sound.fault), "damaged") << what;
    EXPECT_EQ(sound.checksum, "") << what;
    EXPECT_FALSE(sound.fingerprint.empty()) << what;
  }
}

TEST(ReadSound, MeasuresWhatIsThereAndNotWhatTheHeaderSays) {
  TemporaryFolder folder;
  for (const auto& [name, codec] :
       {std::pair{"a.mp3", "libmp3lame"}, std::pair{"a.ogg", "libvorbis"}}) {
    encode(folder / name, Tune{}, {.codec = codec, .kilobits = 48});
    EXPECT_NEAR(readSound(folder / name, toTheEnd)->milliseconds, 16'000, 400) << name;
    const std::string bytes = bytesOf(folder / name);
    folder.write(name, bytes.substr(0, bytes.size() / 2));
    EXPECT_NEAR(readSound(folder / name, toTheEnd)->milliseconds, 8'000, 1500) << name;
  }
}

TEST(ReadSound, SaysWhyAFileCannotBeCompared) {
  TemporaryFolder folder;
  encode(folder / "short.wav", Tune{.seconds = 4});
  encode(folder / "silent.wav", Tune{.volume = 0});
  std::vector<float> tone(16'000 * 16);
  for (std::size_t i = 0; i < tone.size(); ++i) tone[i] = i % 40 < 20 ? 0.5F : -0.5F;
  encode(folder / "tone.mp3", tone, 16'000, {.codec = "libmp3lame"});
  folder.write("empty.mp3", "");
  folder.write("text.flac", "no audio at all, though it is called so\n");
  folder.write("list.m3u8", "#EXTM3U\n#EXTINF:10,\n" + (folder / "short.wav") + "\n");
  folder.write("list.ffconcat", "ffconcat version 1.0\nfile short.wav\n");
  folder.write("list.mp3",
               "#EXTM3U\n#EXT-X-VERSION:3\n#EXTINF:10,\nfile:short.wav\n#EXT-X-ENDLIST");
  const std::string wav = bytesOf(folder / "short.wav");
  folder.write("header.wav", wav.substr(0, 44));
  folder.write("concat:short.wav", wav);  // a name that is an address to the library
  std::filesystem::create_directory(folder / "folder.mp3");
  ASSERT_EQ(::mkfifo((folder / "pipe.mp3").c_str(), 0600), 0);
  for (const auto& [name, fault] :
       std::initializer_list<std::pair<const char*, const char*>>{{"short.wav", "tooShort"},
                                                                  {"silent.wav", "featureless"},
                                                                  {"tone.mp3", "featureless"},
                                                                  {"empty.mp3", "noAudio"},
                                                                  {"text.flac", "noAudio"},
                                                                  {"list.m3u8", "noAudio"},
                                                                  {"list.mp3", "noAudio"},
                                                                  {"list.ffconcat", "noAudio"},
                                                                  {"header.wav", "noAudio"},
                                                                  {"concat:short.wav", "tooShort"},
                                                                  {"folder.mp3", "noAudio"},
                                                                  {"pipe.mp3", "noAudio"},
                                                                  {"gone.mp3", "noAudio"}}) {
    ::testing::internal::CaptureStderr();
    const Sound sound = *readSound(folder / name, toTheEnd);
    EXPECT_EQ(nameOf(sound.fault), fault) << name;
    EXPECT_TRUE(sound.fingerprint.empty()) << name;
    EXPECT_FALSE(explain(sound.fault).empty()) << name;
    EXPECT_EQ(::testing::internal::GetCapturedStderr(), "") << name;
  }
  EXPECT_FALSE(readSound(folder / "silent.wav", [] { return true; })) << "stopped";
}

TEST(ReadSound, SurvivesFilesThatAreBrokenAnywhere) {
  TemporaryFolder folder;
  std::vector<std::string> originals;
  for (const char* ending :
       {"flac", "mp3", "m4a", "wav", "aif", "ogg", "opus", "wv", "ape", "mpc", "tta", "wma", "spx"})
    originals.push_back(sampleAudio(ending));
  for (const auto& [name, codec] :
       std::initializer_list<std::pair<const char*, const char*>>{{"a.flac", "flac"},
                                                                  {"a.m4a", "alac"},
                                                                  {"a.mp3", "libmp3lame"},
                                                                  {"a.ogg", "libvorbis"},
                                                                  {"a.wv", "wavpack"},
                                                                  {"a.opus", "libopus"}}) {
    encode(folder / name, Tune{.seconds = 0.5}, {.codec = codec, .kilobits = 48});
    originals.push_back(bytesOf(folder / name));
  }
  std::mt19937 random(1);
  ::testing::internal::CaptureStderr();
  for (const std::string& original : originals)
    for (int round = 0; round < 12; ++round) {
      std::string bytes = original;
      if (round % 4 == 0) bytes.resize(random() % bytes.size());
      // Headers, where most of what is believed stands, as often as all the rest.
      for (std::uint32_t i = random() % 12; i > 0 && !bytes.empty(); --i)
        bytes[random() % (i % 2 ? std::min<std::size_t>(bytes.size(), 100) : bytes.size())] =
            static_cast<char>(random());
      const Sound sound = *readSound(folder.write("broken", bytes), toTheEnd);
      EXPECT_TRUE(sound.fault != SoundFault::none || !sound.fingerprint.empty());
      EXPECT_GE(sound.milliseconds, 0);
    }
  EXPECT_EQ(::testing::internal::GetCapturedStderr(), "");
}

}  // namespace
}  // namespace kestrel::testing
