#include "ui/tracks_panel.h"

#include <gtest/gtest.h>

#include "dupes/keeper_rules.h"
#include "platform/settings.h"
#include "tests/cleanup/playlist_builders.h"
#include "ui/replaylist_control.h"

namespace kestrel {
namespace {

using namespace kestrel::testing;

/// Bold parts between "<" and ">".
std::string marked(const StyledText& styled) {
  if (styled.runs.empty()) return styled.text;
  std::string out;
  for (const StyledRun& run : styled.runs) {
    const std::size_t begin = byteOffset(styled.text, run.start);
    const std::string part =
        styled.text.substr(begin, byteOffset(styled.text, run.start + run.length) - begin);
    out += run.style.bold ? "<" + part + ">" : part;
  }
  return out;
}

TEST(ReplaylistTexts, TheHeaderIsBoldAtItsCaptionButOneCharacterEarlyAtShowTracks) {
  const StyledText header = replaylistHeader(2);
  EXPECT_EQ(marked(header),
            "Each of the playlists below contain at least one non-Keeper track as currently "
            "Filtered by <Most Played>.\r\rTo display a selected playlist's Non-Keeper tracks, "
            "click< Show Tracks>. Click <OK> to re-populate selected playlists with Keeper "
            "tracks.");
  for (const StyledRun& run : header.runs) EXPECT_EQ(run.style.points, 12);
}

TEST(ReplaylistTexts, CaptionsSayTheValueByWhichKeepersWereChosen) {
  World world({track().bits(320).plays(41).added(0).modified(86'400).bytes(4'200'000).path(
      "/music/Oldies/1.mp3")});
  ShortDateTimeFormatter dates("en_US", "UTC");
  const std::string first = "1/1/70, 12:00", second = "1/2/70, 12:00";
  const struct {
    std::int64_t rule;
    const char* title;
    std::string caption;  ///< as it begins: what stands before AM and PM varies with the rules
  } cases[] = {
      {1, "<Keepers>: Oldest Date Added", "<Date Added>: " + first},
      {2, "<Keepers>: Most Played", "<Plays>: 41"},
      {3, "<Keepers>: Most Recently Played", "<Last Played>: "},  // never
      {4, "<Keepers>: Highest Bit Rate", "<Bit Rate>: 320 kbps"},
      {5, "<Keepers>: Folder Location", "<Location>: /music/Oldies/1.mp3"},
      {10, "<Keepers>: Shortest Filename", "(Shortest Filename)"},
      {11, "<Keepers>: Arbitrary", "(Arbitrary)"},
      {12, "<Keepers>: Oldest Date Modified", "<Date Modified>: " + second},
      {14, "<Keepers>: Largest File Size", "<Size>: 4.2"},
      {0, "<Keepers>: ", ""},
      {static_cast<int>(keeperRules().size()) + 1, "<Keepers>: ", ""},
  };
  for (const auto& c : cases) {
    const StyledText title = keepersTitle(c.rule);
    EXPECT_EQ(marked(title), c.title);
    for (const StyledRun& run : title.runs) EXPECT_TRUE(run.style.centred);
    const StyledText caption = attributeCaption(c.rule, *world[0], dates);
    EXPECT_EQ(marked(caption).substr(0, c.caption.size()), c.caption) << c.rule;
    EXPECT_EQ(caption.runs.empty(), c.rule == 10 || c.rule == 11 || c.caption.empty());
    for (const StyledRun& run : caption.runs) EXPECT_EQ(run.style.points, 11);
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
  EXPECT_EQ(marked(test.replaylist.tracksPanelKeeperTitle.text()), "<Keepers>: Most Played");

  test.show({{1}});
  ReplaylistControl::processClear();
  EXPECT_EQ(test.replaylist.knkArrayController.size(), 0U);
  EXPECT_EQ(test.replaylist.tracksPanelTitle.text(), "");
  EXPECT_EQ(test.replaylist.tracksPanelKeeperTitle.text(), StyledText());
}

TEST(TracksPanel, SortsAllPairsOfAllPlaylists) {
  Panel test;
  constexpr std::size_t playlists = 2000;
  test.show(std::vector<IndexPath>(playlists, {0, 0}));
  const auto rows = test.replaylist.knkArrayController.arrangedRows();
  ASSERT_EQ(rows.size(), 5 * playlists);
  constexpr std::array inOrder = {"album A", "2-1", "0-2", "ten", "none"};
  for (std::size_t i = 0; i < rows.size(); ++i)
    ASSERT_EQ(rows[i].value("nonkeeper.tName").text(), inOrder[i / playlists]) << i;
}

TEST(TracksPanel, RowsSayWhatTheTwoTracksAre) {
  Panel test;
  test.show({{0, 0}});
  const auto rows = test.replaylist.knkArrayController.arrangedRows();
  const TracksPanelRow& discTwo = rows[1];
  test.preferences.set(settings::filterMatrixButton, std::int64_t{10});  // the row stays as it is
  const TrackTexts left = ReplaylistControl::nonkeeperTexts(discTwo);
  EXPECT_EQ(marked(left.mess), "<Plays>: 0");
  EXPECT_EQ(left.nameTime, "2-1 - 0:00");
  EXPECT_EQ(left.tkInfo, "#1");
  EXPECT_EQ(left.dcInfo, "Disc 2 of 3");
  const TrackTexts right = ReplaylistControl::keeperTexts(discTwo);
  EXPECT_EQ(marked(right.mess), "<Plays>: 4");
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
