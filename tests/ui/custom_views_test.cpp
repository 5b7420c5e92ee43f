#include "ui/custom_views.h"

#include <cmath>
#include <gtest/gtest.h>

#include "foundation/dates.h"
#include "tests/dupes/builders.h"
#include "tests/musicapp/recording_application.h"
#include "ui/geometry.h"
#include "ui/table_columns.h"

namespace kestrel {
namespace {

using namespace kestrel::testing;

TEST(MenuIcon, WideCanvasesIndent) {
  struct Case {
    Size icon, canvas;
    Rect source;
  };
  const std::vector<Case> cases = {
      {{32, 32}, {17, 17}, {{0, 0}, {32, 32}}},
      {{32, 32}, {20, 17}, {{-5, 0}, {37, 32}}},
      {{32, 32}, {30, 17}, {{-24, 0}, {56, 32}}},
      // 16/15 in single precision is a little more, so that rounding down loses a point.
      {{15, 15}, {16, 16}, {{1, 0}, {14, 15}}},
      // A narrow icon is cut above and below, by its width against 15.
      {{10, 40}, {16, 16}, {{0, 15}, {10, 10}}},
      {{0, 0}, {16, 16}, {}},
  };
  for (const auto& [icon, canvas, source] : cases)
    EXPECT_EQ(menuIconDrawing(icon, canvas), (IconDrawing{source, canvas})) << icon.width;
}

TEST(PopupCell, CutsTheIndentationOff) {
  MemoryLog log;
  EXPECT_EQ(KSPopupButtonCell::resizeImage({15, 15}, {15, 15}, log).source,
            (Rect{{0, 0}, {15, 15}}));
  EXPECT_EQ(log.lines().front(), "cropRect.size.width: 15.000000") << "15 is not too long";
  EXPECT_EQ(KSPopupButtonCell::drawTitle("f", {30, 17}, "Party", {{2, 3}, {180, 22}}, log),
            (IconDrawing{{{15, 0}, {15, 15}}, {15, 15}}));
  EXPECT_EQ(log.lines()[6], "IMAGE TOO LONG");
}

TEST(CustomViews, DrawTitlesAndSelections) {
  EXPECT_EQ(KSTableHeaderCell::titleRect({{4, 0}, {90, 14}}, {{0, 2}, {100, 25}}, 14),
            (Rect{{4, 7.5}, {90, 14}}));
  using Style = SelectionHighlightStyle;
  const Rect bounds = {{0, 40}, {300, 20}};
  EXPECT_FALSE(MyNSTableRowView::drawSelection(false, Style::regular, bounds));
  EXPECT_FALSE(MyNSTableRowView::drawSelection(true, Style::none, bounds));
  const auto drawn = MyNSTableRowView::drawSelection(true, Style::regular, bounds);
  ASSERT_TRUE(drawn);
  EXPECT_EQ(drawn->rect, bounds);
  EXPECT_FLOAT_EQ(static_cast<float>(std::get<FixedColor>(drawn->stroke).green), 2.0F / 3);
}

TEST(TrackInfo, RowsGrowWithTheirValues) {
  const auto height = [](const TrackInfoRow& row) {
    return KSInfoDel::heightOfRow(row, 40, [](std::string_view text, double width, double most) {
      EXPECT_EQ(most, 9999);
      return 15.0 * std::ceil(static_cast<double>(text.size()) * 10 / width);
    });
  };
  EXPECT_EQ(height({"a label of more than one line", ""}), 21);
  EXPECT_EQ(height({"", "abcd"}), 21);
  EXPECT_EQ(height({"", "abcde"}), 42);
  EXPECT_NEAR(KSInfoDel::heightOfRow({"", "x"}, 40, [](auto...) { return 17.0; }), 23.8, 1e-5);
}

TEST(TrackInfo, TellsWhatTheRecordHolds) {
  ShortDateTimeFormatter dates("en_GB", "UTC");
  const auto rows =
      trackInfoRows(World({track("Help!").by("The Beatles").bits(128)}).rows()[0], dates);
  EXPECT_EQ(rows.front(), (TrackInfoRow{"Name", "Help!"}));
  for (const TrackInfoRow& row : rows) EXPECT_FALSE(row.tValue.empty()) << row.tLabel;
}

TEST(PairsTable, DoubleClickRevealsByHalf) {
  RecordingApplication application;
  MemoryLog log;
  for (const TablePress& press : {TablePress{1, 10, 400, 2},
                                  {2, 10, 400, -1},
                                  {2, 199.5, 400, 2},
                                  {2, 200, 400, 2},  // the middle belongs to the keeper
                                  {2, 399, 400, 0}})
    KSRepTrackTableView(&application, log)
        .mouseDown(press, [](std::size_t row, std::string_view path) {
          const char* list = path == "playlistPID" ? "A" : path == "keeper.hexpid" ? "C" : "B";
          return Value(list + std::to_string(row));
        });
  EXPECT_EQ(application.commands,
            (std::vector<Command>{command::RevealTrack{0xB2, 0xA2}, command::RevealTrack{0xC2, {}},
                                  command::RevealTrack{0xC0, {}}}));
}

TEST(TableGeometry, BringsTheSelectedRowToTheMiddle) {
  const TestProcess world;
  auto& [upper, lower] = process().state<ResultsTableReferences>();
  const TableGeometry before{100, 20, 300, {300, 200}, {7, 7}, 3};
  struct Case {
    std::size_t row, selected;
    Point origin;
  };
  const Case cases[] = {
      {4, 4, {0, 0}}, {5, 5, {0, 10}}, {99, 99, {0, 1890}}, {100, 3, {7, 7}}};  // no such row
  for (const bool withMain : {true, false})
    for (const auto& [row, selected, origin] : cases) {
      upper = lower = before;
      TextSorter::selectInTable(row, withMain);
      const TableGeometry& changed = withMain ? upper : lower;
      EXPECT_EQ(changed.selectedRow, selected);
      EXPECT_EQ(changed.visibleOrigin, origin);
      const TableGeometry& other = withMain ? lower : upper;
      EXPECT_EQ(other.selectedRow, 3U);
      EXPECT_EQ(other.visibleOrigin, (Point{7, 7}));
    }
  TextSorter::scrollToCenter(nullptr);
  upper.selectedRow.reset();
  TextSorter::scrollToCenter(&upper);
  EXPECT_EQ(upper.visibleOrigin, Point()) << "nothing is there to be centred";
}

}  // namespace
}  // namespace kestrel
