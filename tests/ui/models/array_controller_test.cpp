#include "ui/models/array_controller.h"

#include <algorithm>
#include <gtest/gtest.h>

namespace kestrel {
namespace {

struct Row {
  std::string artist;
  int year = 0;
  int number = 0;  ///< order of adding
};

SortKey<Row> byArtist(bool ascending) {
  return plainSortKey<Row>("artist", ascending, [](const Row& row) { return row.artist; });
}
SortKey<Row> byYear(bool ascending) {
  return plainSortKey<Row>("year", ascending, [](const Row& row) { return row.year; });
}

std::string order(const ArrayController<Row>& table) {
  std::string numbers;
  for (const Row& row : table.arrangedRows()) numbers += std::to_string(row.number);
  return numbers;
}

TEST(ArrayController, SortsStablyByAllKeysInTheirDirections) {
  const std::vector<Row> rows = {{"b", 1, 0}, {"a", 2, 1}, {"b", 2, 2},
                                 {"a", 1, 3}, {"b", 1, 4}, {"a", 2, 5}};
  struct Case {
    std::vector<SortKey<Row>> keys;
    std::string expected;
  };
  const std::vector<Case> cases = {
      {{}, "012345"},
      {{byArtist(true)}, "135024"},
      {{byArtist(false)}, "024135"},
      {{byArtist(true), byYear(false)}, "153204"},
      {{byYear(true), byArtist(false)}, "043215"},
  };
  for (const Case& c : cases) {
    ArrayController<Row> table;
    table.setSortOrder(c.keys);
    table.add(std::span(rows).first(2));
    table.add(std::span(rows).subspan(2));
    EXPECT_EQ(order(table), c.expected);
    EXPECT_EQ(table.content()[3].number, 3);
    table.setSortOrder({});
    EXPECT_EQ(order(table), "012345");
  }
}

/// Empty texts are said to come before everything, each other included.
TEST(ArrayController, RowsThatGoBeforeEachOtherKeepTheirOrder) {
  const SortKey<Row> emptiesFirst{"artist", true, [](std::span<const Row> rows) {
                                    return [rows](std::size_t a, std::size_t b) {
                                      if (rows[a].artist.empty()) return -1;
                                      return rows[b].artist.empty() ? 1 : 0;
                                    };
                                  }};
  ArrayController<Row> table;
  table.setSortOrder({emptiesFirst, byYear(true)});
  table.add({{"x", 3, 0}, {"", 9, 1}, {"", 1, 2}, {"x", 2, 3}, {"", 5, 4}});
  EXPECT_EQ(order(table), "12430");  // empties: not by year
}

TEST(ArrayController, ManyEqualRowsStayInTheOrderOfAdding) {
  ArrayController<Row> table;
  table.setSortOrder({byYear(false)});
  std::vector<Row> rows;
  for (int i = 0; i < 5000; ++i) rows.push_back({"", i * 7 % 10, i});
  table.add(std::move(rows));
  EXPECT_TRUE(std::ranges::is_sorted(
      table.arrangedRows(), {}, [](const Row& row) { return std::pair(-row.year, row.number); }));
}

TEST(ArrayController, RowsChangedInPlaceMoveWhenArrangedAgain) {
  ArrayController<Row> table;
  int notified = 0;
  const auto subscription = table.observers.add([&] { ++notified; });
  table.setSortOrder({byYear(true)});
  table.add({{"", 1, 0}, {"", 2, 1}});
  table.arrangedRows()[0].year = 3;
  EXPECT_EQ(order(table), "01");
  EXPECT_EQ(notified, 2);
  table.rearrange();
  EXPECT_EQ(order(table), "10");
  table.removeAll();
  EXPECT_EQ(table.size(), 0U);
  EXPECT_TRUE(std::as_const(table).arrangedRows().empty());
  EXPECT_EQ(notified, 4);
}

}  // namespace
}  // namespace kestrel
