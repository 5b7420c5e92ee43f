#include "ui/row_filter.h"

#include <gtest/gtest.h>

#include "tests/dupes/builders.h"

namespace kestrel {
namespace {

using testing::track;
using testing::World;

/// Positions of the rows that are left.
std::vector<std::size_t> left(RowFilter& filter, std::string_view text,
                              const std::vector<ResultTrack>& rows) {
  filter.start(text, rows);
  while (filter.work(1)) {
  }
  std::vector<std::size_t> positions;
  for (std::size_t i = 0; i < rows.size(); ++i)
    if (filter.matches(i)) positions.push_back(i);
  return positions;
}

TEST(RowFilter, LeavesRowsThatHoldEachWordSomewhere) {
  const World world({track("Über den Wolken").by("Reinhard").path("/music/a.mp3"),
                     track("Help!").by("The Beatles").album("Help!").path("/music/B.m4a"),
                     track("HELP").by("Kürbis").path("/music/ΣΊΓΜΑ.mp3")});
  const std::vector<ResultTrack> rows = world.rows();
  using Positions = std::vector<std::size_t>;
  const std::vector<std::pair<std::string_view, Positions>> cases = {
      {"", {0, 1, 2}},        {"   ", {0, 1, 2}},   {"help", {1, 2}}, {"help BEATLES", {1}},
      {"  the   help ", {1}}, {"helpbeatles", {}},  {"über", {0}},    {"kÜrb", {2}},
      {"b.m4a", {1}},         {"music", {0, 1, 2}}, {"σίγμα", {2}},   {"!", {1}},
  };
  for (const auto& [text, expected] : cases) {
    RowFilter filter;
    EXPECT_EQ(left(filter, text, rows), expected) << text;
  }
}

TEST(RowFilter, TypingOnAndDeletingGiveWhatANewFilterGives) {
  const World world({track("abba"), track("Abbey Road"), track("cab"), track("road abb")});
  const std::vector<ResultTrack> rows = world.rows();
  RowFilter typed;
  for (const std::string_view text :
       {"a", "ab", "abb", "abb ", "abb r", "abb ro", "abb", "", "c", "ca", "road", "roadx", "ro"}) {
    RowFilter fresh;
    EXPECT_EQ(left(typed, text, rows), left(fresh, text, rows)) << text;
  }
  // Half done, then changed: nothing of the first text may stick.
  typed.start("cab", rows);
  typed.work(2);
  RowFilter fresh;
  EXPECT_EQ(left(typed, "cabx", rows), left(fresh, "cabx", rows));
  EXPECT_EQ(left(typed, "abb", rows), left(fresh, "abb", rows));
}

}  // namespace
}  // namespace kestrel
