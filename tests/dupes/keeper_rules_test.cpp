#include "dupes/keeper_rules.h"

#include <gtest/gtest.h>
#include <set>

#include "dupes/pick_explanation.h"
#include "platform/settings.h"
#include "tests/dupes/builders.h"
#include "ui/uncalled_operations.h"

namespace kestrel {
namespace {

using namespace kestrel::testing;

/// Picks among tracks where chance is not welcome: the keeper's position, "-" for none, and why.
std::string picked(const char* rule, const std::vector<TrackBuilder>& tracks) {
  const std::string folder = "/music/best";
  TestProcess test;
  test.preferences.set(settings::alwaysUnCheck, true);
  test.preferences.set(settings::filterFolderLoc, folder);
  const std::vector<ResultTrack> rows = World(tracks).rows();
  const Pick pick =
      chooseKeeper(pointers(rows), keeperRule(std::string_view(rule)), {folder, true}, test.random);
  EXPECT_EQ(TextSorter::filterThisDupeGroup(pointers(rows), rule), pick.keeper);
  return (pick.keeper ? std::to_string(pick.keeper - rows.data()) : "-") + " " +
         explain(pick).english();
}

TEST(KeeperRule, KeepsTheLastOfTheBest) {
  EXPECT_EQ(
      picked("1", {track().added(300), track().added(100), track().added(100), track().added(200)}),
      "2 Oldest Date Added: tie at 1970-01-01 00:01:40: the last in the table");
  EXPECT_EQ(picked("2", {track().plays(5), track().plays(9), track().plays(9)}),
            "2 Most Played: tie at 9 plays: the last in the table");
  EXPECT_EQ(picked("2", {track().plays(12), track().plays(41), track().plays(0)}),
            "1 Most Played: 41 over 12 and 0 plays");
  EXPECT_EQ(picked("3", {track().played(100), track().played(200), track()}),
            "1 Most Recently Played: 1970-01-01 00:03:20 over 1970-01-01 00:01:40 and never");
  EXPECT_EQ(
      picked("4", {track().bits(320), track().bits(128), track().bits(320), track().bits(256)}),
      "2 Highest Bit Rate: tie at 320 kbps: the last in the table");
  EXPECT_EQ(picked("5", {track().path("/music/best/1"), track().path("/music/bestof/2"), track()}),
            "1 Folder Location: 2 tracks in /music/best: the last in the table");
  EXPECT_EQ(picked("5", {track().path("/music/Best/1"), track().path("/x/music/best/2")}),
            "- Folder Location: no track in the folder: no keeper");
  EXPECT_EQ(picked("6", {track().added(300), track().added(100), track().added(300)}),
            "2 Newest Date Added: tie at 1970-01-01 00:05:00: the last in the table");
  EXPECT_EQ(picked("7", {track().plays(3), track().plays(3), track().plays(8)}),
            "1 Least Played: tie at 3 plays: the last in the table");
  EXPECT_EQ(picked("8", {track().played(100), track(), track().played(200)}),
            "1 Least Recently Played: never over 1970-01-01 00:01:40 and 1970-01-01 00:03:20");
  EXPECT_EQ(picked("9", {track().bits(320), track().bits(128), track().bits(128)}),
            "2 Lowest Bit Rate: tie at 128 kbps: the last in the table");
  EXPECT_EQ(
      picked("10", {track().path("/ab.mp3"), track().path("/cd.mp3"), track().path("/e.mp3")}),
      "2 Shortest File Name: 5 over 6 characters");
  EXPECT_EQ(picked("10", {track().path("/long/ab.mp3"), track().path("/cd.mp3"), track().cloud()}),
            "1 Shortest File Name: tie at 6 characters: the last in the table; 1 cloud track not "
            "considered");
  // Lengths are in UTF-16 units: two for a clef, one for an accented letter.
  EXPECT_EQ(picked("10", {track().path("/é.mp3"), track().path("/𝄞.mp3")}),
            "0 Shortest File Name: 5 over 6 characters");
  // Beyond 1000 only the first of all candidates counts.
  const std::string longName = "/m/" + std::string(1001, 'n');
  EXPECT_EQ(picked("10", {track().path(longName), track().path(longName + "n")}),
            "0 Shortest File Name: 1001 over 1002 characters");
  EXPECT_EQ(
      picked("10", {track().cloud(), track().path(longName)}),
      "- Shortest File Name: only very long file names: no keeper; 1 cloud track not considered");
  EXPECT_EQ(picked("10", {track().cloud(), track().cloud()}),
            "- Shortest File Name: only cloud tracks: no keeper");
  EXPECT_EQ(picked("12", {track().modified(300), track().modified(100), track().modified(100)}),
            "2 Oldest Date Modified: tie at 1970-01-01 00:01:40: the last in the table");
  // A missing date is the earliest.
  EXPECT_EQ(picked("12", {track(), track().modified(-50'000'000)}),
            "0 Oldest Date Modified: no date over 1968-06-01 07:06:40");
  EXPECT_EQ(picked("13", {track().modified(300), track().modified(300), track().modified(100)}),
            "1 Newest Date Modified: tie at 1970-01-01 00:05:00: the last in the table");
  EXPECT_EQ(picked("14", {track().bytes(5), track().bytes(10), track().bytes(9)}),
            "1 Largest File Size: 10 over 5 and 9 bytes");
  EXPECT_EQ(picked("15", {track().bytes(5), track().bytes(1), track().bytes(4), track().bytes(3),
                          track().bytes(2)}),
            "1 Smallest File Size: 1 over 5, 4, 3 and 1 more bytes");
  for (const std::string& none : {std::string("0"), std::to_string(keeperRules().size() + 1),
                                  std::string("02"), std::string()})
    EXPECT_EQ(picked(none.c_str(), {track(), track()}), "- no such rule: no keeper");
}

TEST(KeeperRule, ChanceDecidesWhenTheRuleCannot) {
  TestProcess test;
  test.preferences.set(settings::filterFolderLoc, "/nowhere");
  const std::vector<ResultTrack> rows =
      World({track().cloud(), track().cloud(), track().cloud()}).rows();
  for (const bool alwaysUnCheck : {false, true})
    for (const char* rule : {"5", "10", "11", "99"}) {
      test.preferences.set(settings::alwaysUnCheck, alwaysUnCheck);
      std::set<const ResultTrack*> seen;
      for (int i = 0; i < 200; ++i)
        seen.insert(TextSorter::filterThisDupeGroup(pointers(rows), rule));
      // The arbitrary rule does not ask whether chance is welcome.
      const bool chance = !alwaysUnCheck || std::string_view(rule) == "11";
      EXPECT_EQ(seen.size(), chance ? 3U : 1U) << rule;
      EXPECT_EQ(seen.contains(nullptr), !chance) << rule;
    }
  EXPECT_EQ(
      explain(chooseKeeper(pointers(rows), KeeperRule::singleArbitrary, {}, test.random)).english(),
      "Single Arbitrary: chosen at random");
  EXPECT_EQ(explain(chooseKeeper(pointers(rows), KeeperRule::shortestFileName, {}, test.random))
                .english(),
            "Shortest File Name: only cloud tracks: chosen at random");
}

TEST(KeeperRule, EveryPathIsInTheEmptyFolder) {
  SeededRandom random(1);
  const std::vector<ResultTrack> rows = World({track(), track().cloud(), track().missing()}).rows();
  const Pick pick = chooseKeeper(pointers(rows), KeeperRule::folderLocation, {}, random);
  EXPECT_EQ(pick.keeper, &rows[2]);
  EXPECT_EQ(explain(pick).english(),
            "Folder Location: 3 tracks in any folder: the last in the table");
}

TEST(KeeperFlags, MissingFilesAndWholeGroups) {
  std::vector<ResultTrack> rows = World({track(), track().cloud(), track().missing()}).rows();
  const auto all = pointers(rows);
  EXPECT_TRUE(TextSorter::anyDead(all));
  EXPECT_FALSE(TextSorter::anyDead(std::span(all).first(2)));
  std::vector<ResultTrack*> two = {&rows[0], &rows[2]};
  TextSorter::setAllEntries(two, true);
  EXPECT_TRUE(rows[0].tCheckbox && !rows[1].tCheckbox && rows[2].tCheckbox);
}

}  // namespace
}  // namespace kestrel
