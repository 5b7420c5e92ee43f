#include "ui/replaylist_control.h"

#include <gtest/gtest.h>

#include "platform/settings.h"
#include "tests/cleanup/playlist_builders.h"
#include "ui/uncalled_operations.h"

namespace kestrel {
namespace {

using namespace kestrel::testing;
using Lines = std::vector<std::string>;

/// Two groups in the upper table: tracks 1 (ticked) and 2, tracks 3 (ticked), 4 and 5.
struct RunProcess : WindowProcess {
  World world{{track("a").inGroup(1), track("b").inGroup(1), track("c").inGroup(2),
               track("d").inGroup(2), track("e").inGroup(2)}};
  ReplaylistWindowReferences& replaylist = ReplaylistControl::state().window;

  RunProcess()
      : WindowProcess(playlists({folder("F", 0xF, {2, 5}), playlist("in", 1, {2, 5, 2}).in(0xF),
                                 playlist("top", 2, {9, 4}), playlist("clean", 3, {1, 3}),
                                 folder("G", 0xE).in(0xF), playlist("deep", 4, {2}).in(0xE)})) {
    process.textSorter.groomedTracks = world.store();
    window().bigArrayController.add(tickedRows({0, 2}));
    watch(replaylist.progressStatus, replaylist.progressSpinner);
    watch(replaylist.header.observers, "header");
    watch(replaylist.alert.observers, "alert");
  }

