#include "dupes/grouping.h"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <random>
#include <unicode/locid.h>
#include <unicode/unistr.h>

#include "foundation/number_table.h"
#include "tests/dupes/builders.h"

namespace kestrel {
namespace {

using namespace kestrel::testing;
using Names = std::vector<std::string>;
using Tracks = std::vector<const TrackRecord*>;

bool never() { return false; }

Grouping search(const World& world, const Tracks& tracks, const Names& criteria,
                const GroupingOptions& options = {}) {
  return groupTracks(*world.store(), tracks, criteria, options, &never);
}

/// The persistent IDs of the members, group by group.
std::vector<std::vector<std::uint64_t>> idsOf(const Grouping& grouping) {
  std::vector<std::vector<std::uint64_t>> ids(static_cast<std::size_t>(grouping.groups));
  for (const GroupMember& member : grouping.members)
    ids.at(static_cast<std::size_t>(member.group)).push_back(member.record->item().persistentID);
  return ids;
}

using Ids = std::vector<std::vector<std::uint64_t>>;

/// The same search, told as plainly as possible: every track against every group, times against
/// every remaining track.
std::vector<GroupMember> plainSearch(const Tracks& tracks, const Names& criteria,
                                     const GroupingOptions& options) {
  std::vector<std::pair<std::string, Tracks>> buckets;
  for (const TrackRecord* track : tracks) {
    std::string key;
    for (const std::string& criterion : criteria) {
      const Value value = track->value(criterion);
      if (value.isText()) key += value.text();
      if (value.isNumber()) key += std::to_string(value.number());
    }
    if (key.empty()) continue;
    if (!options.caseSensitive) {
      std::string lower;
      key = icu::UnicodeString::fromUTF8(key).toLower(icu::Locale::getRoot()).toUTF8String(lower);
    }
    auto bucket = std::find_if(buckets.begin(), buckets.end(),
                               [&](const auto& other) { return other.first == key; });
    if (bucket == buckets.end()) bucket = buckets.insert(buckets.end(), {key, {}});
    bucket->second.push_back(track);
  }
  std::vector<GroupMember> members;
  std::int32_t group = 0;
  for (const auto& [key, bucket] : buckets) {
    Tracks remaining = bucket;
    const auto take = [&](const TrackRecord* track) { return std::erase(remaining, track) > 0; };
    while (!remaining.empty()) {
      const TrackRecord* first = remaining.front();
      Tracks found = remaining;
      if (options.toleranceSeconds > 0) {
        take(first);
        found = {first};
        for (const TrackRecord* track : bucket) {
          const double a = std::floor(static_cast<double>(first->item().totalTime) / 1000 + 0.5);
          const double b = std::floor(static_cast<double>(track->item().totalTime) / 1000 + 0.5);
          const bool near = std::abs(a - b) <= static_cast<double>(options.toleranceSeconds);
          if (near && take(track)) found.push_back(track);
        }
      } else {
        remaining.clear();
      }
      if (found.size() < 2) continue;
      for (const TrackRecord* track : found) members.push_back({track, group});
      ++group;
    }
  }
  return members;
}

TEST(Grouping, FindsWhatAPlainSearchFinds) {
  std::mt19937 random(7);
  const auto any = [&](const Names& texts) { return texts[random() % texts.size()]; };
  // With letters that change by their place, whose small ones are longer, or of another language;
  // with texts that are one only when joined, or when normalised.
  const Names texts = {"",       "a",       "A", "ab",      "b", "1",      "aΣ", "ας",     "aσ",
                       "Straße", "STRASSE", "İ", "i\u0307", "I", "\u0131", "É",  "E\u0301"};
  for (int round = 0; round < 25; ++round) {
    std::vector<TrackBuilder> built;
    for (std::size_t size = random() % 40; built.size() < size;) {
      TrackBuilder made = track(any(texts)).by(any(texts)).album(any(texts));
      made.number(random() % 3).lasts(random() % 20 * 250);
      if (random() % 2) made.compilation();
      built.push_back(made);
    }
    const World world(built);
    Tracks playlist = world.records();
    for (std::size_t repeats = playlist.empty() ? 0 : random() % 5; repeats > 0; --repeats)
      playlist.push_back(playlist[random() % playlist.size()]);
    for (unsigned subset = 0; subset < 64; ++subset) {
      const Names keys = {"tAlbum", "tName", "tTrackNum", "noSuchKey", "tArtist", "tCompilation"};
      Names criteria;
      for (unsigned i = 0; i < keys.size(); ++i)
        if (subset >> i & 1U) criteria.push_back(keys[i]);
      for (const bool caseSensitive : {false, true})
        for (const int tolerance : {0, 1, 3}) {
          const GroupingOptions options{caseSensitive, tolerance};
          EXPECT_EQ(search(world, playlist, criteria, options).members,
                    plainSearch(playlist, criteria, options))
              << round << ' ' << subset << ' ' << caseSensitive << tolerance;
        }
    }
  }
}

TEST(Grouping, SecondsAreRoundedAndCompareAtAnyDistance) {
  EXPECT_EQ(roundedSeconds(101'499), 101);
  EXPECT_EQ(roundedSeconds(-1'600), -1);
  const World world({track().lasts(0), track().lasts(9'000'000'000'000'000'000)});
  EXPECT_EQ(idsOf(search(world, world.records(), {"tName"}, {false, 1})), Ids());
}

TEST(Grouping, TheFilenameCriterionEmptiesTheResult) {
  const World world({track("a"), track("a")});
  EXPECT_EQ(search(world, world.records(), {"tName", "Filename"}).members.size(), 0U);
  EXPECT_EQ(search(world, world.records(), {"tName", "tFilename"}).members.size(), 2U);
}

TEST(Grouping, StopsSoonAfterACancellation) {
  const World world(std::vector<TrackBuilder>(500, track("a")));
  int polls = 0;
  const Grouping stopped = groupTracks(*world.store(), world.records(), Names{"tName"}, {},
                                       [&] { return ++polls >= 200; });
  EXPECT_TRUE(stopped.cancelled);
  EXPECT_TRUE(stopped.members.empty());
  EXPECT_EQ(polls, 201);
  // One who changes his mind in between gets what was read until then.
  polls = 0;
  const Grouping partial = groupTracks(*world.store(), world.records(), Names{"tName"}, {},
                                       [&] { return ++polls == 200; });
  EXPECT_FALSE(partial.cancelled);
  EXPECT_EQ(partial.members.size(), 200U);
}

TEST(NumberTable, TellsThingsWithEqualHashesApart) {
  NumberTable table(100);
  for (const bool again : {false, true})
    for (std::uint32_t i = 0; i < 100; ++i) {
      const std::uint64_t hash = 0xABCD'0000'0000 + i % 3;
      EXPECT_EQ(table.number(hash, [i](std::uint32_t other) { return other == i; }), i) << again;
    }
  EXPECT_EQ(table.size(), 100U);
}

TEST(Grouping, ManyTracksMayShareOneKey) {
  std::vector<TrackBuilder> built;
  for (std::int64_t i = 0; i < 200'000; ++i) built.push_back(track("a").lasts(i * 7919 % 400'000));
  const World world(built);
  const Grouping result = search(world, world.records(), {"tName"}, {false, 1});
  EXPECT_GE(result.groups, 401 / 3);
  EXPECT_LE(result.groups, 401);
  EXPECT_EQ(search(world, world.records(), {"tName"}).members.size(), built.size());
}

// Keys of large libraries are made by two threads, a stretch of tracks at a time.
TEST(Grouping, FindsCopiesHoweverFarApart) {
  constexpr std::size_t tracks = 140'001;
  constexpr std::size_t titles = 60'013;
  std::vector<TrackBuilder> built;
  Ids expected(titles);
  for (std::size_t i = 0; i < tracks; ++i) {
    built.push_back(track((i / titles % 2 ? "TITLE " : "title ") + std::to_string(i % titles)));
    expected[i % titles].push_back(i + 1);
  }
  const World world(built);
  EXPECT_EQ(idsOf(search(world, world.records(), {"tName"})), expected);
}

}  // namespace
}  // namespace kestrel
