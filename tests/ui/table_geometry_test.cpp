#include "ui/table_geometry.h"

#include <gtest/gtest.h>

namespace kestrel {
namespace {

TEST(TableGeometry, BringsTheSelectedRowToTheMiddle) {
  for (const auto& [row, y] : {std::pair{4UL, 0.0}, {5, 10.0}, {99, 1890.0}}) {
    TableGeometry upper{100, 20, 300, {300, 200}, {7, 7}, 3};
    TableGeometry lower = upper;
    TextSorter::selectInTable(row, false, upper, lower);
    EXPECT_EQ(lower.selectedRow, row);
    EXPECT_EQ(lower.visibleOrigin, (Point{0, y}));
    EXPECT_EQ(upper.selectedRow, 3U);
    EXPECT_EQ(upper.visibleOrigin, (Point{7, 7}));
  }
}

TEST(TableGeometry, WithoutARowThereIsNothingToCentre) {
  TableGeometry table{2, 20, 300, {300, 10}, {7, 7}, 1};
  TextSorter::selectInTable(2, true, table, table);
  EXPECT_EQ(table.selectedRow, 1U);
  EXPECT_EQ(table.visibleOrigin, (Point{7, 7}));
  TextSorter::scrollToCenter(nullptr);
  table.selectedRow.reset();
  TextSorter::scrollToCenter(&table);
  EXPECT_EQ(table.visibleOrigin, Point());
}

}  // namespace
}  // namespace kestrel
