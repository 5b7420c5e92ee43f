// What tracks sound like beside one another, on audio that is made here.
#include "dupes/track_sounds.h"

#include <cstdlib>
#include <gtest/gtest.h>

#include "dupes/doubts.h"
#include "tests/dupes/builders.h"
#include "tests/platform/temporary_folder.h"
#include "tests/sound/encoder.h"

namespace kestrel::testing {
namespace {

class TrackSoundsTest : public ::testing::Test {
 protected:
  TrackSoundsTest() {
    setenv("XDG_CACHE_HOME", (folder / "cache").c_str(), 1);
    const Tune tea{.melody = 1, .seconds = 7};
    encode(folder / "tea.wav", tea);
    encode(folder / "tea.mp3", tea, {.codec = "libmp3lame", .kilobits = 48});
    encode(folder / "quiet.wav", Tune{.melody = 1, .seconds = 7, .volume = 0.1});
    encode(folder / "rain.wav", Tune{.melody = 2, .seconds = 7});
    folder.write("torn.mp3", "no audio");
  }
  ~TrackSoundsTest() override { unsetenv("XDG_CACHE_HOME"); }

  TrackBuilder at(const std::string& name, std::int32_t group = 0) const {
    return track(name).path(folder / name).inGroup(group);
  }
  /// How the rows sound beside those that are kept; the rows themselves are left in `rows`.
  std::string beside(const World& world, const std::vector<std::size_t>& kept) {
    TrackSounds sounds;
    SoundCache cache(files, log);
    EXPECT_TRUE(sounds.listen(world.records(), cache, {}));
    rows = world.rows();
    for (const std::size_t row : kept) rows[row].tCheckbox = true;
    std::vector<std::vector<ResultTrack*>> groups(1);
    for (ResultTrack& row : rows) groups[0].push_back(&row);
    compareToKeepers(groups, true, sounds);
    std::string text;
    for (const ResultTrack& row : rows)
      text.append(text.empty() ? "" : " ").append(nameOf(row.sound.kind));
    return text;
  }

  TemporaryFolder folder;
  SystemFiles files;
  NullLog log;
  std::vector<ResultTrack> rows;
};

TEST_F(TrackSoundsTest, AreComparedToWhatIsKept) {
  const World world(
      {at("tea.wav"), at("tea.mp3"), at("quiet.wav"), at("rain.wav"), at("torn.mp3")});
  EXPECT_EQ(beside(world, {0}), "unknown same same different unknown");
  EXPECT_EQ(beside(world, {4}), "unknown unknown unknown unknown unknown")
      << "what is kept cannot be read";
  EXPECT_EQ(beside(world, {}), "unknown unknown unknown unknown unknown") << "nothing is kept";
  EXPECT_EQ(beside(world, {0, 3}), "unknown different different unknown unknown")
      << "beside the one that is least like it";
  EXPECT_EQ(beside(world, {0, 4}), "unknown unknown unknown unknown unknown");
}

TEST_F(TrackSoundsTest, SayWhyTheyCannotBeCompared) {
  const Tune jingle{.melody = 3, .seconds = 2};
  encode(folder / "jingle.wav", jingle);
  encode(folder / "jingle.flac", jingle, {.codec = "flac"});
  encode(folder / "jingle.mp3", jingle, {.codec = "libmp3lame", .kilobits = 48});
  encode(folder / "silent.wav", Tune{.seconds = 7, .volume = 0});
  const World world({at("jingle.wav"), at("jingle.flac"), at("jingle.mp3"), at("tea.wav"),
                     at("silent.wav"), at("torn.mp3"), at("gone.mp3"), at("cloud.mp3").cloud()});
  const auto texts = [&](std::size_t kept) {
    beside(world, {kept});
    std::string all;
    for (const ResultTrack& row : rows)
      all.append(all.empty() ? "" : ", ").append(textOf(row.sound).english());
    return all;
  };
  const char* others = "silent or steady, unreadable, no file, no file";
  // Bit by bit, short ones can be compared.
  EXPECT_EQ(texts(0), std::string("too short, same audio, too short, not compared, ") + others);
  EXPECT_EQ(texts(3), std::string("too short, too short, too short, , ") + others);
  EXPECT_EQ(reasonOf(rows[0].sound).english(), "it is too short");
  EXPECT_EQ(reasonOf(rows[3].sound).english(), "");
  texts(6);
  EXPECT_EQ(reasonOf(rows[3].sound).english(),
            "the kept copy cannot be compared: its file is not here");
  EXPECT_EQ(reasonOf(rows[6].sound).english(), "its file is not here") << "of the kept one itself";
}

TEST_F(TrackSoundsTest, MakeDoubts) {
  const World same({at("tea.wav"), at("tea.mp3"), at("torn.mp3")}),
      other({at("tea.wav"), at("tea.mp3"), at("rain.wav")});
  for (const World* world : {&same, &other}) {
    beside(*world, {0});
    const auto doubts = DoubtFinder({}).doubtsOf(world->records(), leastAlike(pointers(rows)));
    ASSERT_EQ(doubts.size(), world == &same ? 0U : 1U);
    if (!doubts.empty()) {
      EXPECT_EQ(doubts[0].kind, DoubtKind::sound);
      EXPECT_LT(int{doubts[0].sound.percent}, leastOfTheSame);
    }
  }
}

TEST_F(TrackSoundsTest, AreFoundWhateverTheTagsSay) {
  const World world({at("rain.wav"), at("tea.wav"), at("gone.wav"), at("cloud.mp3").cloud(),
                     at("torn.mp3"), at("tea.mp3"), at("quiet.wav")});
  SoundCache cache(files, log);
  TrackSounds sounds;
  const std::vector<std::uint64_t> playlist{6, 1, 2, 6, 3, 4, 5, 99};
  const DupeRows found = findBySound(world.store(), playlist, false, cache, {}, sounds);
  std::string text;
  for (const ResultTrack& row : found.rows)
    text += std::string(row.record->item().title.view()) + " " + std::to_string(row.tGroupID) + " ";
  EXPECT_EQ(text, "tea.mp3 0 tea.wav 0 ") << "in the playlist's order, each once";
  ASSERT_EQ(found.seeds.size(), 1U);
  EXPECT_EQ(found.seeds[0], world[5]);
  EXPECT_EQ(sounds.asked(), 6U);
  EXPECT_EQ(sounds.withoutFile(), 2U) << "one is gone, one in the cloud";
  ASSERT_EQ(sounds.faults().size(), 1U);
  EXPECT_EQ(sounds.faults()[0].track, world[4]);
  EXPECT_EQ(sounds.of(*world[0]), nullptr) << "only the groups' members are held";
  EXPECT_NE(sounds.of(*world[1]), nullptr);
  EXPECT_TRUE(findBySound(world.store(), playlist, false, cache, {{}, [] { return true; }}, sounds)
                  .cancelled);
}

}  // namespace
}  // namespace kestrel::testing
