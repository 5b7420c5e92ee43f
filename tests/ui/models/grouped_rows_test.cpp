#include "ui/models/grouped_rows.h"

#include <gtest/gtest.h>

#include "platform/random.h"

namespace kestrel {
namespace {

using Group = GroupedRows::Group;

/// What stands in each row, made the slow way: a header's group is negative.
std::vector<std::int64_t> rowsOf(const std::vector<Group>& groups) {
  std::vector<std::int64_t> rows;
  for (const Group& group : groups) {
    rows.push_back(-1 - group.number);
    for (std::uint32_t i = 0; !group.folded && i < group.count; ++i)
      rows.push_back(group.first + i);
  }
  return rows;
}

TEST(GroupedRows, FindsEveryRowHoweverGroupsAreFoldedAndOrdered) {
  SeededRandom random(3);
  for (int round = 0; round < 40; ++round) {
    std::vector<Group> groups;
    std::uint32_t rows = 0;
    for (std::int32_t number = 0; number < 30; ++number) {
      groups.push_back({number, rows, 1 + random.below(4), random.below(3) == 0});
      rows += groups.back().count;
    }
    // As found, turned round, or in any order.
    if (round % 3 == 1) std::reverse(groups.begin(), groups.end());
    if (round % 3 == 2)
      for (std::size_t i = groups.size() - 1; i > 0; --i)
        std::swap(groups[i], groups[random.below(static_cast<std::uint32_t>(i + 1))]);
    GroupedRows table(groups);
    for (int step = 0; step < 20; ++step) {
      const std::size_t at = random.below(30);
      groups[at].folded = !groups[at].folded;
      table.setFolded(at, groups[at].folded);
      ASSERT_EQ(table.groups(), groups);
      const auto expected = rowsOf(groups);
      ASSERT_EQ(table.size(), expected.size());
      for (std::size_t position = 0; position < expected.size(); ++position) {
        const GroupedRows::Place place = table.at(position);
        const std::int64_t found =
            place.row ? std::int64_t{*place.row} : -1 - groups[place.group].number;
        ASSERT_EQ(found, expected[position]);
        if (place.row) {
          ASSERT_EQ(table.positionOf(*place.row), position);
        } else {
          ASSERT_EQ(table.headerOf(place.group), position);
        }
      }
      for (std::uint32_t row = 0; row < rows; ++row) {
        const auto group = table.groupOf(row);
        ASSERT_TRUE(group);
        ASSERT_EQ(table.positionOf(row).has_value(), !groups[*group].folded);
      }
      ASSERT_FALSE(table.groupOf(rows));
    }
    table.setAllFolded(true);
    EXPECT_EQ(table.size(), groups.size());
  }
  EXPECT_EQ(GroupedRows().size(), 0U);
  EXPECT_FALSE(GroupedRows().groupOf(0));
}

}  // namespace
}  // namespace kestrel
