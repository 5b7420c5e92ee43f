#include "dupes/sorting.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <random>

#include "dupes/find_dupes.h"
#include "tests/dupes/builders.h"

namespace kestrel {
namespace {

using namespace kestrel::testing;
using enum ComparisonSelector;

/// A record with one key, "k".
struct Row {
  Value held;
  [[nodiscard]] Value value(std::string_view key) const { return key == "k" ? held : Value(); }
};

TEST(SortDescriptors, EmptyValuesCountAsTheLarger) {
  const MySortDescriptor texts("k", true, localizedCaseInsensitiveCompare);
  const MySortDescriptor standard("k", true, localizedStandardCompare);
  const MyNumSortDescriptor numbers("k", true, compare);
  const PlainSortDescriptor plain("k");
  const struct {
    const SortDescriptor& descriptor;
    Value first, second;
    int ascending, descending;
  } cases[] = {
      {texts, "abc", "ABC", 0, 0},      {texts, "abc", "Abd", -1, 1},
      {texts, "", "a", 1, -1},          {texts, "a", "", -1, 1},
      {texts, "", "", 1, -1},  // of two empty ones, the first: no symmetry
      {texts, Value(), "a", 1, -1},     {texts, "a", Value::Null(), -1, 1},
      {numbers, 0, 3, 1, -1},           {numbers, 3, 0, -1, 1},
      {numbers, 0, 0, 1, -1},           {numbers, Value(), 3, 1, -1},
      {numbers, 1, 3, -1, 1},           {numbers, -5, 3, -1, 1},
      {numbers, -5, Value(), -1, 1},    {plain, 0, 3, -1, 1},
      {plain, "", "a", -1, 1},          {plain, "10", "2", -1, 1},
      {standard, "a 9", "A 10", -1, 1}, {standard, "a", "A", -1, 1},
      {plain, "B", "a", -1, 1},         {plain, Date{5}, Date{4}, 1, -1},
      {plain, Value(), Value(), 0, 0},
  };
  for (const auto& pair : cases) {
    const auto reversed = pair.descriptor.reversedSortDescriptor();
    const auto again = reversed->reversedSortDescriptor()->copyWithZone();
    const Row first{pair.first}, second{pair.second};
    EXPECT_EQ(pair.descriptor.compareObject(first, second), pair.ascending);
    EXPECT_EQ(reversed->compareObject(first, second), pair.descending);
    EXPECT_EQ(again->compareObject(first, second), pair.ascending);
    const auto& same = *again;
    EXPECT_EQ(typeid(same), typeid(pair.descriptor));
    EXPECT_EQ(again->key(), pair.descriptor.key());
    EXPECT_EQ(again->selector(), pair.descriptor.selector());
  }
}

/// Inserts each row behind the last one that it does not stand before.
template <typename Rows>
void sortPlainly(Rows& rows, std::span<const std::unique_ptr<SortDescriptor>> descriptors) {
  const auto before = [&](const auto& a, const auto& b) {
    for (const auto& descriptor : descriptors) {
      const int order = descriptor->compareObject(a, b);
      if (order > 0 || (order < 0 && descriptor->compareObject(b, a) < 0)) return false;
      if (order < 0) return true;
    }
    return false;
  };
  for (auto row = rows.begin(); row != rows.end(); ++row)
    for (auto at = row; at != rows.begin() && before(*at, *(at - 1)); --at)
      std::iter_swap(at, at - 1);
}

void sortFast(std::vector<ResultTrack>& rows, const SortDescriptors& descriptors) {
  arrange(rows, sortedOrder(rows.size(), descriptors, [&](std::size_t row, std::size_t column) {
            return rows[row].value(std::string_view(descriptors[column]->key()));
          }));
}

std::vector<TrackBuilder> randomTracks(std::mt19937& random) {
  const std::vector<std::string> artists = {"",      "abc", "ABC",       "Abd",
                                            "Ärzte", "Zoo", "abcdefgh1", "abcdefgh2"};
  std::vector<TrackBuilder> built;
  const std::size_t size = random() % 60;
  std::int32_t group = 0;
  while (built.size() < size) {
    // As texts, 10 stands before 2, and what is large not behind what is small.
    if (random() % 3 == 0)
      group = static_cast<std::int32_t>(random() % (random() % 2 ? 12 : 2'147'483'648));
    built.push_back(track("Vol. " + std::to_string(random() % 12)));
    built.back().by(artists[random() % artists.size()]).inGroup(group);
    built.back().album(artists[random() % 3]).number(random() % 3).plays(random() % 4);
  }
  return built;
}

std::vector<const TrackRecord*> recordsOf(const std::vector<ResultTrack>& rows) {
  std::vector<const TrackRecord*> records;
  for (const ResultTrack& row : rows) records.push_back(row.record);
  return records;
}

TEST(DescriptorSort, AgreesWithComparingOneByOne) {
  std::mt19937 random(3);
  SortDescriptors kinds;
  kinds.push_back(
      std::make_unique<MySortDescriptor>("tArtist", true, localizedCaseInsensitiveCompare));
  kinds.push_back(std::make_unique<MySortDescriptor>("tAlbum", true, compare));
  kinds.push_back(std::make_unique<MyNumSortDescriptor>("tPlayCount", true, compare));
  kinds.push_back(std::make_unique<PlainSortDescriptor>("tGroupID"));
  kinds.push_back(std::make_unique<MySortDescriptor>("tName", true, localizedStandardCompare));
  kinds.push_back(std::make_unique<PlainSortDescriptor>("tTrackNum"));
  for (int round = 0; round < 200; ++round) {
    const World world(randomTracks(random));
    SortDescriptors descriptors;
    for (std::size_t count = random() % 4; count > 0; --count) {
      const SortDescriptor& kind = *kinds[random() % kinds.size()];
      descriptors.push_back(random() % 2 ? kind.copyWithZone() : kind.reversedSortDescriptor());
    }
    std::vector<ResultTrack> fast = world.rows(), plain = world.rows();
    sortFast(fast, descriptors);
    sortPlainly(plain, descriptors);
    EXPECT_EQ(recordsOf(fast), recordsOf(plain)) << round;
  }
}

TEST(Ordering, AgreesWithComparingOneByOne) {
  std::mt19937 random(5);
  for (int round = 0; round < 200; ++round) {
    const World world(randomTracks(random));
    std::vector<std::string> criteria = {"tName"};
    SortDescriptors descriptors;
    for (const char* key : {"tArtist", "tAlbum"}) {
      if (random() % 2) continue;
      criteria.insert(criteria.begin(), key);
      descriptors.push_back(
          std::make_unique<MySortDescriptor>(key, true, localizedCaseInsensitiveCompare));
    }
    if (random() % 2) {
      criteria.insert(criteria.begin(), "tTrackNum");
      descriptors.push_back(std::make_unique<PlainSortDescriptor>("tTrackNum"));
    }
    descriptors.push_back(std::make_unique<PlainSortDescriptor>("tGroupID"));
    std::vector<ResultTrack> fast = world.rows(), plain = world.rows();
    orderGroups(fast, criteria);
    sortPlainly(plain, descriptors);
    EXPECT_EQ(recordsOf(fast), recordsOf(plain)) << round;
    for (std::size_t i = 0; i < fast.size(); ++i) {
      const std::int32_t previous = i ? fast[i - 1].dupeSort : 0;
      const bool newRun = i == 0 || fast[i - 1].tGroupID != fast[i].tGroupID;
      EXPECT_EQ(fast[i].dupeSort, previous + (newRun ? 1 : 0));
    }
  }
}

}  // namespace
}  // namespace kestrel
