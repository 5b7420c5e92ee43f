#include "app/controller/app_delegate.h"

#include <algorithm>
#include <array>
#include <gtest/gtest.h>
#include <numeric>

#include "app/controller/criteria.h"
#include "changes/apply.h"
#include "foundation/library_error.h"
#include "musicapp/applications.h"
#include "tests/ui/library_harness.h"
#include "ui/launch.h"

namespace kestrel {
namespace {

using namespace kestrel::testing;

std::string played(int id, const std::string& name, int plays) {
  const std::string hexpid = "A" + std::to_string(id);
  const std::string file = "/music/" + std::to_string(id) + ".mp3";
  return song(id, hexpid, file,
              text("Name", name) + text("Artist", "x") + number("Play Count", plays) +
                  number("Size", 1000 * id) + text("Kind", "MPEG audio file"));
}

char numberOf(const ResultTrack& row) { return row.record->location()[7]; }

const std::string master = flag("Master");

struct Controller : ::testing::Test {
  Controller() {
    settings::registerFirstValues(world.preferences);
    settings::registerAppValues(world.preferences);
    world.preferences.set(settings::filterMatrixButton, 2);  // Most Played
    for (int i = 1; i <= 7; ++i) world.files.put("/music/" + std::to_string(i) + ".mp3", "");
    world.document(
        played(1, "one", 9) + played(2, "One", 41) + played(3, "two", 5) + played(4, "two", 5) +
            played(5, "alone", 0),
        playlist("Library", "F0", master, {1, 2, 3, 4, 5}) + playlist("Few", "F1", {}, {1, 2, 5}));
  }

  void pump() {
    while (worker.drain() + world.mainQueue.drain() != 0) {
    }
  }
  void open(const std::string& path) {
    EXPECT_TRUE(delegate.openLibrary(path));
    pump();
  }
  Situation search() {
    EXPECT_TRUE(delegate.findDuplicates());
    pump();
    return delegate.situation();
  }
  void openAndSearch() {
    open(world.path);
    ASSERT_EQ(search(), Situation::result);
  }
  /// The numbers of the keepers, in table order.
  std::string keepers() {
    std::string numbers;
    for (std::uint32_t row = 0; row < controller().size(); ++row)
      if (delegate.groups().isKeeper(row)) numbers += numberOf(controller().content()[row]);
    return numbers;
  }
  ArrayController<ResultTrack>& controller() { return world.window().bigArrayController; }

