#include "ui/dupe_search.h"

#include <gtest/gtest.h>

#include "platform/settings.h"
#include "tests/dupes/builders.h"
#include "ui/launch.h"

namespace kestrel {
namespace {

using namespace kestrel::testing;
using Names = std::vector<std::string>;

struct Search : ::testing::Test {
  /// A library of these tracks with the playlist 255 of the given items.
  void open(const std::vector<TrackBuilder>& built, std::vector<std::uint64_t> items) {
    test.process.textSorter.groomedTracks = World(built).store();
    Playlist playlist;
    playlist.persistentID = 255;
    playlist.items = std::move(items);
    test.library = std::make_shared<PlaylistLibrary>(std::vector<Playlist>{Playlist(), playlist});
    test.preferences.set(settings::selectedPlaylistPid, "255");
    TextSorter::myLibrary();  // opens it, and says so in the log
  }
  std::string search(const Names& criteria) {
    std::string found = TextSorter::getDupeGroupsWithCriteria(criteria);
    test.mainQueue.drain();
    return found;
  }
  /// The rows in table order: persistent ID, group, run.
  std::vector<std::string> rows() {
    std::vector<std::string> texts;
    for (const ResultTrack& row : test.window().bigArrayController.arrangedRows())
      texts.push_back(std::string(row.value("decpid").text()) + " in " +
                      std::string(row.value("tGroupID").text()) + " run " +
                      std::to_string(row.value("dupeSort").number()));
    return texts;
  }
  TestProcess test;
};

TEST_F(Search, FillsTheUpperTableInOrder) {
  open({track("b").by("Zoo"), track("a").by("Ärzte"), track("B").by("zoo"), track("A").by("ärzte"),
        track("alone")},
       {1, 2, 77, 3, 4, 5});
  EXPECT_EQ(search({"tName", "tArtist"}), "4");
  EXPECT_EQ(rows(), (Names{"2 in 1 run 1", "4 in 1 run 1", "1 in 0 run 2", "3 in 0 run 2"}));
  EXPECT_EQ(test.process.textSorter.storedCriteria, (Names{"tName", "tArtist"}));
  EXPECT_EQ(test.process.textSorter.finalGroupCountAsText, "4");
  const auto& order = test.window().bigArrayController.sortOrder();
  ASSERT_EQ(order.size(), 1U);
  EXPECT_EQ(order[0].key, "dupeSort");
  const Names lines = test.log.lines();
  EXPECT_EQ(Names(lines.end() - 3, lines.end()),
            (Names{"--- LIBRARY TRACK COUNT = 5", "--- TARGET TRACKS COUNT = 6",
                   "--> Criteria: (tName, tArtist)"}));
  // Rows of the last search are not this one's to remove; its own criteria may be passed again.
  test.preferences.set(settings::caseSensitive, true);
  EXPECT_EQ(search({}), "0");
  test.process.textSorter.storedCriteria = {"tType"};
  EXPECT_EQ(TextSorter::getDupeGroupsWithCriteria(test.process.textSorter.storedCriteria), "5");
  test.mainQueue.drain();
  EXPECT_EQ(rows().size(), 9U);
}

TEST_F(Search, SetsTheCheckBoxesByTheKeeperMode) {
  open({track(), track()}, {1, 2});
  for (const char* mode : {"0", "1", "7"}) {
    test.preferences.set(settings::keeperMode, mode);
    test.window().bigArrayController.removeAll();
    search({"tName"});
    for (const ResultTrack& row : test.window().bigArrayController.content())
      EXPECT_EQ(row.value("checkBox").text(), std::string_view(mode) == "0" ? "1" : "0");
  }
}

TEST_F(Search, ToleratesOneSecondMoreThanAskedFor) {
  open({track().lasts(1'000), track().lasts(4'000)}, {1, 2});
  struct Case {
    bool time, useAprox;
    std::int64_t aproxValue;
    const char* found;
  };
  for (const auto& [time, useAprox, aproxValue, found] :
       {Case{true, true, 1, "0"}, Case{true, true, 2, "2"}, Case{false, true, 1, "2"},
        Case{true, false, 1, "2"}, Case{true, true, INT64_MAX, "2"}, Case{true, true, -1, "2"}}) {
    test.preferences.set(settings::criteriaCBTime, time);
    test.preferences.set(settings::useAproxValue, useAprox);
    test.preferences.set(settings::aproxValue, aproxValue);
    EXPECT_EQ(search({"tName"}), found) << time << useAprox << aproxValue;
  }
}

TEST_F(Search, ChangesTheWindowOnlyThroughTheMainQueue) {
  open({track(), track()}, {1, 2});
  Names seen;
  ProgressBar& bar = test.window().mainProgressBar;
  StatusText& status = test.window().mainProgressStatus;
  const auto note = [&] {
    seen.push_back((status.text().empty() ? "" : "looking ") +
                   std::string(bar.isHidden() ? "hidden " : "") +
                   (bar.isAnimating() ? "moving " : "") + (bar.isIndeterminate() ? "busy " : "") +
                   std::to_string(test.window().bigArrayController.size()));
  };
  const auto bars = bar.observers.add(note);
  const auto texts = status.observers.add(note);
  const auto tables = test.window().bigArrayController.observers.add(note);
  TextSorter::getDupeGroupsWithCriteria(Names{"tName"});
  EXPECT_TRUE(seen.empty());
  test.mainQueue.drain();
  EXPECT_EQ(seen, (Names{"looking hidden 0", "looking hidden busy 0", "looking busy 0",
                         "looking moving busy 0", "looking busy 0", "looking 0", "looking 2",
                         "looking 2", "looking hidden 2", "hidden 2"}));
}

TEST_F(Search, ACancelledOneLeavesTheBarRunning) {
  open({track(), track()}, {1, 2});
  test.process.textSorter.finalGroupCountAsText = "12";
  test.preferences.set(settings::cancelGetDupes, 1);
  EXPECT_EQ(search({"tName"}), "0");
  EXPECT_TRUE(test.window().mainProgressBar.isAnimating());
  EXPECT_FALSE(test.window().mainProgressBar.isHidden());
  EXPECT_EQ(test.window().mainProgressStatus.text(), "Looking for dupes...");
  EXPECT_EQ(test.window().bigArrayController.size(), 0U);
  EXPECT_EQ(test.process.textSorter.finalGroupCountAsText, "12");
  EXPECT_EQ(test.preferences.integer(settings::cancelGetDupes), 1);
  test.preferences.set(settings::cancelGetDupes, 2);  // only 1 cancels
  EXPECT_EQ(search({"tName"}), "2");
  EXPECT_TRUE(test.window().mainProgressBar.isHidden());
}

TEST_F(Search, EndsEmptyWithoutAPlaylistOrALibrary) {
  open({track(), track()}, {1, 2});
  for (const char* pid : {"", "FF", "0255", "9"}) {
    test.preferences.set(settings::selectedPlaylistPid, pid);
    EXPECT_EQ(search({"tName"}), "0") << pid;
    EXPECT_TRUE(test.window().mainProgressBar.isHidden());
  }
  TestProcess bare;  // nothing could be opened
  EXPECT_EQ(TextSorter::getDupeGroupsWithCriteria(Names{"tName"}), "0");
  bare.mainQueue.drain();
  EXPECT_TRUE(bare.window().mainProgressBar.isHidden());
}

}  // namespace
}  // namespace kestrel
