#include "musicapp/track_values.h"

#include <gtest/gtest.h>

#include "musicapp/media_library.h"
#include "musicapp/rhythmbox/player_values.h"

namespace kestrel::testing {
namespace {

TrackValues given(std::int64_t plays, std::int64_t played = 0, std::int64_t rating = 0,
                  std::int64_t added = 0, std::string comments = {}) {
  TrackValues values;
  values.plays = plays;
  if (played) values.lastPlayed = OptionalDate{played};
  values.rating = rating;
  if (added) values.added = OptionalDate{added};
  values.comments = std::move(comments);
  return values;
}

TEST(TrackValues, AreCarriedOverAsEachSortWants) {
  constexpr std::int64_t most = 2147483647;
  const struct {
    const char* what;
    TrackValues kept;
    std::vector<TrackValues> copies;
    TrackValues expected;
    const char* gain;
  } cases[] = {
      {"nothing from nothing", given(0), {given(0), given(0)}, given(0), ""},
      {"sums, the highest, the earliest, the first",
       given(5, 200, 60, 500),
       {given(3, 300, 80, 400, "a"), given(4, 100, 40, 600, "b")},
       given(12, 300, 80, 400, "a"),
       "7 plays, ★★★★, the earlier date added and comments"},
      {"what the kept one has stays",
       given(5, 200, 80, 400, "own"),
       {given(0, 100, 80, 400, "other")},
       given(5, 200, 80, 400, "own"),
       ""},
      {"dates where there were none",
       given(0),
       {given(1, 100, 0, 50)},
       given(1, 100, 0, 50),
       "1 play and the earlier date added"},
      {"a date of playing without a count of it",
       given(0),
       {given(0, 100)},
       given(0, 100),
       "the later date played"},
      {"sums end where libraries do",
       given(most - 2),
       {given(2), given(9)},
       given(most),
       "2 plays"},
      {"more than a sum may be is left alone", given(most + 10), {given(9)}, given(most + 10), ""},
      {"numbers that make no sense",
       given(-4, 0, 0),
       {given(-3), given(6), given(0, 0, 300)},
       given(6, 0, 100),
       "10 plays and ★★★★★"},
      {"what XML cannot hold",
       given(0),
       {given(0, 0, 0, 0, "a\x01z")},
       given(0, 0, 0, 0, "a\xEF\xBF\xBDz"),
       "comments"},
  };
  for (const auto& one : cases) {
    SCOPED_TRACE(one.what);
    std::vector<const TrackValues*> copies;
    for (const TrackValues& copy : one.copies) copies.push_back(&copy);
    const TrackValueSet all = TrackValueSet::all();
    EXPECT_EQ(carriedOver(all, one.kept, copies), one.expected);
    EXPECT_EQ(gainOf(all, one.kept, one.expected).english(), one.gain);
    EXPECT_EQ(carriedOver({}, one.kept, copies), one.kept) << "off unless asked";
    // Each sort alone changes nothing else.
    for (const TrackValue value : all.list()) {
      const TrackValues after = carriedOver({value}, one.kept, copies);
      EXPECT_TRUE(isSame(value, after, one.expected));
      EXPECT_TRUE(isSame(all.without({value}), after, one.kept));
    }
  }
}

TEST(TrackValues, OfItemsAreThoseThatAUserGave) {
  const auto items = std::make_shared<MediaItems>();
  MediaItem made, other;
  made.persistentID = 1;
  made.playCount = 3;
  made.added = OptionalDate{100};
  made.lastPlayed = OptionalDate{200};
  made.rating = 80;
  made.isRatingComputed = true;
  other.persistentID = 2;
  items->append({made, other});
  EXPECT_EQ(valuesOf(made), given(3, 200, 0, 100));
  GivenValues changed;
  give(changed, 1, {TrackValue::rating}, given(9, 9, 60, 9, "no"));
  give(changed, 1, {TrackValue::comments}, given(9, 9, 9, 9, "yes"));
  std::vector<TrackValues> now;
  withValues(items, changed)->forEach([&](const MediaItem& item) {
    now.push_back(valuesOf(item));
  });
  ASSERT_EQ(now.size(), 2U);
  EXPECT_EQ(now[0], given(3, 200, 60, 100, "yes")) << "and no longer worked out";
  EXPECT_EQ(now[1], given(0));
  EXPECT_EQ(withValues(items, {}), items) << "nothing to be copied";
}

TEST(RhythmboxValues, AreChangedInTheFileWhereTheyStand) {
  using rhythmbox::GivenByUri;
  const auto file = [](const std::string& elements) {
    return "<?xml version=\"1.0\"?>\n<rhythmdb version=\"2.0\">\n"
           "  <entry type=\"song\">\n    <title>other</title>\n"
           "    <location>file:///b.mp3</location>\n    <play-count>7</play-count>\n  </entry>\n"
           "  <entry type=\"song\">\n    <title>a</title>\n"
           "    <location>file:///a%20b.mp3</location>\n" +
           elements + "  </entry>\n  <entry type=\"iradio\">\n    <location>file:///a%20b.mp3" +
           "</location>\n  </entry>\n</rhythmdb>\n";
  };
  const std::string count = "    <play-count>3</play-count>\n",
                    rating = "    <rating>2.5</rating>\n", mtime = "    <mtime>5</mtime>\n",
                    all =
                        "    <first-seen>100</first-seen>\n    <rating>4</rating>\n"
                        "    <play-count>12</play-count>\n    <last-played>200</last-played>\n"
                        "    <comment>a &#38; b</comment>\n";
  const TrackValueSet every = TrackValueSet::all();
  const struct {
    std::string before, after;
    TrackValueSet which;
    TrackValues values;
  } cases[] = {
      {count + mtime, "    <play-count>12</play-count>\n" + mtime, {TrackValue::plays}, given(12)},
      {mtime, mtime + all, every, given(12, 200, 80, 100, "a & b")},
      {count + mtime + rating, mtime, every, given(0)},
      {count + rating, count + rating, {TrackValue::added}, given(0)},
      {rating + count, rating + count, {TrackValue::rating}, given(9, 9, 50, 9)},
      {"    <comment/>\n" + mtime,
       "    <comment>c</comment>\n" + mtime,
       {TrackValue::comments},
       given(0, 0, 0, 0, "c")},
  };
  const std::string uri = "file:///a%20b.mp3";
  for (const auto& one : cases) {
    SCOPED_TRACE(one.before);
    const std::string before = file(one.before);
    const std::string after =
        rhythmbox::withValues(before, "rhythmdb.xml", {{uri, {one.which, one.values}}});
    EXPECT_EQ(after, file(one.after));
    // With what was stored they come back, as they were written.
    const auto stored = rhythmbox::storedValues(before, "rhythmdb.xml", {{uri, {}}});
    ASSERT_TRUE(stored.contains(uri));
    const TrackValues old = rhythmbox::valuesOf(stored.at(uri));
    const std::string back = rhythmbox::withValues(after, "rhythmdb.xml", {{uri, {every, old}}});
    EXPECT_EQ(rhythmbox::storedValues(back, "rhythmdb.xml", {{uri, {}}}), stored);
  }
}

}  // namespace
}  // namespace kestrel::testing
