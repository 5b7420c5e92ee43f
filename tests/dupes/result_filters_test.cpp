#include "dupes/result_filters.h"

#include <gtest/gtest.h>

#include "dupes/pick_explanation.h"
#include "platform/settings.h"
#include "tests/dupes/builders.h"

namespace kestrel {
namespace {

using namespace kestrel::testing;

/// Flags as a text: K a keeper, n a non-keeper, - unchanged.
std::string flagsOf(const GroupDecision& decision) {
  std::string text;
  for (const MemberFlag flag : decision.flags)
    text += flag == MemberFlag::keeper ? 'K' : flag == MemberFlag::nonKeeper ? 'n' : '-';
  return text;
}

TEST(GroupFilter, SetsAsideNarrowsAndAsksTheRule) {
  const TrackBuilder mp3 = track().kind("MPEG audio file").bits(320);
  const TrackBuilder aac = track().kind("AAC audio file").bits(256);
  const TrackBuilder bought = track().kind("Purchased AAC audio file").bits(256);
  const TrackBuilder alac = track().kind("Apple Lossless audio file");
  const auto played = [](TrackBuilder made, std::int64_t n) { return made.plays(n); };
  struct Case {
    std::vector<TrackBuilder> members;
    std::int64_t rule;
    std::optional<std::string> fileType, bitRate;
    bool alwaysUnCheck;
    const char* flags;
    const char* explanation;
  };
  const auto none = std::nullopt;
  const std::vector<Case> cases = {
      {{track().plays(1), track().missing().plays(9), track()},
       2,
       none,
       none,
       false,
       "Knn",
       "Most Played: 1 over 0 plays; 1 missing file set aside"},
      {{track().missing().plays(9), track()},
       2,
       none,
       none,
       false,
       "nK",
       "the only track whose file is there"},
      {{track().missing(), track().missing()},
       2,
       none,
       none,
       false,
       "nn",
       "all files are missing: no keeper"},
      {{track()}, 2, none, none, false, "-", "fewer than two tracks: nothing to decide"},
      {{}, 2, none, none, false, "", "fewer than two tracks: nothing to decide"},
      // File types go by their first two characters.
      {{played(mp3, 1), played(aac, 9)},
       2,
       "MP3",
       none,
       false,
       "Kn",
       "Most Played: 1 play; among those of the wanted file type"},
      {{played(mp3, 1), played(aac, 9)},
       2,
       "AAC",
       none,
       false,
       "nK",
       "Most Played: 9 plays; among those of the wanted file type"},
      {{played(alac, 1), played(mp3, 9)},
       2,
       "Apple Lossless",
       none,
       false,
       "Kn",
       "Most Played: 1 play; among those of the wanted file type"},
      {{played(bought, 1), played(aac, 9)},
       2,
       "Purchased",
       none,
       false,
       "Kn",
       "Most Played: 1 play; among those of the wanted file type"},
      {{track().cloud(), track().plays(9)},
       2,
       "Cloud tracks",
       none,
       false,
       "Kn",
       "Most Played: 0 plays; among those of the wanted file type"},
      {{track().cloud().plays(9), track()},
       2,
       "Local files",
       none,
       false,
       "nK",
       "Most Played: 0 plays; among those of the wanted file type"},
      // Nobody has the wanted type: all are asked, or none is kept.
      {{played(aac, 1), played(aac, 9)},
       2,
       "MP3",
       "256 kbps",
       false,
       "nK",
       "Most Played: 9 over 1 plays; no track of the wanted file type"},
      {{played(aac, 1), track().missing(), played(aac, 9)},
       2,
       "MP3",
       none,
       true,
       "nnn",
       "no track of the wanted file type: no keeper"},
      // The bit rate counts only beside a file type, and only if somebody has it.
      {{played(mp3, 1), played(aac, 9)},
       2,
       none,
       "320 kbps",
       false,
       "nK",
       "Most Played: 9 over 1 plays"},
      {{played(mp3, 1), played(mp3, 9).bits(128), played(aac, 5)},
       2,
       "MP",
       "320 kbps",
       false,
       "Knn",
       "Most Played: 1 play; among those of the wanted file type and bit rate"},
      {{played(mp3, 1), played(mp3, 9)},
       2,
       "MP3",
       "192",
       false,
       "nK",
       "Most Played: 9 over 1 plays; among those of the wanted file type; none with the wanted "
       "bit rate"},
      // The rule for file names spares cloud copies.
      {{track().path("/ab"), track().cloud(), track().path("/a")},
       10,
       none,
       none,
       false,
       "nKK",
       "Shortest File Name: 1 over 2 characters; 1 cloud track not considered; 1 cloud track "
       "spared"},
      {{track().cloud(), track().cloud()},
       10,
       none,
       none,
       true,
       "nn",
       "Shortest File Name: only cloud tracks: no keeper"},
      {{track(), track()},
       5,
       none,
       none,
       true,
       "nn",
       "Folder Location: no track in the folder: no keeper"},
      {{track(), track()}, 0, none, none, true, "nn", "no such rule: no keeper"},
  };
  SeededRandom random(1);
  for (const Case& group : cases) {
    const std::vector<ResultTrack> rows = World(group.members).rows();
    const GroupFilter filter({std::to_string(group.rule),
                              group.rule,
                              {"/nowhere", group.alwaysUnCheck},
                              group.fileType,
                              group.bitRate});
    const GroupDecision decision = filter.decide(pointers(rows), random);
    EXPECT_EQ(flagsOf(decision), group.flags) << group.explanation;
    EXPECT_EQ(explain(decision), group.explanation);
  }
}

struct KeeperPass : ::testing::Test {
  void show(const std::vector<TrackBuilder>& built) {
    test.window().bigArrayController.add(World(built).rows());
  }
  std::string flags() {
    std::string text;
    for (const ResultTrack& row : test.window().bigArrayController.content())
      text += row.tCheckbox ? '1' : '0';
    return text;
  }
  TestProcess test;
};

TEST_F(KeeperPass, FlagsTheGivenGroupsInTableOrder) {
  show({track().inGroup(1), track().inGroup(10), track().inGroup(1), track().inGroup(0),
        track().inGroup(10), track().inGroup(0), track().inGroup(1)});
  test.window().bigArrayController.setSortOrder({plainSortKey<ResultTrack>(
      "backwards", false, [](const ResultTrack& row) { return row.record->item().persistentID; })});
  test.preferences.set(settings::filterMatrixButton, 2);
  std::vector<std::string> told;
  const auto tell = [&](std::string_view group, const GroupDecision& decision) {
    told.push_back(std::string(group) + ": " + explain(decision));
  };
  const std::vector<std::string> groups = {"10", "1", "01", "7", "-1", "1x", ""};
  EXPECT_TRUE(TextSorter::filterArray(groups, tell));
  EXPECT_EQ(flags(), "1100000");
  const std::string nothing = "fewer than two tracks: nothing to decide";
  const std::string tie = "Most Played: tie at 0 plays: the last in the table";
  EXPECT_EQ(told,
            (std::vector<std::string>{"10: " + tie, "1: " + tie, "01: " + nothing, "7: " + nothing,
                                      "-1: " + nothing, "1x: " + nothing, ": " + nothing}));
  // In the other mode a tick marks the tracks to act on.
  test.preferences.set(settings::keeperMode, 1);
  TextSorter::filterArray(groups);
  EXPECT_EQ(flags(), "0010101");
}

TEST_F(KeeperPass, ReadsItsSettingsEachTime) {
  show({track().kind("MPEG").bits(128).path("/music/new/a"), track().kind("AAC").bits(256),
        track().kind("MPEG").bits(256).added(5), track().kind("MPEG").bits(256).added(9)});
  const std::vector<std::string> groups = {"0"};
  const auto flagsWith = [&](std::string_view key, PreferenceValue value) {
    test.preferences.set(key, std::move(value));
    TextSorter::filterArray(groups);
    return flags();
  };
  EXPECT_EQ(flagsWith(settings::filterMatrixButton, 1), "0100");
  EXPECT_EQ(flagsWith(settings::filterMatrixButton, 9), "1000");
  EXPECT_EQ(flagsWith(settings::thisFileType, "MP3"), "1000");
  EXPECT_EQ(flagsWith(settings::thisBitType, "256 kbps"), "1000");
  EXPECT_EQ(flagsWith(settings::useBitType, true), "1000");
  EXPECT_EQ(flagsWith(settings::useFileType, true), "0001");
  EXPECT_EQ(flagsWith(settings::thisFileType, "WAV"), "1000");
  EXPECT_EQ(flagsWith(settings::alwaysUnCheck, true), "0000");
  EXPECT_EQ(flagsWith(settings::useFileType, false), "1000");
  test.preferences.set(settings::filterFolderLoc, "/music/new");
  EXPECT_EQ(flagsWith(settings::filterMatrixButton, "5"), "1000");
}

TEST_F(KeeperPass, ShowsItsProgressOnTheSecondBar) {
  show({track(), track()});
  test.preferences.set(settings::filterMatrixButton, 15);
  std::vector<std::string> seen;
  ProgressBar& bar = test.window().mainProgressSpinner;
  const auto watch = bar.observers.add([&] {
    seen.push_back((bar.isHidden() ? "hidden " : "") + std::to_string(int(bar.value())) + "/" +
                   std::to_string(int(bar.maximum())));
  });
  TextSorter::filterArray(std::vector<std::string>{"0", "1", "2"});
  EXPECT_TRUE(seen.empty());  // all of it is the main queue's
  test.mainQueue.drain();
  EXPECT_EQ(seen,
            (std::vector<std::string>{"hidden 0/3", "0/3", "3/3", "3/0", "0/0", "hidden 0/0"}));
  EXPECT_EQ(bar.advances(), 3U);
  EXPECT_EQ(test.window().mainProgressSpinnerStatus.text(), "Filtering by Smallest File Size");
  EXPECT_TRUE(TextSorter::filterArray({}));
  test.mainQueue.drain();
  EXPECT_TRUE(bar.isHidden());
}

}  // namespace
}  // namespace kestrel
