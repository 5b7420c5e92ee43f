// The search for what sounds the same, on fingerprints without audio.
#include "sound/sound_groups.h"

#include <algorithm>
#include <atomic>
#include <gtest/gtest.h>
#include <map>
#include <numeric>

#include "bench/random_sounds.h"

namespace kestrel::testing {
namespace {

using Groups = std::vector<std::vector<std::uint32_t>>;

const auto never = [] { return false; };

Groups groupsOf(const std::vector<Sound>& sounds, const std::vector<std::uint32_t>& order) {
  SoundIndex index;
  for (const std::uint32_t i : order) index.add(i, sounds[i]);
  return soundGroups(
      index.candidates(never),
      [&](std::uint32_t a, std::uint32_t b) {
        return likenessOf(sounds[a], sounds[b]).soundsSame();
      },
      never);
}

std::vector<std::uint32_t> places(std::size_t count) {
  std::vector<std::uint32_t> all(count);
  std::iota(all.begin(), all.end(), 0U);
  return all;
}

/// Every pair compared: the first track that no group has takes all that sound as it does.
Groups slowGroupsOf(const std::vector<Sound>& sounds) {
  Groups groups;
  std::vector<bool> taken(sounds.size());
  for (std::uint32_t first = 0; first < sounds.size(); ++first) {
    if (taken[first]) continue;
    std::vector<std::uint32_t> group{first};
    for (std::uint32_t i = first + 1; i < sounds.size(); ++i)
      if (!taken[i] && likenessOf(sounds[first], sounds[i]).soundsSame()) group.push_back(i);
    if (group.size() < 2) continue;
    for (const std::uint32_t i : group) taken[i] = true;
    groups.push_back(group);
  }
  return groups;
}

TEST(SoundGroups, AreThoseThatComparingAllPairsFinds) {
  for (const unsigned seed : {1U, 2U, 3U}) {
    bench::RandomSounds random(seed, 160);
    random.noise = 20 * seed;
    std::vector<std::uint32_t> originals;
    const std::vector<Sound> sounds = random.tracks(90, originals);
    const Groups groups = groupsOf(sounds, places(sounds.size()));
    EXPECT_EQ(groups, slowGroupsOf(sounds));
    EXPECT_GT(groups.size(), 2U);
  }
}

TEST(SoundGroups, FindVariationsAmongManyInWhateverOrderTheyCome) {
  bench::RandomSounds random(5, 400);
  std::vector<std::uint32_t> originals;
  const std::vector<Sound> sounds = random.tracks(1500, originals);
  std::map<std::uint32_t, std::vector<std::uint32_t>> planted;
  for (std::uint32_t i = 0; i < sounds.size(); ++i) planted[originals[i]].push_back(i);
  Groups wanted;
  for (const auto& [original, group] : planted)
    if (group.size() > 1) wanted.push_back(group);
  std::vector<std::uint32_t> order = places(sounds.size());
  EXPECT_EQ(groupsOf(sounds, order), wanted);
  std::shuffle(order.begin(), order.end(), std::mt19937(1));
  EXPECT_EQ(groupsOf(sounds, order), wanted);
}

TEST(SoundGroups, FindASongThatIsThereAHundredTimesAndWhatIsTooShort) {
  bench::RandomSounds random(9, 120);
  std::vector<std::uint32_t> originals;
  std::vector<Sound> sounds = random.tracks(1, originals);
  sounds.resize(100, sounds.front());
  Sound brief;
  brief.fault = SoundFault::tooShort;
  brief.checksum = "44100/2/16/00";
  for (const char* checksum : {"1", "2", "1", "1"}) {
    brief.checksum = checksum;
    sounds.push_back(brief);
  }
  const Groups groups = groupsOf(sounds, places(sounds.size()));
  ASSERT_EQ(groups.size(), 2U);
  EXPECT_EQ(groups[0], places(100));
  EXPECT_EQ(groups[1], (std::vector<std::uint32_t>{100, 102, 103}));
}

TEST(SoundGroups, DoNotChain) {
  // Each sounds like the next: 0~1~2~3~4, and 0~2 besides.
  const std::vector<SoundPair> alike{{0, 1}, {0, 2}, {1, 2}, {2, 3}, {3, 4}, {5, 6}};
  std::atomic<int> asked{0};
  const auto soundSame = [&](std::uint32_t a, std::uint32_t b) {
    ++asked;
    return std::find(alike.begin(), alike.end(), SoundPair(std::min(a, b), std::max(a, b))) !=
           alike.end();
  };
  const Groups wanted{{0, 1, 2}, {3, 4}, {5, 6}};
  EXPECT_EQ(soundGroups(alike, soundSame, never), wanted);
  EXPECT_LT(asked, 10) << "no more than once a pair and first file";
  // A candidate pair that is missing is found by way of another member.
  const std::vector<SoundPair> some{{0, 1}, {1, 2}, {5, 6}};
  EXPECT_EQ(soundGroups(some, soundSame, never), (Groups{{0, 1, 2}, {5, 6}}));
  EXPECT_EQ(soundGroups(alike, soundSame, [] { return true; }), Groups{});
}

}  // namespace
}  // namespace kestrel::testing
