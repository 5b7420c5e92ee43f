#include "app/controller/result_groups.h"

#include <array>
#include <gtest/gtest.h>

#include "platform/random.h"
#include "tests/dupes/builders.h"

namespace kestrel {
namespace {

using testing::track;
using testing::World;

/// Counted the slow way.
ResultSummary counted(const std::vector<ResultTrack>& rows, bool keeperValue,
                      const ResultGroups& groups) {
  ResultSummary summary;
  std::map<std::int32_t, int> keepers;
  for (const ResultTrack& row : rows) {
    const bool keeper = row.tCheckbox == keeperValue;
    keepers[row.tGroupID] += keeper ? 1 : 0;
    ++summary.tracks;
    if (keeper) continue;
    ++summary.toActOn;
    if (row.record->availability() == FileAvailability::reachable)
      summary.bytes += static_cast<std::uint64_t>(row.record->item().fileSize);
  }
  summary.groups = keepers.size();
  for (const auto& [group, count] : keepers) {
    summary.withoutKeeper += count == 0 ? 1 : 0;
    summary.manyKeepers += count > 1 ? 1 : 0;
    summary.open += count != 1 && !groups.isPicked(group) ? 1 : 0;
  }
  return summary;
}

TEST(ResultGroups, TheSummaryStaysRightWhateverIsTicked) {
  SeededRandom random(7);
  std::vector<testing::TrackBuilder> tracks;
  // Members of a group are no neighbours: equal match keys may come from different fields.
  for (int i = 0; i < 120; ++i) {
    auto one = track().bytes(1000 + i).inGroup(static_cast<std::int32_t>(random.below(30)));
    if (i % 7 == 0) one.missing();
    if (i % 11 == 0) one.cloud();
    tracks.push_back(one);
  }
  const World world(tracks);
  std::vector<ResultTrack> rows = world.rows();
  ResultGroups groups(rows);
  bool keeperValue = true;
  groups.count(keeperValue);
  for (int step = 0; step < 500; ++step) {
    const std::uint32_t row = random.below(static_cast<std::uint32_t>(rows.size()));
    const std::uint32_t what = random.below(20);
    // Whatever is done to a group can be put back.
    const GroupState state = groups.state(rows[row].tGroupID);
    if (what == 0) {
      const ResultSummary before = groups.summary();
      groups.invertFlags();
      keeperValue = !keeperValue;
      ASSERT_EQ(groups.summary(), before) << "the keepers are the same";
    } else if (what < 6) {
      // Of several of a group the last.
      groups.makeOnlyKeepers(std::array{groups.members(rows[row].tGroupID).front(), row});
      for (const std::uint32_t member : groups.members(rows[row].tGroupID))
        ASSERT_EQ(groups.isKeeper(member), member == row);
      ASSERT_TRUE(groups.isPicked(rows[row].tGroupID));
    } else {
      // Some, which may be of one group or of several, and the same twice.
      const std::array some{row, random.below(static_cast<std::uint32_t>(rows.size())),
                            groups.members(rows[row].tGroupID).back(), row};
      groups.setFlags(std::span(some).first(1 + random.below(4)), random.below(2) == 0);
    }
    if (what > 16) {
      groups.putBack(state);
      ASSERT_EQ(groups.state(state.group), state);
    }
    ASSERT_EQ(groups.summary(), counted(rows, keeperValue, groups)) << "step " << step;
    ASSERT_EQ(groups.picked().size(), groups.pickedCount());
  }
}

TEST(ResultGroups, ATrackThatIsListedMoreThanOnceIsOneTrack) {
  const World world({track().bytes(1000), track().bytes(100)});
  std::vector<ResultTrack> rows;
  for (const std::size_t listed : {0, 1, 0, 1}) rows.push_back(world.rows()[listed]);
  rows[0].tCheckbox = true;
  ResultGroups groups(rows);
  groups.count(true);
  EXPECT_EQ(groups.summary(), (ResultSummary{4, 1, 1, 100, 0, 0, 0}));
  groups.setFlags(std::array{2U}, true);
  EXPECT_EQ(groups.summary().manyKeepers, 0U);
  groups.setFlags(std::array{0U, 2U}, false);
  EXPECT_EQ(groups.summary(), (ResultSummary{4, 1, 2, 1100, 1, 0, 0}));
}

TEST(ResultGroups, NumbersComeInTheOrderOfTheTableAndMayHaveGaps) {
  const World world(
      {track().inGroup(5), track().inGroup(2), track().inGroup(5), track().inGroup(2)});
  std::vector<ResultTrack> rows = world.rows();
  const ResultGroups groups(rows);
  EXPECT_EQ(groups.numbers(), (std::vector<std::string>{"5", "2"}));
  const auto members = groups.members(5);
  EXPECT_EQ(std::vector<std::uint32_t>(members.begin(), members.end()),
            (std::vector<std::uint32_t>{0, 2}));
  for (const std::int32_t unknown : {-1, 0, 3, 6, 99}) EXPECT_TRUE(groups.members(unknown).empty());
  EXPECT_TRUE(ResultGroups().members(0).empty());
}

}  // namespace
}  // namespace kestrel
