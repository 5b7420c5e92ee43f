#include "ui/table_geometry.h"

#include <gtest/gtest.h>

#include "tests/library/library_harness.h"

namespace kestrel {
namespace {

TEST(TableGeometry, BringsTheSelectedRowToTheMiddle) {
  const testing::LibraryHarness world;
  auto& [upper, lower] = process().state<ResultsTableReferences>();
  const TableGeometry before{100, 20, 300, {300, 200}, {7, 7}, 3};
  for (const bool withMain : {true, false})
    for (const auto& [row, y] : {std::pair{4UL, 0.0}, {5, 10.0}, {99, 1890.0}}) {
      upper = lower = before;
      TextSorter::selectInTable(row, withMain);
      const TableGeometry& changed = withMain ? upper : lower;
      EXPECT_EQ(changed.selectedRow, row);
      EXPECT_EQ(changed.visibleOrigin, (Point{0, y}));
      const TableGeometry& other = withMain ? lower : upper;
      EXPECT_EQ(other.selectedRow, 3U);
      EXPECT_EQ(other.visibleOrigin, (Point{7, 7}));
    }
}

TEST(TableGeometry, WithoutARowThereIsNothingToCentre) {
  const testing::LibraryHarness world;
  TableGeometry& table = process().state<ResultsTableReferences>().maxTableView;
  table = {2, 20, 300, {300, 10}, {7, 7}, 1};
  TextSorter::selectInTable(2, true);
  EXPECT_EQ(table.selectedRow, 1U);
  EXPECT_EQ(table.visibleOrigin, (Point{7, 7}));
  TextSorter::scrollToCenter(nullptr);
  table.selectedRow.reset();
  TextSorter::scrollToCenter(&table);
  EXPECT_EQ(table.visibleOrigin, Point());
}

}  // namespace
}  // namespace kestrel
