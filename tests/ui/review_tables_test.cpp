#include "ui/review_tables.h"

#include <algorithm>
#include <gtest/gtest.h>

#include "foundation/dates.h"
#include "tests/dupes/builders.h"
#include "ui/table_columns.h"

namespace kestrel {
namespace {

using namespace kestrel::testing;

struct Tables {
  Preferences preferences;
  KSMaxDel upper{preferences};
  KSMinDel lower{preferences};
  ArrayController<ResultTrack> rows;

  /// Tables show tracks in another order than the library has them: here backwards.
  void hold(std::vector<TrackBuilder> tracks) {
    std::reverse(tracks.begin(), tracks.end());
    std::vector<ResultTrack> made = World(tracks).rows();
    std::reverse(made.begin(), made.end());
    rows.add(std::move(made));
  }
  /// "tArtist+ tAlbum-": the sort order's keys and directions.
  [[nodiscard]] std::string order() const {
    std::string text;
    for (const auto& key : rows.sortOrder())
      text += (text.empty() ? "" : " ") + key.key + (key.ascending ? "+" : "-");
    return text;
  }
  [[nodiscard]] std::string names() const {
    std::string text;
    for (const ResultTrack& row : rows.arrangedRows())
      text += (text.empty() ? "" : " ") + std::string(row.value(TrackKey::tName).text());
    return text;
  }
  [[nodiscard]] std::string stored() const { return preferences.text("sortColumn"); }
};

TEST(HeaderClick, ExtendsTheClickedColumnsOwnKey) {
  struct Case {
    const char* column;
    const char* once;
    const char* twice;
  };
  const std::vector<Case> cases = {
      {"tArtist", "tArtist+ tAlbum+ tDiscNum+ tTrackNum+", "tArtist- tAlbum+ tDiscNum+ tTrackNum+"},
      // The one column that turns its second key round.
      {"tAlbumArtist", "tAlbumArtist+ tAlbum+ tDiscNum+ tTrackNum+",
       "tAlbumArtist- tAlbum- tDiscNum+ tTrackNum+"},
      {"tGenre", "tGenre+ tArtist+ tAlbum+ tDiscNum+ tTrackNum+",
       "tGenre- tArtist+ tAlbum+ tDiscNum+ tTrackNum+"},
      {"tShow", "tShow+ tSeason+ tEpisodeNum+", "tShow- tSeason+ tEpisodeNum+"},
      {"dupeSort", "dupeSort+", "dupeSort-"},
      {"tBit", "tBit+", "tBit-"},
  };
  for (const Case& c : cases) {
    Tables tables;
    clickColumnHeader(tables.upper, tables.rows, c.column);
    EXPECT_EQ(tables.order(), c.once);
    clickColumnHeader(tables.upper, tables.rows, c.column);
    EXPECT_EQ(tables.order(), c.twice);
    EXPECT_EQ(tables.stored(), c.column);
    clickColumnHeader(tables.lower, tables.rows, "tName");
    EXPECT_EQ(tables.order(), "tName+");
    EXPECT_EQ(tables.stored(), c.column) << "only the upper table remembers";
  }
}

TEST(HeaderClick, LeavesSomeThingsAlone) {
  Tables tables;
  clickColumnHeader(tables.upper, tables.rows, "tWorkMove");
  EXPECT_EQ(tables.order(), "tWorkMove+ tWorkNum+");
  clickColumnHeader(tables.lower, tables.rows, "tWorkMove");
  EXPECT_EQ(tables.order(), "tWorkMove-") << "the lower table does not know works";
  clickColumnHeader(tables.upper, tables.rows, "tCheckbox");
  EXPECT_EQ(tables.order(), "tCheckbox+");
  EXPECT_EQ(tables.stored(), "tWorkMove");
  TableSort none;
  tables.upper.didClickTableColumn(none, "tArtist");
  EXPECT_TRUE(none.empty());
  EXPECT_EQ(tables.stored(), "tWorkMove");
}

TEST(HeaderClick, ArrangesTheRows) {
  Tables tables;
  const auto song = [](const char* name, const char* artist, const char* album, int disc,
                       int number) {
    TrackBuilder made = track(name).by(artist).album(album).number(number);
    made.item.discNumber = disc;
    return made;
  };
  tables.hold({song("a", "", "Vol. 1", 1, 1), song("b", "Zoo", "Vol. 10", 0, 2),
               song("c", "Zoo", "Vol. 10", 0, 1), song("d", "Zoo", "Vol. 9", 1, 10),
               song("e", "Abba", "", 1, 3), song("f", "", "Vol. 0", 1, 2),
               song("g", "Zoo", "Vol. 9", 1, 9), song("h", "Zoo", "Vol. 9", 1, 0)});
  clickColumnHeader(tables.upper, tables.rows, "tArtist");
  // Numbers by value and unknown ones last; rows that are empty in a key, here in artist or disc,
  // stay as they were, whatever later keys say.
  EXPECT_EQ(tables.names(), "e g d h b c a f");
  clickColumnHeader(tables.upper, tables.rows, "tArtist");
  EXPECT_EQ(tables.names(), "a f g d h b c e");
  clickColumnHeader(tables.upper, tables.rows, "tTrackNumString");
  EXPECT_EQ(tables.names(), "a c b f e g d h");
  sortByColumn(tables.upper, tables.rows, "tName", false);
  EXPECT_EQ(tables.names(), "h g f e d c b a");
  tables.rows.add(World({track("i")}).rows());
  EXPECT_EQ(tables.names(), "i h g f e d c b a") << "new rows are sorted in";
}

TEST(ReviewTables, ColoursTellKeepersAndFiles) {
  struct Case {
    TrackBuilder made;
    Color keeper, other;
  };
  const std::vector<Case> cases = {
      {track(), SystemColor::label, SystemColor::gray},
      {track().cloud(), colors::darkblue, colors::lightBlue},
      {track().missing(), colors::darkred, colors::lightRed},
  };
  for (const Case& c : cases) {
    Tables tables;
    ResultTrack row = World({c.made}).rows().front();
    for (const int keeperMode : {0, 1, 7}) {
      tables.preferences.set("keeperMode", std::int64_t{keeperMode});
      for (const bool ticked : {false, true}) {
        row.tCheckbox = ticked;
        const bool keeper = ticked != (keeperMode != 0);
        EXPECT_EQ(tables.upper.viewForTableColumn("tArtist", row).textColor,
                  keeper ? c.keeper : c.other)
            << keeperMode << ticked;
      }
    }
  }
  EXPECT_EQ(cellTextColor(true, ""), Color(colors::darkred)) << "what is not known is missing";
}

TEST(ReviewTables, StripeGroupsWhileSortedByGroup) {
  Tables tables;
  tables.hold({track("a"), track("b")});
  ResultTrack row = tables.rows.content().front();
  const auto background = [&](int dupeSort, bool filtered) {
    row.dupeSort = dupeSort;
    MyNSTableRowView view = tables.upper.rowViewForRow();
    KSMaxDel::didAddRowView(view, row, tables.rows, filtered);
    return view.backgroundColor;
  };
  EXPECT_EQ(background(1, false), std::nullopt) << "not sorted at all";
  sortByColumn(tables.upper, tables.rows, "dupeSort", false);
  EXPECT_EQ(background(1, false), Color(AssetColor{"mycolor_lightStripe"}));
  EXPECT_EQ(background(2, false), Color(AssetColor{"mycolor_darkStripe"}));
  EXPECT_EQ(background(3, true), std::nullopt);
  sortByColumn(tables.upper, tables.rows, "tArtist", true);
  EXPECT_EQ(background(1, false), std::nullopt);
}

TEST(ReviewTables, KeepTheirFirstColumns) {
  const Tables tables;
  for (const auto& [from, to, upper, lower] : {std::tuple(0, 3, false, false),
                                               {3, 0, false, false},
                                               {1, 2, true, false},
                                               {2, 1, true, false},
                                               {2, 3, true, true}}) {
    EXPECT_EQ(tables.upper.shouldReorderColumn(from, to), upper) << from << to;
    EXPECT_EQ(tables.lower.shouldReorderColumn(from, to), lower) << from << to;
  }
}

TEST(ReviewTables, ATickLeavesTheSelection) {
  using enum TableEvent::Kind;
  const Tables tables;
  struct Case {
    TableEvent event;
    bool upper, lower;
  };
  const std::vector<Case> cases = {
      {{leftMouseDown, 0}, false, false}, {{leftMouseDown, -1}, false, false},
      {{leftMouseDown, 1}, true, true},   {{leftMouseUp, 0}, true, true},
      {{keyDown, -1}, true, true},        {{keyUp, 0}, true, true},
      {{systemDefined, 4}, false, true},  {{systemDefined, 0}, false, false},
      {{other, 4}, true, true},           {{other, 0}, false, false},
  };
  for (const auto& [event, upper, lower] : cases) {
    const auto what = static_cast<int>(event.kind) * 100 + event.columnUnderPointer;
    EXPECT_EQ(tables.upper.selectionShouldChangeInTableView(event), upper) << what;
    EXPECT_EQ(tables.lower.selectionShouldChangeInTableView(event), lower) << what;
  }
}

TEST(TableColumns, ShowWhatRecordsHold) {
  ShortDateTimeFormatter dates("en_GB", "UTC");
  ResultTrack row = World({track("Help!")
                               .by("The Beatles")
                               .lasts(139'000)
                               .bits(256)
                               .bytes(4'200'000)
                               .number(3)
                               .added(86'400)
                               .compilation()
                               .cloud()})
                        .rows()
                        .front();
  row.dupeSort = 12;
  const auto shown = [&](std::string_view column) {
    return displayedText(*tableColumn(column), row, dates);
  };
  const std::vector<std::pair<const char*, const char*>> cells = {
      {"tCheckbox", ""},     {"dupeSort", "12"},     {"tName", "Help!"},
      {"realTime", "2:19"},  {"tBit", "256 kbit/s"}, {"realSize", "4.2 MB"},
      {"tPlayCount", ""},    {"realRating", ""},     {"tTrackNumString", "3"},
      {"tYearString", ""},   {"tPlayDate", ""},      {"tAddDate", "02/01/1970, 00:00"},
      {"tCompilation", "✓"}, {"fileAvail", "Cloud"}, {"tLoc", "Cloud"},
      {"tShow", ""},         {"tEpisodeNum", ""},    {"hexpid", "1"},
  };
  for (const auto& [column, text] : cells) EXPECT_EQ(shown(column), text) << column;
}

}  // namespace
}  // namespace kestrel
