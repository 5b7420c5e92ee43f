// What is read of audio files of every format.
#include "musicapp/audio/audio_facts.h"

#include <fileref.h>
#include <fstream>
#include <gtest/gtest.h>
#include <id3v2tag.h>
#include <mpegfile.h>
#include <popularimeterframe.h>
#include <textidentificationframe.h>

#include "musicapp/audio/cover.h"
#include "platform/files.h"
#include "tests/musicapp/audio/sample_audio.h"
#include "tests/platform/temporary_folder.h"

namespace kestrel::testing {
namespace {

using Properties = std::initializer_list<std::pair<const char*, std::string>>;

struct Files {
  TemporaryFolder folder;
  std::string make(const std::string& ending) const {
    return folder.write("file." + ending, sampleAudio(ending));
  }
};

TEST(AudioFacts, OfEveryFormatAreSoundAndTags) {
  const Files files;
  const std::tuple<const char*, const char*, int> formats[] = {
      {"mp3", "MPEG audio file", 48'000},          {"m4a", "AAC audio file", 44'100},
      {"m4b", "AAC audio file", 44'100},           {"mp4", "AAC audio file", 44'100},
      {"flac", "FLAC audio file", 44'100},         {"ogg", "Ogg Vorbis audio file", 44'100},
      {"oga", "Ogg Vorbis audio file", 44'100},    {"opus", "Opus audio file", 48'000},
      {"spx", "Speex audio file", 16'000},         {"wav", "WAV audio file", 8'000},
      {"aif", "AIFF audio file", 8'000},           {"wv", "WavPack audio file", 44'100},
      {"ape", "Monkey's Audio file", 44'100},      {"mpc", "Musepack audio file", 44'100},
      {"wma", "Windows Media audio file", 44'100}, {"tta", "TTA audio file", 44'100}};
  for (const auto& [ending, kind, rate] : formats) {
    SCOPED_TRACE(ending);
    ASSERT_TRUE(isAudioName(std::string("A.") + ending));
    const std::string path = files.make(ending);
    tag(path, {{"TITLE", "Été"}, {"ARTIST", "A"}, {"ALBUM", "B"}, {"TRACKNUMBER", "3"}});
    const std::string bytes = TemporaryFolder::read(path);
    const auto facts = readAudioFacts(path);
    ASSERT_TRUE(facts);
    EXPECT_EQ(facts->kind, kind);
    EXPECT_EQ(facts->sampleRate, rate);
    EXPECT_TRUE(facts->channels == 1 || facts->channels == 2);
    if (std::string("flac wav aif wv tta").find(ending) != std::string::npos) {
      EXPECT_EQ(facts->sampleDepth, 16);
    }
    EXPECT_NEAR(static_cast<double>(facts->milliseconds), 500, 30);
    EXPECT_EQ(facts->title + facts->artist + facts->album, "ÉtéAB");
    EXPECT_EQ(facts->trackNumber, 3);
    EXPECT_GT(facts->added, 1'700'000'000);
    EXPECT_EQ(TemporaryFolder::read(path), bytes) << "it was written to";
  }
}

TEST(AudioFacts, AreKnownUnderTheNamesThatProgramsGiveThem) {
  using F = AudioFacts;
  const auto number = [](std::int64_t F::*fact, std::int64_t value) {
    return [=](const F& facts) { return facts.*fact == value; };
  };
  const auto text = [](std::string F::*fact, std::string value) {
    return [=](const F& facts) { return facts.*fact == value; };
  };
  struct Case {
    const char* ending;
    Properties tags;
    std::function<bool(const F&)> isRight;
  };
  const Case cases[] = {
      {"mp3", {{"COMMENT", "c"}}, text(&F::comments, "c")},
      {"flac", {{"DESCRIPTION", "d"}}, text(&F::comments, "d")},
      {"ogg", {{"COMMENT", "c"}, {"DESCRIPTION", "d"}}, text(&F::comments, "c")},
      {"flac", {{"ARTIST", "A"}, {"ARTIST", "B"}}, text(&F::artist, "A, B")},
      {"ogg", {{"ALBUM ARTIST", "A"}}, text(&F::albumArtist, "A")},
      {"m4a", {{"COMPILATION", "1"}}, number(&F::isCompilation, 1)},
      {"ogg", {{"TCMP", "1"}}, number(&F::isCompilation, 1)},
      {"flac", {{"COMPILATION", "0"}}, number(&F::isCompilation, 0)},
      {"mp3", {{"BPM", "128"}}, number(&F::beatsPerMinute, 128)},
      {"flac", {{"TBPM", "127.9"}}, number(&F::beatsPerMinute, 127)},
      {"mp3", {{"DATE", "1999-05-01"}}, number(&F::year, 1999)},
      {"flac", {{"DATE", "19990501"}}, number(&F::year, 1999)},
      {"ogg", {{"YEAR", "2001"}}, number(&F::year, 2001)},
      {"ogg", {{"DATE", "May 1999"}}, number(&F::year, 0)},
      {"mp3", {{"TRACKNUMBER", "01/12"}}, number(&F::trackCount, 12)},
      {"flac", {{"TRACKNUMBER", "1"}, {"TRACKTOTAL", "11"}}, number(&F::trackCount, 11)},
      {"ogg", {{"TRACKNUMBER", "1"}, {"TOTALTRACKS", "10"}}, number(&F::trackCount, 10)},
      {"opus", {{"DISCNUMBER", "2"}, {"DISCTOTAL", "3"}}, number(&F::discCount, 3)},
      {"flac", {{"TRACKNUMBER", "A1"}}, number(&F::trackNumber, 0)},
      {"flac", {{"GROUPING", "g"}, {"WORK", "w"}}, text(&F::grouping, "g")},
      {"flac", {{"CONTENTGROUP", "g"}}, text(&F::grouping, "g")},
      {"mp3", {{"WORK", "w"}}, text(&F::grouping, "w")},
      {"flac", {{"WORK", "w"}, {"MOVEMENTNAME", "m"}}, text(&F::grouping, "")},
      {"flac", {{"FMPS_RATING", "0.7"}}, number(&F::rating, 70)},
      {"ogg", {{"RATING", "4"}}, number(&F::rating, 80)},
      {"ogg", {{"RATING", "85"}}, number(&F::rating, 85)},
      {"flac", {{"RATING:me@home", "0.6"}}, number(&F::rating, 60)},
      {"flac", {{"FMPS_PLAYCOUNT", "12.0"}}, number(&F::playCount, 12)},
      {"flac", {}, text(&F::title, "")}};
  const Files files;
  for (const Case& one : cases) {
    const std::string path = files.make(one.ending);
    tag(path, one.tags);
    const auto facts = readAudioFacts(path);
    EXPECT_TRUE(facts && one.isRight(*facts))
        << one.ending << " " << (one.tags.size() ? one.tags.begin()->first : "without tags");
  }
}

TEST(AudioFacts, TakeRatingsAndPlaysOutOfFramesOfPlayers) {
  const Files files;
  const std::pair<int, int> ratings[] = {{0, 0},    {1, 20},   {13, 20},  {64, 40},
                                         {128, 60}, {153, 60}, {196, 80}, {255, 100}};
  for (const auto& [byte, rating] : ratings) {
    const std::string path = files.make("mp3");
    {
      TagLib::MPEG::File file(path.c_str());
      auto* frame = new TagLib::ID3v2::PopularimeterFrame;
      frame->setRating(byte);
      frame->setCounter(7);
      file.ID3v2Tag(true)->addFrame(frame);
      file.save();
    }
    const auto facts = readAudioFacts(path);
    ASSERT_TRUE(facts);
    EXPECT_EQ(facts->rating, rating) << byte;
    EXPECT_EQ(facts->playCount, 7);
  }
}

TEST(AudioFacts, AreNotInWhatIsNoAudio) {
  const Files files;
  const std::string valid = sampleAudio("flac");
  const std::pair<const char*, std::string> cases[] = {{"a.mp3", "no audio at all"},
                                                       {"b.mp3", ""},
                                                       {"c.flac", valid.substr(0, 20)},
                                                       {"d.ogg", sampleAudio("ogg").substr(0, 40)},
                                                       {"e.txt", "text"}};
  for (const auto& [name, bytes] : cases)
    EXPECT_FALSE(readAudioFacts(files.folder.write(name, bytes))) << name;
  EXPECT_FALSE(readAudioFacts(files.folder.path()));
  EXPECT_FALSE(readAudioFacts(files.folder / "gone.mp3"));
}

TEST(Cover, IsEmbeddedOrLiesBeside) {
  const Files files;
  const SystemFiles disk;
  const std::string jpeg = "\xFF\xD8\xFF\xE0picture", png = "\x89PNG\r\n\x1A\npicture";
  const std::string path = files.folder.write("a/song.flac", sampleAudio("flac"));
  const auto coverIs = [&](const std::string& bytes, const char* mime) {
    const auto cover = coverOf(path, disk);
    return cover && cover->bytes == bytes && cover->mime == mime;
  };
  EXPECT_FALSE(coverOf(path, disk));
  files.folder.write("a/back.jpg", jpeg);
  files.folder.write("a/cover.jpg", "no picture");
  EXPECT_FALSE(coverOf(path, disk));
  files.folder.write("a/FRONT.JPG", jpeg);
  EXPECT_TRUE(coverIs(jpeg, "image/jpeg"));
  files.folder.write("a/Folder.png", png);
  EXPECT_TRUE(coverIs(png, "image/png"));
  files.folder.write("elsewhere.png", jpeg);
  std::filesystem::create_symlink(files.folder / "elsewhere.png", files.folder / "a/cover.png");
  EXPECT_TRUE(coverIs(png, "image/png")) << "links are left alone";
  // A picture block of its own behind the first block, which then is not the last.
  const std::string picture = std::string("\0\0\0\3\0\0\0\0\0\0\0\0", 12) + std::string(16, '\0') +
                              std::string("\0\0\0\x0B", 4) + jpeg;
  std::string bytes = sampleAudio("flac");
  bytes[4] = 0;
  bytes.insert(42, std::string("\x86\0\0", 3) + static_cast<char>(picture.size()) + picture);
  files.folder.write("a/song.flac", bytes);
  EXPECT_TRUE(coverIs(jpeg, "image/jpeg"));
  EXPECT_FALSE(coverOf(files.folder / "none/song.mp3", disk));
}

}  // namespace
}  // namespace kestrel::testing
