#include <gtest/gtest.h>

#include "dupes/pick_explanation.h"
#include "platform/settings.h"
#include "tests/dupes/builders.h"
#include "ui/dupe_search.h"

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

/// Decides for tracks by a rule, in a folder where there are none.
struct Decide {
  explicit Decide(std::int64_t rule) {
    settings.rule = std::to_string(rule);
    settings.ruleNumber = rule;
    settings.keeper.folder = "/nowhere";
  }
  Decide& type(std::string text) { return settings.fileType = std::move(text), *this; }
  Decide& bits(std::string text) { return settings.bitRate = std::move(text), *this; }
  Decide& orNobody() { return settings.keeper.alwaysUnCheck = true, *this; }
  /// Flags and explanation.
  std::string among(const std::vector<TrackBuilder>& tracks) {
    SeededRandom random(1);
    const std::vector<ResultTrack> rows = World(tracks).rows();
    const GroupDecision decision = GroupFilter(settings).decide(pointers(rows), random);
    return flagsOf(decision) + " " + explain(decision).english();
  }
  FilterSettings settings;
};

TEST(GroupFilter, SetsAsideMissingFiles) {
  const TrackBuilder gone = track().missing().plays(9);
  EXPECT_EQ(Decide(2).among({track().plays(1), gone, track()}),
            "Knn Most Played: 1 over 0 plays; 1 missing file set aside");
  EXPECT_EQ(Decide(2).among({gone, track()}), "nK the only track whose file is there");
  EXPECT_EQ(Decide(2).among({gone, gone}), "nn all files are missing: no keeper");
  EXPECT_EQ(Decide(2).among({track()}), "- fewer than two tracks: nothing to decide");
  EXPECT_EQ(Decide(2).among({}), " fewer than two tracks: nothing to decide");
}

TEST(GroupFilter, NarrowsByFileTypeThenByBitRate) {
  const TrackBuilder mp3 = track().kind("MPEG audio file").bits(320).plays(1);
  const TrackBuilder aac = track().kind("AAC audio file").bits(256).plays(9);
  const TrackBuilder bought = track().kind("Purchased AAC audio file").plays(1);
  const TrackBuilder lossless = track().kind("Apple Lossless audio file").plays(1);
  const TrackBuilder cloud = track().cloud().plays(2);
  const std::string one = "Most Played: 1 play; among those of the wanted file type";
  // File types go by their first two characters.
  EXPECT_EQ(Decide(2).type("MP3").among({mp3, aac}), "Kn " + one);
  EXPECT_EQ(Decide(2).type("MP").among({mp3, aac}), "Kn " + one);
  EXPECT_EQ(Decide(2).type("Apple Lossless").among({lossless, aac}), "Kn " + one);
  EXPECT_EQ(Decide(2).type("Purchased").among({bought, aac}), "Kn " + one);
  EXPECT_EQ(Decide(2).type("Local files").among({cloud, mp3}), "nK " + one);
  EXPECT_EQ(Decide(2).type("Cloud tracks").among({cloud, aac}).substr(0, 2), "Kn");
  EXPECT_EQ(Decide(2).type("AAC").among({mp3, aac}).substr(0, 2), "nK");
  // Nobody has the wanted type: all are asked, or none is kept.
  EXPECT_EQ(Decide(2).type("WAV").bits("320").among({mp3, aac}),
            "nK Most Played: 9 over 1 plays; no track of the wanted file type");
  EXPECT_EQ(Decide(2).type("WAV").orNobody().among({mp3, track().missing(), aac}),
            "nnn no track of the wanted file type: no keeper");
  // The bit rate counts only beside a file type, and only if somebody has it.
  const TrackBuilder coarse = track().kind("MPEG audio file").bits(128).plays(7);
  EXPECT_EQ(Decide(2).bits("320 kbps").among({mp3, aac}), "nK Most Played: 9 over 1 plays");
  EXPECT_EQ(Decide(2).type("MP3").bits("320 kbps").among({mp3, coarse, aac}),
            "Knn " + one + " and bit rate");
  EXPECT_EQ(Decide(2).type("MP3").bits("192").among({mp3, coarse, aac}),
            "nKn Most Played: 7 over 1 plays; among those of the wanted file type; none with the "
            "wanted bit rate");
}

TEST(GroupFilter, SparesCloudCopiesWhenNamesDecide) {
  const TrackBuilder cloud = track().cloud();
  EXPECT_EQ(Decide(10).among({track().path("/ab"), cloud, track().path("/a")}),
            "nKK Shortest File Name: 1 over 2 characters; 1 cloud track not considered; 1 cloud "
            "track spared");
  EXPECT_EQ(Decide(10).orNobody().among({cloud, cloud}),
            "nn Shortest File Name: only cloud tracks: no keeper");
  EXPECT_EQ(Decide(5).orNobody().among({track(), cloud}),
            "nn Folder Location: no track in the folder: no keeper");
  EXPECT_EQ(Decide(0).orNobody().among({track(), track()}), "nn no such rule: no keeper");
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
    told.push_back(std::string(group) + ": " + explain(decision).english());
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
