#include "ui/tracks_panel.h"

#include <gtest/gtest.h>

#include "dupes/keeper_rules.h"
#include "platform/settings.h"
#include "tests/cleanup/playlist_builders.h"
#include "tests/ui/models/marked_text.h"
#include "ui/replaylist_control.h"

namespace kestrel {
namespace {

using namespace kestrel::testing;

TEST(ReplaylistTexts, TheHeaderIsBoldAtItsCaptionButOneCharacterEarlyAtShowTracks) {
  EXPECT_EQ(marked(replaylistHeader(2)),
            "[12]Each of the playlists below contain at least one non-Keeper track as currently "
            "Filtered by [12]<Most Played>[12].\r\rTo display a selected playlist's Non-Keeper "
            "tracks, click[12]< Show Tracks>[12]. Click [12]<OK>[12] to re-populate selected "
            "playlists with Keeper tracks.");
}

TEST(ReplaylistTexts, CaptionsSayTheValueByWhichKeepersWereChosen) {
  World world({track().bits(320).plays(41).added(0).bytes(4'200'000).path("/music/Oldies/1.mp3")});
  ShortDateTimeFormatter dates("en_US", "UTC");
  const struct {
    std::int64_t rule;
    const char* title;
    std::string caption;  ///< as it begins: what stands before AM and PM varies with the rules
  } cases[] = {
      {1, "Oldest Date Added", "[11]<Date Added>[11]: 1/1/70, 12:00"},
      {2, "Most Played", "[11]<Plays>[11]: 41"},
      {3, "Most Recently Played", "[11]<Last Played>[11]: "},  // never
      {4, "Highest Bit Rate", "[11]<Bit Rate>[11]: 320 kbps"},
      {5, "Folder Location", "[11]<Location>[11]: /music/Oldies/1.mp3"},
      {10, "Shortest Filename", "(Shortest Filename)"},
      {11, "Arbitrary", "(Arbitrary)"},
      {14, "Largest File Size", "[11]<Size>[11]: 4.2"},
      {0, "", ""},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(marked(keepersTitle(c.rule)), std::string("|<Keepers>|: ") + c.title);
    const std::string caption = marked(attributeCaption(c.rule, *world[0], dates));
    EXPECT_EQ(caption.substr(0, c.caption.size()), c.caption) << c.rule;
    EXPECT_EQ(caption.empty(), c.caption.empty());
  }
  for (const KeeperRuleInfo& rule : keeperRules())
    EXPECT_NE(attributeCaption(static_cast<int>(rule.rule), *world[0], dates).text, "")
        << rule.name;
  const auto shout = [](const Message& message) { return "<" + message.english() + ">"; };
  EXPECT_EQ(attributeCaption(4, *world[0], dates, shout).text, "<Bit Rate>: <320 kbps>");
  EXPECT_EQ(keepersTitle(4, shout).text, "<Keepers>: <Highest Bit Rate>");
}

/// A survey of five groups, whose second tracks all stand in both playlists.
struct Panel : WindowProcess {
  static std::vector<TrackBuilder> tracks() {
    std::vector<TrackBuilder> made;
    const auto pair = [&](TrackBuilder nonkeeper) {
      const auto group = static_cast<std::int32_t>(made.size());
      made.push_back(track("keeper").plays(made.size()).lasts(61'000).inGroup(group));
      made.push_back(nonkeeper.inGroup(group));
    };
    TrackBuilder second = track("2-1").by("Vol. 9").album("x");
    second.item.discNumber = 2;
    second.item.discCount = 3;
    pair(track("none").by(""));
    pair(track("ten").by("Vol. 10"));
    pair(second.number(1));
    pair(track("0-2").by("Vol. 9").album("x").number(2).lasts(3'601'000));
    pair(track("album A").by("Vol. 9").album("A"));
    return made;
  }
  World world{tracks()};
  ReplaylistWindowReferences& replaylist = ReplaylistControl::state().window;

  Panel()
      : WindowProcess(playlists({folder("F", 0xF), playlist("in", 1, {2, 4, 6, 8, 10}).in(0xF),
                                 playlist("top", 0xAB, {4, 4, 1})})) {
    preferences.set(settings::filterMatrixButton, std::int64_t{2});
    process.textSorter.groomedTracks = world.store();
    std::vector<ResultTrack> rows = world.rows();
    for (std::size_t i = 0; i < rows.size(); i += 2) rows[i].tCheckbox = true;
    window().bigArrayController.add(std::move(rows));
    ReplaylistControl::beginReplaylist(true);
    run();
  }

  std::string show(std::vector<IndexPath> selection) {
    replaylist.outline.setSelection(std::move(selection));
    ReplaylistControl::processThis();
    std::string names = replaylist.tracksPanelTitle.text() + ":";
    for (const TracksPanelRow& row : replaylist.knkArrayController.arrangedRows())
      names.append(" ").append(row.value("nonkeeper.tName").text());
    return names;
  }
};

TEST(TracksPanel, ListsThePairsOfTheSelectedPlaylistsInOrder) {
  Panel test;
  // Names go by the numbers in them. A missing disc number stands behind all others.
  EXPECT_EQ(test.show({{0, 0}}), "in: album A 2-1 0-2 ten none");
  EXPECT_EQ(test.show({{1}, {0, 0}}), "(Multiple Playlists): album A 2-1 0-2 ten ten none");
  EXPECT_EQ(test.show({{0}}), "F:");
  EXPECT_EQ(test.show({}), "(Multiple Playlists):");
  EXPECT_EQ(marked(test.replaylist.tracksPanelKeeperTitle.text()), "|<Keepers>|: Most Played");

  test.show({{1}});
  ReplaylistControl::processClear();
  EXPECT_EQ(test.replaylist.knkArrayController.size(), 0U);
  EXPECT_EQ(test.replaylist.tracksPanelTitle.text(), "");
  EXPECT_EQ(test.replaylist.tracksPanelKeeperTitle.text(), StyledText());
}

TEST(TracksPanel, RowsSayWhatTheTwoTracksAre) {
  Panel test;
  test.show({{0, 0}});
  const auto rows = test.replaylist.knkArrayController.arrangedRows();
  const TracksPanelRow& discTwo = rows[1];
  test.preferences.set(settings::filterMatrixButton, std::int64_t{10});  // the row stays as it is
  const TrackTexts left = ReplaylistControl::nonkeeperTexts(discTwo);
  EXPECT_EQ(marked(left.mess), "[11]<Plays>[11]: 0");
  EXPECT_EQ(left.nameTime, "2-1 - 0:00");
  EXPECT_EQ(left.tkInfo, "#1");
  EXPECT_EQ(left.dcInfo, "Disc 2 of 3");
  const TrackTexts right = ReplaylistControl::keeperTexts(discTwo);
  EXPECT_EQ(marked(right.mess), "[11]<Plays>[11]: 4");
  EXPECT_EQ(right.nameTime, "keeper - 1:01");
  EXPECT_EQ(right.tkInfo + right.dcInfo, "");

  const std::vector<std::pair<const char*, const char*>> paths = {
      {"nonkeeper.nkNameTime", "0-2 - 1:00:01"},
      {"nonkeeper.nktkInfo", "#2"},
      {"nonkeeper.nkdcInfo", ""},
      {"keeper.kpNameTime", "keeper - 1:01"},
      {"keeper.hexpid", "7"},
      {"nonkeeper.hexpid", "8"},
      {"playlistPID", "1"}};
  for (const auto& [path, text] : paths) EXPECT_EQ(rows[2].value(path).text(), text) << path;
  for (const char* unknown : {"", "nonkeeper", "tName", "nonkeeper.tNothing", "keeper.nkNameTime"})
    EXPECT_TRUE(rows[2].value(unknown).isAbsent()) << unknown;
}

}  // namespace
}  // namespace kestrel
