// What a track has been given, changed in place: nothing else of the document moves.
#include <gtest/gtest.h>

#include "tests/musicapp/document/document_world.h"

namespace kestrel::testing {
namespace {

using command::SetValues;

/// A document with one track, 0xA, whose entry has these lines behind its ID.
std::string documentWith(const std::string& lines) {
  return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\">\n<dict>\n"
         "\t<key>Library Persistent ID</key><string>AB</string>\n\t<key>Tracks</key>\n\t<dict>\n"
         "\t\t<key>7</key>\n\t\t<dict>\n\t\t\t<key>Track ID</key><integer>7</integer>\n" +
         lines +
         "\t\t\t<key>Persistent ID</key><string>000000000000000A</string>\n"
         "\t\t\t<key>Name</key><string>Tea</string>\n\t\t</dict>\n\t</dict>\n"
         "\t<key>Playlists</key>\n\t<array>\n\t</array>\n</dict>\n</plist>\n";
}

std::string line(const std::string& key, const std::string& element) {
  return "\t\t\t<key>" + key + "</key>" + element + "\n";
}

TrackValues values(std::int64_t plays, std::int64_t rating = 0, std::int64_t added = 0,
                   std::int64_t played = 0, const std::string& comments = {}) {
  TrackValues made;
  made.plays = plays;
  made.rating = rating;
  if (added) made.added = OptionalDate{added};
  if (played) made.lastPlayed = OptionalDate{played};
  made.comments = comments;
  return made;
}

TEST(DocumentValues, AreChangedWhereTheyStandAndPutWhereOthersWouldLookForThem) {
  using enum TrackValue;
  const std::string year = line("Year", "<integer>1999</integer>"),
                    own = line("My Own", "<array><integer>1</integer></array>"),
                    skips = line("Skip Count", "<integer>2</integer>");
  const struct {
    const char* what;
    std::string before, after;
    TrackValueSet which;
    TrackValues given;
  } cases[] = {
      {"a number in place",
       year + line("Play Count", "<integer>3</integer>") + own,
       year + line("Play Count", "<integer>15</integer>") + own,
       {plays},
       values(15)},
      {"a new one between its neighbours",
       year + skips + own,
       year + line("Play Count", "<integer>15</integer>") + skips + own,
       {plays},
       values(15)},
      {"of a repeated key the last counts",
       line("Play Count", "<integer>3</integer>") + line("Play Count", "<integer>4</integer>"),
       line("Play Count", "<integer>3</integer>") + line("Play Count", "<integer>5</integer>"),
       {plays},
       values(5)},
      {"local time moves along",
       line("Play Count", "<integer>3</integer>") +
           line("Play Date", "<integer>3500000000</integer>") +
           line("Play Date UTC", "<date>2014-11-22T08:53:20Z</date>"),
       line("Play Count", "<integer>4</integer>") +
           line("Play Date", "<integer>3500000100</integer>") +
           line("Play Date UTC", "<date>2014-11-22T08:55:00Z</date>"),
       {plays},
       values(4, 0, 0, 1'416'646'500)},
      {"a rating that was worked out becomes the user's",
       line("Rating", "<integer>60</integer>") + line("Rating Computed", "<true/>") + own,
       line("Rating", "<integer>60</integer>") + own,
       {rating},
       values(0, 60)},
      {"nothing goes with its key",
       year + line("Comments", "<string>x</string>") + own,
       year + own,
       {comments},
       values(0)},
      {"what is no value of these sorts stays",
       year + skips,
       year + skips,
       {rating},
       values(9, 0, 5, 5, "no")},
      {"a date",
       line("Date Added", "<date>2014-11-22T08:55:00Z</date>"),
       line("Date Added", "<date>2001-09-09T01:46:40Z</date>"),
       {added},
       values(0, 0, 1'000'000'000)},
      {"an odd spelling",
       line("Comments", "<string/>") + year,
       line("Comments", "<string>a &#60; b</string>") + year,
       {comments},
       values(0, 0, 0, 0, "a < b")},
  };
  for (const auto& one : cases) {
    SCOPED_TRACE(one.what);
    DocumentWorld world(documentWith(one.before));
    world.open();
    const auto stored = [&] { return TemporaryFolder::read(world.path); };
    std::string reversal;
    {
      const auto batch = world.app->beginBatch();
      ASSERT_FALSE(world.app->run(SetValues{one.which, {{0xA, one.given}}}).failed());
      batch->commit([&](std::string_view bytes) { reversal = bytes; });
    }
    std::string expected = documentWith(one.after);
    // Either spelling of a character will do.
    if (const auto place = expected.find("&#60;");
        place != std::string::npos && stored().find("&lt;") != std::string::npos)
      expected.replace(place, 5, "&lt;");
    EXPECT_EQ(stored(), expected);
    const auto now = world.app->valuesOf(std::vector<std::uint64_t>{0xA});
    world.open();
    EXPECT_TRUE(isSame(TrackValueSet::all(), *now[0],
                       *world.app->valuesOf(std::vector<std::uint64_t>{0xA})[0]))
        << "the lists say what the document does";
    const auto batch = world.app->beginBatch();
    EXPECT_TRUE(batch->revert(reversal));
    batch->commit();
    EXPECT_EQ(stored(), documentWith(one.before));
  }
}

TEST(DocumentValues, OfATrackThatLeavesOrComesBackAreNoTrouble) {
  using enum TrackValue;
  const std::string lines = line("Play Count", "<integer>3</integer>");
  DocumentWorld world(documentWith(lines));
  world.open();
  std::string reversal;
  {
    const auto batch = world.app->beginBatch();
    ASSERT_FALSE(world.app->run(SetValues{{plays}, {{0xA, values(9)}}}).failed());
    ASSERT_FALSE(world.app->run(command::DeleteTracks{{0xA}}).failed());
    batch->commit([&](std::string_view bytes) { reversal = bytes; });
  }
  EXPECT_EQ(TemporaryFolder::read(world.path).find("Play Count"), std::string::npos);
  const auto batch = world.app->beginBatch();
  ASSERT_FALSE(world.app->run(command::CreatePlaylist{"New"}).failed());
  ASSERT_FALSE(world.app->run(command::RestoreTracks{reversal}).failed());
  ASSERT_FALSE(world.app->run(SetValues{{rating}, {{0xA, values(0, 80)}}}).failed());
  batch->commit();
  const std::string stored = TemporaryFolder::read(world.path);
  EXPECT_NE(stored.find(line("Play Count", "<integer>3</integer>") +
                        line("Rating", "<integer>80</integer>")),
            std::string::npos)
      << stored;
}

}  // namespace
}  // namespace kestrel::testing