  LibraryHarness world;
  ManualQueue worker;
  AppDelegate delegate{world.process, worker,
                       [this](const std::string& path, const PathMaps& maps) {
                         return openApplication(path, {.files = world.files,
                                                       .log = world.log,
                                                       .random = world.random,
                                                       .clock = world.clock,
                                                       .maps = maps});
                       }};
};

TEST_F(Controller, AsksForThePasswordOfALibraryThatIsClosedWithoutOne) {
  std::string given = "?";
  AppDelegate ofServer(
      world.process, worker,
      [&](const std::string& path, const PathMaps& maps) -> std::shared_ptr<MusicApplication> {
        given = ofServer.passwordOf(path);
        if (given != "right")
          throw PasswordError("mpd://there", {}, Message::tr("asks for a password"), {});
        return openApplication(world.path, {.files = world.files,
                                            .log = world.log,
                                            .random = world.random,
                                            .clock = world.clock,
                                            .maps = maps});
      });
  std::string asked;
  ofServer.passwordWanted = [&](const std::string& address, const Message& reason) {
    asked += address + " " + reason.english() + "; ";
  };
  for (const char* password : {"", "wrong", "", "right"}) {
    if (*password) ofServer.setPassword("mpd:", password);
    ASSERT_TRUE(ofServer.openLibrary("mpd:"));
    pump();
    EXPECT_EQ(given, password) << "a wrong one is not tried again";
  }
  EXPECT_EQ(asked,
            "mpd://there asks for a password; mpd://there asks for a password; mpd://there asks "
            "for a password; ");
  EXPECT_NE(ofServer.application(), nullptr);
}

using Names = std::vector<std::string>;

TEST_F(Controller, FindsFilesThatAreElsewhereOrDoesWithoutThem) {
  const auto song = [](int id) {
    return testing::song(id, "A" + std::to_string(id),
                         "/C:/Users/ann/" + std::to_string(id) + "/Tea.mp3",
                         text("Name", "Tea") + text("Artist", "Ann") + number("Play Count", id));
  };
  const auto places = [&] {
    std::string text;
    for (const ResultTrack& row : delegate.content()) text += row.record->location() + ' ';
    return text;
  };
  world.document(song(1) + song(2) + song(3), playlist("Library", "F0", master, {1, 2, 3}));
  open(world.path);
  ASSERT_TRUE(delegate.missing().areMost());
  EXPECT_EQ(delegate.missing().sentence().english(),
            "3 of 3 files are not where this library says (C:/Users/ann/...)");
  ASSERT_TRUE(delegate.compareWithoutFiles());
  pump();
  EXPECT_FALSE(delegate.missing().areMost());
  ASSERT_EQ(search(), Situation::result);
  EXPECT_EQ(places(), "/C:/Users/ann/1/Tea.mp3 /C:/Users/ann/2/Tea.mp3 /C:/Users/ann/3/Tea.mp3 ");
  open(world.path);
  EXPECT_TRUE(delegate.missing().areMost()) << "that was for once";

  world.files.put("/nas/1/tea.mp3", "");
  world.files.put("/nas/3/Tea.mp3", "");
  FoundElsewhere found;
  ASSERT_TRUE(delegate.findFilesIn("/nas", [&](const FoundElsewhere& all) { found = all; }));
  pump();
  EXPECT_EQ(std::pair(found.found, found.missing), (std::pair<std::size_t, std::size_t>(2, 3)));
  ASSERT_TRUE(delegate.keepMaps(found.suggestions));
  pump();
  EXPECT_EQ(delegate.missing().missing, 1U);
  open("/home/Other.xml");
  EXPECT_EQ(delegate.libraryPath(), world.path) << "there is none";
  world.files.put("/home/Other.xml", libraryText(song(1), playlist("Library", "F0", master, {1})));
  open("/home/Other.xml");
  EXPECT_TRUE(delegate.missing().areMost()) << "maps belong to a library";
  open(world.path);
  ASSERT_EQ(search(), Situation::result);
  EXPECT_EQ(places(), "/nas/1/tea.mp3  /nas/3/Tea.mp3 ");
}

TEST_F(Controller, FindsGroupsAndSaysWhoIsKeptAndWhy) {
  const auto& menu = world.process.state<PlaylistWindowReferences>().mainPlaylistPopup;
  EXPECT_EQ(menu.items().at(0).icon, (PopupIcon{"4", 16, 16})) << "before it is filled";
  EXPECT_EQ(delegate.chosenPlaylistName().english(), "");
  EXPECT_FALSE(delegate.findDuplicates()) << "without a library";
  openAndSearch();
  EXPECT_EQ(world.process.textSorter.storedCriteria, (Names{"tName", "tArtist"}));
  EXPECT_EQ(world.preferences.text(settings::selectedPlaylistPid), "240");
  EXPECT_EQ(keepers(), "24");
  EXPECT_EQ(delegate.summary(), (ResultSummary{4, 2, 2, 4000, 0, 0, 0}));
  EXPECT_EQ(delegate.keptBecause(0).english(), "Most Played: 41 over 9 plays");
  EXPECT_EQ(delegate.keptBecause(2).english(),
            "Most Played: tie at 5 plays: the last in the table");
  ASSERT_EQ(delegate.playlistsHolding(0).size(), 1U);
  EXPECT_EQ(delegate.playlistsHolding(0)[0].pnom, "Few");
  EXPECT_TRUE(delegate.playlistsHolding(2).empty());
  // Rows are seen until a second search has others, which are not arranged as the user had arranged
  // the first ones.
  ResultSummary told = delegate.summary();
  const auto listening = delegate.summaryObservers.add([&] { told = delegate.summary(); });
  int sorted = 0;
  controller().setSortOrder({{"tName", true, [&](std::span<const ResultTrack> rows) {
                                sorted += rows.empty() ? 0 : 1;
                                return [](std::size_t, std::size_t) { return 0; };
                              }}});
  ASSERT_TRUE(delegate.findDuplicates());
  EXPECT_EQ(controller().size(), 4U);
  EXPECT_EQ(told.tracks, 4U);
  pump();
  EXPECT_EQ(controller().size(), 4U);
  EXPECT_EQ(sorted, 1);
  EXPECT_EQ(told.tracks, 4U);
  open(world.path);
  EXPECT_EQ(told, ResultSummary{});
}

TEST_F(Controller, AStoppedSearchLeavesNothingBehind) {
  open(world.path);
  ASSERT_TRUE(delegate.findDuplicates());
  delegate.cancel();
  pump();
  EXPECT_EQ(delegate.situation(), Situation::stopped);
  EXPECT_TRUE(world.window().mainProgressBar.isHidden());
  EXPECT_FALSE(world.window().mainProgressBar.isAnimating());
  EXPECT_EQ(world.window().mainProgressStatus.text(), "");
  EXPECT_EQ(search(), Situation::result) << "stopping counts for one search";
  // One that has read all tracks cannot be stopped any more.
  world.preferences.set(settings::criteria, Names{"tName", "tFileName"});
  ASSERT_TRUE(delegate.findDuplicates());
  worker.drain();
  delegate.cancel();
  pump();
  EXPECT_EQ(delegate.situation(), Situation::noDuplicates);
}

TEST_F(Controller, AChangedRuleCountsAtOnceOrAfterTheRunningTask) {
  openAndSearch();
  world.preferences.set(settings::filterMatrixButton, 7);  // Least Played
  delegate.rulesChanged();
  pump();
  EXPECT_EQ(keepers(), "14");
  ASSERT_TRUE(delegate.findDuplicates());
  world.preferences.set(settings::filterMatrixButton, 2);
  delegate.rulesChanged();
  pump();
  EXPECT_EQ(keepers(), "24");
  EXPECT_EQ(world.window().mainProgressSpinnerStatus.text(), "");
}

TEST_F(Controller, TheUserMayDecideOtherwiseAndTheSelectionShowsIt) {
  openAndSearch();
  delegate.showSelection(std::vector{3U, 0U});
  using Ticks = std::pair<bool, bool>;
  const auto lower = [&] {
    const auto rows = world.window().lilArrayController.content();
    return Ticks(rows[0].tCheckbox, rows[1].tCheckbox);
  };
  EXPECT_EQ(lower(), Ticks(true, false));
  ASSERT_TRUE(delegate.makeOnlyKeeper(0));
  EXPECT_EQ(keepers(), "14");
  EXPECT_EQ(delegate.keptBecause(0).english(), "chosen by you");
  EXPECT_EQ(lower(), Ticks(true, true));
  ASSERT_TRUE(delegate.setTicks(std::array{0U}, false));
  EXPECT_EQ(delegate.summary().withoutKeeper, 1U);
  delegate.setKeeperMode(1);
  EXPECT_EQ(keepers(), "4") << "another meaning of ticks, the same keepers";
  EXPECT_TRUE(controller().content()[0].tCheckbox);
  EXPECT_EQ(lower(), Ticks(false, true));
  ASSERT_TRUE(delegate.makeOnlyKeeper(2));
  delegate.rulesChanged();
  EXPECT_FALSE(delegate.setTicks(std::array{0U}, false)) << "the pass is writing flags";
  EXPECT_EQ(lower(), Ticks(true, true));
  pump();
  EXPECT_EQ(keepers(), "3") << "the user's picks outlive the rules, that of no keeper too";
  EXPECT_EQ(lower(), Ticks(true, true));
  ASSERT_TRUE(delegate.clearPicks());
  pump();
  EXPECT_EQ(keepers(), "24");
  EXPECT_EQ(lower(), Ticks(false, true));
}

TEST_F(Controller, TicksOfVeryManyRowsAreATask) {
  std::string songs, list;
  std::vector<int> ids;
  for (int i = 1; i <= 11'000; ++i) {
    songs += played(i, std::to_string(i / 2), i % 2);
    ids.push_back(i);
  }
  world.document(songs, playlist("Library", "F0", master, ids));
  openAndSearch();
  const std::vector<ResultTrack> first(delegate.content().begin(), delegate.content().end());
  const auto ticked = [&] {
    return std::count_if(delegate.content().begin(), delegate.content().end(),
                         [](const ResultTrack& row) { return row.tCheckbox; });
  };
  const auto asFirst = [&] {
    return std::equal(first.begin(), first.end(), delegate.content().begin(),
                      [](const auto& a, const auto& b) { return a.tCheckbox == b.tCheckbox; });
  };
  const ResultSummary summary = delegate.summary();
  SharedPickChange made;
  delegate.picksChanged = [&](SharedPickChange change) { made = std::move(change); };
  std::vector<std::uint32_t> rows(delegate.content().size());
  std::iota(rows.begin(), rows.end(), 0U);
  ASSERT_TRUE(delegate.setTicks(rows, true));
  EXPECT_TRUE(delegate.isBusy());
  EXPECT_EQ(delegate.summary(), summary) << "until all is done";
  EXPECT_FALSE(delegate.setTicks(std::array{0U}, false));
  // What a rule that is changed meanwhile decides comes before what the user has picked.
  delegate.rulesChanged();
  pump();
  ASSERT_TRUE(made);
  EXPECT_EQ(made->after.size(), summary.groups);
  EXPECT_EQ(static_cast<std::size_t>(ticked()), rows.size());
  EXPECT_EQ(delegate.summary().manyKeepers, summary.groups);
  EXPECT_EQ(delegate.summary().open, 0U) << "the user wants it so";
  EXPECT_EQ(delegate.groups().pickedCount(), summary.groups);
  for (const bool searchesAgain : {false, true}) {
    if (searchesAgain) search();
    ASSERT_TRUE(delegate.putBack(made, false));
    pump();
    EXPECT_TRUE(asFirst());
    EXPECT_EQ(delegate.summary(), summary);
    EXPECT_EQ(delegate.groups().pickedCount(), 0U);
    ASSERT_TRUE(delegate.putBack(made, true));
    pump();
    EXPECT_EQ(static_cast<std::size_t>(ticked()), rows.size());
  }
  EXPECT_EQ(world.window().mainProgressSpinnerStatus.text(), "");
  ASSERT_TRUE(delegate.clearPicks());
  pump();
  EXPECT_TRUE(asFirst());

  // So is taking rows out, with what else is asked for meanwhile.
  const std::int32_t group = delegate.content().front().tGroupID;
  ASSERT_TRUE(delegate.setNotDuplicates(std::array{group}));
  delegate.takeOut([](const ResultTrack& row) { return row.record->item().persistentID == 0xA9; });
  EXPECT_EQ(delegate.summary(), summary);
  pump();
  EXPECT_EQ(delegate.summary().groups, summary.groups - 2);
  EXPECT_EQ(delegate.content().size(), first.size() - 4);
  EXPECT_EQ(delegate.groups().rowCount(), delegate.content().size());
  EXPECT_TRUE(delegate.groups().members(group).empty());
  ASSERT_TRUE(delegate.makeOnlyKeeper(0)) << "the groups are those of the rows";
  EXPECT_TRUE(delegate.groups().isKeeper(0));
  search();
  EXPECT_EQ(delegate.summary().groups, summary.groups - 1) << "it stays away";
  EXPECT_EQ(delegate.leftOut().size(), 1U);
}

TEST_F(Controller, WhatCannotBeOpenedIsSaidAndTheLibraryAtHandStays) {
  openAndSearch();
  world.files.put("/home/Broken.xml", "<plist><dict>");
  open("/home/Broken.xml");
  ASSERT_TRUE(delegate.alerts.alert());
  EXPECT_NE(delegate.alerts.alert()->informativeText.english().find("Broken.xml"),
            std::string::npos);
  EXPECT_FALSE(world.window().mainLaunchProgressWindow.isOpen());
  EXPECT_EQ(delegate.libraryPath(), world.path);
  EXPECT_EQ(delegate.situation(), Situation::result);
  EXPECT_EQ(controller().size(), 4U);
  ASSERT_TRUE(delegate.makeOnlyKeeper(0));
  world.preferences.set(settings::getDupesAtStartup, true);
  ASSERT_TRUE(delegate.refresh());
  pump();
  EXPECT_EQ(keepers(), "14") << "this is not the first snapshot: no search";

  delegate.alerts.dismiss();
  bool done = false;
  ASSERT_TRUE(delegate.run([] { throw LibraryError("x", {}, Message::verbatim("no"), {}); },
                           [&] { done = true; }));
  pump();
  EXPECT_TRUE(delegate.alerts.alert());
  EXPECT_FALSE(done);
  EXPECT_FALSE(delegate.isBusy());
}

TEST_F(Controller, WhatWaitsForAnotherLibraryIsNotDoneInIt) {
  open(world.path);
  std::string done;
  const auto wait = [&] {
    delegate.whenIdleHere([&] { done += "here "; }, [&] { done += "elsewhere "; });
  };
  wait();
  ASSERT_TRUE(delegate.openLibrary(world.path));  // read again, it is another one
  wait();
  pump();
  EXPECT_EQ(done, "here elsewhere ");
}

TEST_F(Controller, RemembersLibrariesAndForgetsTheOtherOnesPlaylists) {
  const std::string other = "/home/Other.xml";
  world.files.put(other, world.files.readAll(world.path));
  open(world.path);
  delegate.choosePlaylist("241");
  EXPECT_EQ(delegate.chosenPlaylistName().english(), "Few");
  delegate.choosePlaylist("no such");
  EXPECT_EQ(world.preferences.text(settings::selectedPlaylistPid), "241");
  open(world.path);
  EXPECT_EQ(delegate.chosenPlaylistName().english(), "Few");
  open(other);
  EXPECT_EQ(delegate.chosenPlaylistName().english(), "Whole library");
  EXPECT_EQ(delegate.recentLibraries(), (Names{"file://" + other, "file://" + world.path}));
  EXPECT_EQ(search(), Situation::result);
  EXPECT_FALSE(delegate.searchedPart());
  // While the stored playlist is gone the menu shows another one. That is searched, and said, and
  // the stored one stays: it may come back.
  world.preferences.set(settings::selectedPlaylistPid, "12345");
  ASSERT_TRUE(delegate.refresh());
  pump();
  EXPECT_EQ(search(), Situation::result);
  EXPECT_EQ(controller().size(), 2U);
  EXPECT_TRUE(delegate.searchedPart());
  EXPECT_EQ(delegate.searchedPlaylistName().english(), "Few");
  EXPECT_EQ(world.preferences.text(settings::selectedPlaylistPid), "12345");
}

TEST_F(Controller, KnowsALibraryThatWasMovedByItsID) {
  std::string bytes = world.files.readAll(world.path);
  bytes.insert(bytes.find("<dict>") + 6, text("Library Persistent ID", "AB"));
  world.files.put(world.path, bytes);
  open(world.path);
  delegate.choosePlaylist("241");
  world.files.rename(world.path, "/home/Moved.xml");
  open("/home/Moved.xml");
  EXPECT_EQ(delegate.chosenPlaylistName().english(), "Few");
  EXPECT_EQ(delegate.recentLibraries(), Names{"file:///home/Moved.xml"});
  world.files.put("/home/Copy.xml", bytes);
  open("/home/Copy.xml");
  EXPECT_EQ(delegate.chosenPlaylistName().english(), "Whole library") << "both are there";
}

TEST_F(Controller, TakesRowsOutAndKeepsTicksAndOrderOfTheRest) {
  world.document(played(1, "one", 9) + played(2, "One", 41) + played(3, "two", 5) +
                     played(4, "two", 6) + played(5, "two", 7) + played(6, "x", 1) +
                     played(7, "x", 2),
                 playlist("Library", "F0", master, {1, 2, 3, 4, 5, 6, 7}));
  openAndSearch();
  const auto names = [&](const ArrayController<ResultTrack>& table) {
    std::string all;
    for (const ResultTrack& row : table.content()) all += numberOf(row);
    return all;
  };
  const auto& lower = world.window().lilArrayController;
  ASSERT_EQ(names(controller()), "1234567");
  ASSERT_TRUE(delegate.makeOnlyKeeper(2));
  delegate.showSelection(std::vector<std::uint32_t>{4, 0, 2});

  // By its ID, and by its path; what was not done does not count.
  ASSERT_TRUE(delegate.refresh());
  delegate.removed({{Outcome::What::file, Outcome::Kind::done, 0xA1, 0, "/music/1.mp3", 0, {}},
                    {Outcome::What::file, Outcome::Kind::done, 0xFF, 0, "/music/4.mp3", 0, {}},
                    {Outcome::What::file, Outcome::Kind::failed, 0xA6, 0, "/music/6.mp3", 0, {}}});
  EXPECT_EQ(names(controller()), "1234567") << "a task may be reading them";
  pump();
  EXPECT_EQ(names(controller()), "3567") << "a group of one is none";
  EXPECT_EQ(names(lower), "53");
  EXPECT_EQ(keepers(), "37");
  EXPECT_EQ(delegate.summary(), (ResultSummary{4, 2, 2, 11000, 0, 0, 0}));
  EXPECT_EQ(delegate.keptBecause(0).english(), "chosen by you");
  ASSERT_TRUE(delegate.setTicksInSelection(std::array{0U}, true));
  EXPECT_TRUE(controller().content()[1].tCheckbox);

  delegate.takeOut([](const ResultTrack&) { return true; });
  EXPECT_EQ(delegate.situation(), Situation::notSearched);
  EXPECT_EQ(delegate.summary(), ResultSummary{});
}

TEST_F(Controller, ReadsTheLibraryAgainWhenItIsDueOrAskedFor) {
  openAndSearch();
  const auto title = [&] {
    return TextSorter::groomedTracksDictionary()->find("A5")->item().title;
  };
  const auto rename = [&](const std::string& name) {
    world.document(played(5, name, 0), playlist("Library", "F0", master, {5}));
  };
  rename("2nd");
  delegate.refreshIfDue();
  pump();
  EXPECT_EQ(title().view(), "alone");
  delegate.setRefreshDue();
  delegate.refreshIfDue();
  EXPECT_EQ(delegate.activity(), Activity::snapshot);
  EXPECT_EQ(worker.waiting(), 0U) << "it is asked for on the main queue";
  pump();
  EXPECT_EQ(title().view(), "2nd");
  rename("3rd");
  delegate.refreshIfDue();
  pump();
  EXPECT_EQ(title().view(), "2nd") << "once";
  TextSorter::refreshLibrary();
  world.mainQueue.drain();
  EXPECT_EQ(title().view(), "2nd") << "the main queue does not do the work";
  pump();
  EXPECT_EQ(title().view(), "3rd");
  EXPECT_FALSE(delegate.isBusy());
}

TEST_F(Controller, SaysWhyATrackCannotBeShown) {
  openAndSearch();
  for (const auto& [playlist, reason] :
       {std::pair("", "There is nothing here to show it in"),
        std::pair("F1", "There is no track with the persistent ID A3")}) {
    ASSERT_TRUE(delegate.reveal(2, playlist));
    pump();
    ASSERT_TRUE(delegate.alerts.alert());
    EXPECT_EQ(delegate.alerts.alert()->informativeText.english(), reason);
    EXPECT_EQ(world.log.lines().back(), std::string("The track could not be shown.: ") + reason);
    delegate.alerts.dismiss();
  }
}

}  // namespace
}  // namespace kestrel
