#include <gtest/gtest.h>

#include "tests/ui/library_harness.h"
#include "ui/geometry.h"

namespace kestrel {
namespace {

TEST(TableGeometry, BringsTheSelectedRowToTheMiddle) {
  const testing::LibraryHarness world;
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