  std::vector<ResultTrack> tickedRows(const std::vector<std::size_t>& ticked) const {
    std::vector<ResultTrack> rows = world.rows();
    for (const std::size_t position : ticked) rows[position].tCheckbox = true;
    return rows;
  }
  void setRows(std::vector<ResultTrack> rows) {
    window().bigArrayController.removeAll();
    window().bigArrayController.add(std::move(rows));
  }
  Lines survey(bool useBig = true) {
    ReplaylistControl::beginReplaylist(useBig);
    return run();
  }
  std::string outline() const { return outlineText(replaylist.outline.content()); }
};

/// "1: 2>1 5>3; F: ...", IDs in hexadecimal.
std::string text(const std::vector<PlaylistReplacements>& map) {
  std::string all;
  for (const PlaylistReplacements& playlist : map) {
    all.append(all.empty() ? "" : "; ").append(playlist.record->hexpid()).append(":");
    for (const KeeperPair& pair : playlist.pairs)
      all += " " + std::to_string(pair.item) + ">" + std::to_string(pair.keeper);
  }
  return all;
}

const Lines found = {"status: Checking groups...",   "spinner on",  "header",
                     "status: Sorting playlists...", "spinner off", "status: "};

TEST(ReplaylistRun, SurveysInTheBackgroundAndFillsTheOutline) {
  RunProcess test;
  ReplaylistControl::beginReplaylist(true);
  EXPECT_EQ(test.mainQueue.waiting(), 0U);
  test.setRows({});  // what the user does to the table meanwhile does not matter
  EXPECT_EQ(test.run(), found);
  EXPECT_EQ(test.outline(), "F(in G(deep)) top");
  EXPECT_TRUE(test.replaylist.outline.isExpanded());
  EXPECT_FALSE(test.replaylist.header.text().text.empty());
  EXPECT_EQ(test.log.lines(),
            (Lines{"BEGIN REPLAYLIST", "OK TO PROCEED...", "OK5", "THE USER PLAYLIST'S COUNT: 3"}));
  EXPECT_EQ(ReplaylistControl::report().outcome, SurveyOutcome::found);
  EXPECT_EQ(ReplaylistControl::returnAllNonKeepersSet(), (std::vector<std::uint64_t>{2, 4, 5}));
  EXPECT_EQ(outlineText(ReplaylistControl::getFolders("F")), "in G(deep)");
  EXPECT_EQ(ReplaylistControl::formattedPlaylists()[0]->trackInfo(5), test.world[4]);
}

TEST(ReplaylistRun, AGroupWithTwoKeepersEndsInAnAlert) {
  RunProcess test;
  test.survey();
  const Lines alerted = {"status: Checking groups...", "spinner on", "spinner off",
                         "status: ", "alert"};
  test.setRows(test.tickedRows({0, 2, 4}));
  EXPECT_EQ(test.survey(), alerted);
  EXPECT_EQ(ReplaylistControl::report().outcome, SurveyOutcome::severalKeepers);
  EXPECT_EQ(ReplaylistControl::report().severalKeepers, 2);
  EXPECT_TRUE(ReplaylistControl::dbidDictionary().empty());
  EXPECT_TRUE(ReplaylistControl::storedJustFolders().empty());
  EXPECT_EQ(test.outline(), "F(in G(deep)) top");  // of the survey before

  // Where ticks mark what is to be acted on, a group has two keepers when two rows have none.
  test.preferences.set(settings::keeperMode, std::int64_t{1});
  test.setRows(test.tickedRows({1, 3, 4}));
  EXPECT_EQ(test.survey().back(), "status: ");
  EXPECT_EQ(ReplaylistControl::report().outcome, SurveyOutcome::found);
}

TEST(ReplaylistRun, SelectedRowsTakePartAloneAndTheLowerTableIsAnother) {
  using enum SkippedGroup::Reason;
  const struct {
    std::vector<std::size_t> selection;
    std::string outline;
    std::vector<SkippedGroup> skipped;
  } cases[] = {
      {{0, 1}, "F(in G(deep))", {}},
      {{1}, "F(in G(deep))", {{1, noKeeper}}},
      {{2, 3}, "top", {}},
      {{0, 2}, "", {}},  // keepers only
  };
  for (const auto& c : cases) {
    RunProcess test;
    test.window().bigArrayController.setSelection(c.selection);
    const Lines events = test.survey();
    EXPECT_EQ(test.outline(), c.outline);
    EXPECT_EQ(ReplaylistControl::report().skippedGroups, c.skipped);
    if (!c.outline.empty()) continue;
    EXPECT_EQ(events,
              (Lines{"status: Checking groups...", "spinner on", "header",
                     "status: Sorting playlists...", "status: No results.", "spinner off"}));
    EXPECT_EQ(ReplaylistControl::report().outcome, SurveyOutcome::noResults);
  }
  RunProcess test;
  test.survey(false);
  EXPECT_EQ(ReplaylistControl::report().outcome, SurveyOutcome::noResults);
  test.window().lilArrayController.add(test.tickedRows({0, 2}));
  test.survey(false);
  EXPECT_EQ(ReplaylistControl::report().outcome, SurveyOutcome::found);
}

TEST(ReplaylistRun, ConfirmingMapsTheSelectedPlaylists) {
  RunProcess test;
  test.survey();
  EXPECT_FALSE(ReplaylistControl::processAPid("2"));  // nothing is confirmed yet
  const struct {
    std::vector<IndexPath> selection;
    std::string map, pids, paths;
  } cases[] = {
      {{{1}, {0, 0}}, "2: 4>3; 1: 2>1 5>3", "(2, 1)", "(1, 0 - 0)"},
      {{{0}}, "F: 2>1 5>3", "(F)", "(0)"},  // a folder, by the tracks that it holds
      {{{0, 1}}, "", "(E)", "(0 - 1)"},     // one that holds nothing of the kind
      {{}, "", "()", "()"},
  };
  for (const auto& c : cases) {
    test.replaylist.outline.setSelection(c.selection);
    const std::size_t before = test.log.lines().size();
    EXPECT_EQ(text(ReplaylistControl::clickedOK()), c.map);
    Lines lines = test.log.lines();
    lines.erase(lines.begin(), lines.begin() + static_cast<std::ptrdiff_t>(before));
    EXPECT_EQ(lines, (Lines{std::string("selectedPlaylistPIDs: ") + c.pids,
                            std::string("selIndexPaths: ") + c.paths,
                            "PIDS of All Non-Keepers, (2, 4, 5)", "PAST INITS",
                            "NOW HOW 'BOUT IT - MAIN PLAYLIST LOOP", "+ + +  F I N  + + +"}));
  }
  test.replaylist.outline.setSelection({{0, 0}, {1}});
  ReplaylistControl::doubleClickedAction();
  test.background.drain();
  EXPECT_EQ(test.application.commands, std::vector<Command>{command::RevealPlaylist{1}})
      << "the first one is revealed";
  EXPECT_TRUE(test.replaylist.outline.isEnabled());  // the window is told by the main queue
  EXPECT_EQ(test.run(), Lines{"spinner on"});
  EXPECT_FALSE(test.replaylist.outline.isEnabled());
  EXPECT_FALSE(test.replaylist.okButton.isEnabled());
  EXPECT_FALSE(test.replaylist.cancelButton.isEnabled());

  EXPECT_EQ(ReplaylistControl::processAPid("2"), "1");
  EXPECT_EQ(ReplaylistControl::processAPid("5"), "3");
  for (const char* none : {"1", "9", "", "x"})
    EXPECT_FALSE(ReplaylistControl::processAPid(none)) << none;
}

}  // namespace
}  // namespace kestrel
