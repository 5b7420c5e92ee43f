// How alike recordings sound, on audio that is made here.
#include "sound/likeness.h"

#include <functional>
#include <gtest/gtest.h>

#include "tests/platform/temporary_folder.h"
#include "tests/sound/encoder.h"

namespace kestrel::testing {
namespace {

class LikenessTest : public ::testing::Test {
 protected:
  Sound sound(const std::string& name, const Tune& tune, const Encoding& encoding = {}) const {
    encode(folder / name, tune, encoding);
    return *readSound(folder / name, [] { return false; });
  }
  TemporaryFolder folder;
};

TEST_F(LikenessTest, TellsTheSameRecordingFromOthers) {
  using Kind = Likeness::Kind;
  struct Case {
    const char* what;
    std::function<void(Tune&)> change;
    const char* file;
    Encoding encoding;
    Kind kind;
    int least, most;  ///< percent
    double later = 0;
  };
  const auto nothing = [](Tune&) {};
  const Encoding wav;
  const Case cases[] = {
      {"lossless", nothing, "a.flac", {.codec = "flac"}, Kind::sameAudio, 100, 100},
      {"MP3", nothing, "a.mp3", {.codec = "libmp3lame"}, Kind::same, 97, 100},
      {"MP3 of few bits", nothing, "a.mp3", {"libmp3lame", 24}, Kind::same, 92, 100},
      {"Vorbis", nothing, "a.ogg", {"libvorbis", 48}, Kind::same, 95, 100},
      {"AAC", nothing, "a.m4a", {"aac", 48}, Kind::same, 95, 100},
      {"Opus", nothing, "a.opus", {"libopus", 24}, Kind::same, 92, 100},
      {"stereo", nothing, "a.wav", {.channels = 2}, Kind::same, 99, 100},
      {"8 bits", nothing, "a.wav", {.codec = "pcm_u8", .bits = 8}, Kind::same, 97, 100},
      {"another rate", [](Tune& t) { t.rate = 44100; }, "a.wav", wav, Kind::same, 97, 100},
      {"quiet", [](Tune& t) { t.volume = 0.03; }, "a.wav", wav, Kind::same, 97, 100},
      {"silence before", [](Tune& t) { t.before = 3.1; }, "a.wav", wav, Kind::same, 88, 100, 3.1},
      {"silence before, as MP3",
       [](Tune& t) { t.before = 7.3; },
       "a.mp3",
       {"libmp3lame", 48},
       Kind::same,
       88,
       100,
       7.3},
      {"a moment behind", [](Tune& t) { t.after = 0.9; }, "a.wav", wav, Kind::same, 97, 100},
      {"silence behind", [](Tune& t) { t.after = 3; }, "a.wav", wav, Kind::sameInPart, 97, 100},
      {"some hiss", [](Tune& t) { t.noise = 0.05; }, "a.wav", wav, Kind::same, 90, 100},
      {"goes on", [](Tune& t) { t.seconds = 27; }, "a.wav", wav, Kind::sameInPart, 97, 100},
      {"faster", [](Tune& t) { t.tempo = 1.06; }, "a.wav", wav, Kind::different, 0, 69},
      {"another key", [](Tune& t) { t.semitones = 2; }, "a.wav", wav, Kind::different, 0, 45},
      {"another tune, the same chords", [](Tune& t) { t.chords = t.melody + 1000, t.melody = 50; },
       "a.wav", wav, Kind::different, 0, 45},
      {"another tune", [](Tune& t) { t.melody = 60; }, "a.wav", wav, Kind::different, 0, 45},
  };
  for (const unsigned melody : {1U, 2U}) {
    const Tune tune{.melody = melody};
    const Sound first = sound("first.wav", tune);
    for (const Case& one : cases) {
      Tune changed = tune;
      one.change(changed);
      const Sound second = sound(one.file, changed, one.encoding);
      const Likeness likeness = likenessOf(first, second), back = likenessOf(second, first);
      SCOPED_TRACE(std::string(one.what) + ": " + std::to_string(likeness.percent) + " %");
      EXPECT_EQ(nameOf(likeness.kind), nameOf(one.kind));
      EXPECT_GE(likeness.percent, one.least);
      EXPECT_LE(likeness.percent, one.most);
      if (one.kind != Kind::different) {
        EXPECT_NEAR(likeness.later, one.later, secondsAnItem);
      }
      const bool goesOn = one.what == std::string("goes on");
      EXPECT_EQ(likeness.isOneRecording, one.kind != Kind::different && !goesOn);
      EXPECT_EQ(back.percent, likeness.percent) << "the other way round";
      EXPECT_EQ(back.longer, -likeness.longer);
    }
  }
}

TEST_F(LikenessTest, TellsWhatOnlyOneHas) {
  const int rate = Tune{}.rate;
  const std::vector<float> whole = samplesOf(Tune{.seconds = 40});
  const auto at = [&](double second) { return whole.begin() + static_cast<int>(second * rate); };
  const std::vector<float> silence(static_cast<std::size_t>(8 * rate));
  std::vector<float> muted = whole, late = silence, hidden = silence;
  std::fill(muted.begin() + 16 * rate, muted.begin() + 23 * rate, 0.0F);
  late.insert(late.end(), whole.begin(), whole.end());
  hidden.insert(hidden.end(), whole.begin(), at(32));
  const struct {
    const char* what;
    std::vector<float> samples;
    Likeness::Part part;
  } cases[] = {{"from second 3 on", {at(3), whole.end()}, Likeness::Part::beginning},
               {"from second 10 on", {at(10), whole.end()}, Likeness::Part::beginning},
               {"muted in the midst", muted, Likeness::Part::stretch},
               {"8 seconds less", {whole.begin(), at(32)}, Likeness::Part::end},
               {"8 seconds less, and as much silence before", hidden, Likeness::Part::end},
               {"silence before", late, Likeness::Part::none}};
  const Sound first = sound("whole.flac", {.seconds = 40}, {.codec = "flac"});
  for (const auto& one : cases) {
    encode(folder / "b.mp3", one.samples, rate, {.codec = "libmp3lame"});
    const Sound second = *readSound(folder / "b.mp3", [] { return false; });
    for (const Likeness& likeness : {likenessOf(first, second), likenessOf(second, first)}) {
      EXPECT_EQ(nameOf(likeness.part), nameOf(one.part))
          << one.what << " " << int{likeness.percent};
      EXPECT_EQ(likeness.soundsSame(), one.part == Likeness::Part::none) << one.what;
      EXPECT_EQ(explainPart(likeness).empty(), one.part == Likeness::Part::none) << one.what;
    }
  }
}

TEST_F(LikenessTest, TellsAnotherTakeFromTheSameRecording) {
  // The same notes, in a time that wanders, before an audience.
  const Tune song{.seconds = 50};
  Tune take = song;
  take.playing = 2;
  take.tempo = 1.02;
  take.noise = 0.2;
  const Likeness likeness = likenessOf(sound("a.wav", song), sound("b.wav", take));
  EXPECT_EQ(likeness.kind, Likeness::Kind::different) << int{likeness.percent};
}

TEST_F(LikenessTest, HoldsWhatGoesOnUnchangedForNothing) {
  // Half of each is silent, which any two have in common.
  Tune one{.melody = 1, .after = 16}, other{.melody = 2, .after = 16};
  const Likeness likeness = likenessOf(sound("a.wav", one), sound("b.wav", other));
  EXPECT_EQ(likeness.kind, Likeness::Kind::different) << int{likeness.percent};
  EXPECT_EQ(likenessOf(Sound{}, sound("a.wav", one)).kind, Likeness::Kind::unknown);
}

TEST(Likeness, IsTheLeastOfSeveralThatAreKnown) {
  using Kind = Likeness::Kind;
  const Likeness unknown, exact{Kind::sameAudio, 100}, same{Kind::same, 80},
      inPart{Kind::sameInPart, 99}, other{Kind::different, 30};
  EXPECT_EQ(lessAlike(unknown, same), same);
  EXPECT_EQ(lessAlike(same, unknown), same);
  EXPECT_EQ(lessAlike(exact, same), same);
  EXPECT_EQ(lessAlike(same, inPart), inPart);
  EXPECT_EQ(lessAlike(other, inPart), other);
  EXPECT_EQ(lessAlike(same, {Kind::same, 90}), same);
  EXPECT_EQ(textOf(exact).english() + textOf(same).english(), "same audio80 %");
  EXPECT_TRUE(textOf(unknown).empty());
}

}  // namespace
}  // namespace kestrel::testing
