#include "dupes/keeper_rules.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <set>
#include <span>

#include "dupes/keeper_facts.h"
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
      "2 Oldest Date Added: tie at 1970-01-01: the last in the table");
  EXPECT_EQ(picked("2", {track().plays(5), track().plays(9), track().plays(9)}),
            "2 Most Played: tie at 9 plays: the last in the table");
  EXPECT_EQ(picked("2", {track().plays(12), track().plays(41), track().plays(0)}),
            "1 Most Played: 41 over 12 and 0 plays");
  EXPECT_EQ(picked("3", {track().played(100), track().played(200), track()}),
            "1 Most Recently Played: 1970-01-01 00:03 over 1970-01-01 00:01 and never");
  EXPECT_EQ(
      picked("4", {track().bits(320), track().bits(128), track().bits(320), track().bits(256)}),
      "2 Highest Bit Rate: tie at 320 kbit/s: the last in the table");
  EXPECT_EQ(picked("5", {track().path("/music/best/1"), track().path("/music/bestof/2"), track()}),
            "1 Folder Location: 2 tracks in /music/best: the last in the table");
  EXPECT_EQ(picked("5", {track().path("/music/Best/1"), track().path("/x/music/best/2")}),
            "- Folder Location: no track in the folder: no keeper");
  EXPECT_EQ(picked("6", {track().added(300), track().added(100), track().added(300)}),
            "2 Newest Date Added: tie at 1970-01-01: the last in the table");
  EXPECT_EQ(picked("7", {track().plays(3), track().plays(3), track().plays(8)}),
            "1 Least Played: tie at 3 plays: the last in the table");
  EXPECT_EQ(picked("8", {track().played(100), track(), track().played(200)}),
            "1 Least Recently Played: never over 1970-01-01 00:01 and 1970-01-01 00:03");
  EXPECT_EQ(picked("9", {track().bits(320), track().bits(128), track().bits(128)}),
            "2 Lowest Bit Rate: tie at 128 kbit/s: the last in the table");
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
            "2 Oldest Date Modified: tie at 1970-01-01: the last in the table");
  // A missing date is the earliest.
  EXPECT_EQ(picked("12", {track(), track().modified(-50'000'000)}),
            "0 Oldest Date Modified: no date over 1968-06-01");
  EXPECT_EQ(picked("13", {track().modified(300), track().modified(300), track().modified(100)}),
            "1 Newest Date Modified: tie at 1970-01-01: the last in the table");
  EXPECT_EQ(picked("14", {track().bytes(5), track().bytes(10), track().bytes(9)}),
            "1 Largest File Size: 10 over 5 and 9 bytes");
  EXPECT_EQ(picked("15", {track().bytes(5), track().bytes(1), track().bytes(4), track().bytes(3),
                          track().bytes(2)}),
            "1 Smallest File Size: 1 over 5, 4, 3 and 1 more bytes");
  for (const std::string& none : {std::string("0"), std::to_string(keeperRules().size() + 1),
                                  std::string("02"), std::string()})
    EXPECT_EQ(picked(none.c_str(), {track(), track()}), "- no such rule: no keeper");
}

TEST(KeeperRule, FurtherRulesLookAtMoreThanOneValue) {
  const auto of = [](const char* name, const char* albumName, const char* path) {
    return track(name).album(albumName).path(path);
  };
  const auto sampled = [](TrackBuilder made, std::int64_t hertz, std::int64_t rating = 0) {
    made.item.sampleRate = hertz;
    made.item.rating = rating;
    return made;
  };
  const World world({sampled(track().kind("MPEG audio file").bits(320), 48000, 80),
                     sampled(track().kind("FLAC audio file").bits(700).by("Ann"), 44100, 100),
                     sampled(track().kind("Apple Lossless audio file").bits(650), 48000, 0),
                     track().cloud(), of("a", "Small", "/b/s/1"), of("b", "Large", "/b/l/1"),
                     of("c", "Large", "/b/l/2"), of("d", "Large", "/c/l/2")});
  std::vector<Playlist> lists(5);
  const std::vector<std::uint64_t> entries[] = {{1, 1, 1}, {2}, {2, 77}, {3, 3}, {3}};
  for (std::size_t i = 0; i < lists.size(); ++i) lists[i].items = entries[i];
  lists[3].isMaster = true;
  lists[4].kind = PlaylistKind::smart;
  KeeperOptions options;
  options.folders = {"/c/", "/b/"};
  options.kinds = {"apple LOSSLESS", "mpeg"};
  options.facts = std::make_shared<KeeperFacts>(
      world.store(), std::make_shared<const std::vector<Playlist>>(lists));
  options.cover = [&](const TrackRecord& record) {
    return &record == world[0]   ? std::optional(false)
           : &record == world[1] ? std::optional(true)
                                 : std::nullopt;
  };
  options.alwaysUnCheck = true;
  const std::vector<ResultTrack> rows = world.rows();
  SeededRandom random(1);
  const auto kept = [&](KeeperRule rule, std::vector<std::size_t> places) {
    std::vector<const ResultTrack*> some;
    for (const std::size_t place : places) some.push_back(&rows[place]);
    const Pick pick = chooseKeeper(some, rule, options, random);
    return (pick.keeper ? std::to_string(pick.keeper - rows.data()) : "-") + " " +
           explain(pick).english();
  };
  using enum KeeperRule;
  EXPECT_EQ(
      kept(losslessFirst, {0, 1, 2}),
      "2 Lossless First: lossless with 48000 Hz and 650 kbit/s over lossy with 48000 Hz and 320 "
      "kbit/s and lossless with 44100 Hz and 700 kbit/s");
  {
    // The finer samples before the higher rate, and that before more channels.
    const auto flac = [](std::int64_t bits, std::int64_t hertz, std::int64_t channels) {
      TrackBuilder made = track().kind("FLAC audio file");
      made.item.sampleDepth = bits;
      made.item.sampleRate = hertz;
      made.item.channels = channels;
      return made;
    };
    EXPECT_EQ(
        picked("16",
               {flac(16, 192000, 6), flac(24, 48000, 1), flac(24, 44100, 6), flac(24, 48000, 2)}),
        "3 Lossless First: lossless with 24 bits, 48000 Hz and 2 channels over lossless with "
        "16 bits, 192000 Hz and 6 channels, lossless with 24 bits, 48000 Hz and 1 channel and "
        "lossless with 24 bits, 44100 Hz and 6 channels");
    // What the library does not say is asked of the files, of lossless ones alone.
    const World told({flac(0, 44100, 0), flac(24, 44100, 2), track()});
    std::string asked;
    options.samples = [&](const TrackRecord& record) {
      asked += std::to_string(record.item().persistentID);
      return std::optional(SampleForm{32, 1});
    };
    const std::vector<ResultTrack> some = told.rows();
    EXPECT_EQ(chooseKeeper(pointers(some), losslessFirst, options, random).keeper, &some[0]);
    EXPECT_EQ(asked.find_first_not_of('1'), std::string::npos) << asked;
    options.samples = nullptr;
    EXPECT_EQ(picked("16", {track(), flac(0, 0, 0)}), "1 Lossless First: lossless over lossy");
  }
  EXPECT_EQ(kept(highestRating, {0, 1, 2}), "1 Highest Rating: ★★★★★ over ★★★★ and no rating");
  EXPECT_EQ(kept(inMostPlaylists, {0, 1, 2}),
            "1 In Most Playlists: 2 playlists over 1 playlist and 0 playlists");
  EXPECT_EQ(kept(mostCompleteTags, {0, 1, 2}),
            "1 Most Complete Tags: 2 filled fields over 1 filled field");
  EXPECT_EQ(kept(withCover, {0, 1, 2}), "1 With Cover: with a cover over without a cover");
  EXPECT_EQ(kept(withCover, {2, 3}), "- With Cover: nothing is known of it: no keeper");
  EXPECT_EQ(kept(localBeforeCloud, {0, 3}), "0 Local Before Cloud: local over in the cloud");
  EXPECT_EQ(kept(orderOfFolders, {5, 0, 7}),
            "7 Order of Folders: place 1 over place 2 and place 3");
  EXPECT_EQ(kept(orderOfKinds, {0, 1, 2}), "2 Order of Kinds: place 1 over place 2 and place 3");
  EXPECT_EQ(kept(albumWithMostTracks, {4, 6, 7}),
            "6 Album with Most Tracks: 2 tracks of the album over 1 track of the album");
  options = KeeperOptions();
  options.alwaysUnCheck = true;
  EXPECT_EQ(kept(albumWithMostTracks, {4, 6}),
            "- Album with Most Tracks: nothing is known of it: no keeper");
}

TEST(KeeperRule, ChainsDecideWhatIsLeftOpen) {
  const World world({track().bits(320).plays(1).path("/a/1"),
                     track().bits(320).plays(9).path("/a/2"),
                     track().bits(320).plays(9).path("/a/333"), track().bits(128).plays(99)});
  const std::vector<ResultTrack> rows = world.rows();
  SeededRandom random(1);
  const auto kept = [&](std::vector<const char*> words, const char* folder = "/nowhere",
                        bool alwaysUnCheck = true) {
    std::vector<KeeperRule> rules;
    for (const char* word : words) rules.push_back(*keeperRuleNamed(word));
    const Pick pick = chooseKeeper(pointers(rows), rules[0], std::span(rules).subspan(1),
                                   {folder, alwaysUnCheck}, random);
    return (pick.keeper ? std::to_string(pick.keeper - rows.data()) : "-") + " " +
           explain(pick).english();
  };
  EXPECT_EQ(
      kept({"highest-bit-rate", "most-played"}),
      "2 Highest Bit Rate: tie at 320 kbit/s, then Most Played: tie at 9 plays: the last in the "
      "table");
  EXPECT_EQ(
      kept({"Highest-Bit-Rate", "2", "shortest-file-name"}),
      "1 Highest Bit Rate: tie at 320 kbit/s, then Most Played: tie at 9 plays, then Shortest "
      "File Name: 1 over 3 characters");
  EXPECT_EQ(kept({"folder-location", "lowest-bit-rate", "most-played"}),
            "3 Folder Location: no track in the folder, then Lowest Bit Rate: 128 over 320 kbit/s");
  EXPECT_EQ(kept({"folder-location", "most-played", "folder-location"}, "/a"),
            "2 Folder Location: 3 tracks in /a, then Most Played: tie at 9 plays, then Folder "
            "Location: 2 tracks in /a: the last in the table");
  EXPECT_EQ(
      kept({"folder-location", "with-cover"}),
      "- Folder Location: no track in the folder, then With Cover: nothing is known of it: no "
      "keeper");
  std::set<std::string> seen;
  for (int i = 0; i < 200; ++i)
    seen.insert(kept({"highest-bit-rate", "single-arbitrary", "most-played"}).substr(0, 1));
  EXPECT_EQ(seen, (std::set<std::string>{"0", "1", "2"}));
  EXPECT_FALSE(keeperRuleNamed("best"));
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

// A rule that does not pick leaves its candidates to the next one; so does a tie, but no more than
// the tied ones.
TEST(KeeperRule, ChainsNarrowRuleByRule) {
  using enum KeeperRule;
  const auto world = World({track().bits(320).plays(1).bytes(9).path("/a/1"),
                            track().bits(320).plays(5).bytes(5).path("/a/2"),
                            track().bits(320).plays(5).bytes(7).path("/b/3"),
                            track().bits(128).plays(9).bytes(99).path("/c/4"),
                            track().bits(96).plays(9).bytes(1).path("/d/5").cloud()});
  const std::vector<ResultTrack> rows = world.rows();
  const auto candidates = pointers(rows);
  KeeperOptions options;
  options.alwaysUnCheck = true;
  options.folder = "/b/";
  options.folders = {"/c/", "/a/"};
  SeededRandom random(3);
  const struct {
    std::vector<KeeperRule> chain;
    int kept;  ///< from 0
    KeeperRule decided;
  } cases[] = {
      {{highestBitRate, mostPlayed, largestFileSize}, 2, largestFileSize},
      {{highestBitRate, mostPlayed, smallestFileSize}, 1, smallestFileSize},
      {{highestBitRate, mostPlayed}, 2, mostPlayed},
      {{mostPlayed, highestBitRate}, 3, highestBitRate},
      {{highestBitRate, folderLocation}, 2, folderLocation},
      {{orderOfFolders, mostPlayed}, 3, orderOfFolders},
      // Without an opinion: the next goes on with all of them.
      {{inMostPlaylists, withCover, mostPlayed, localBeforeCloud}, 3, localBeforeCloud},
      {{folderLocation, mostPlayed}, 2, folderLocation},
  };
  for (const auto& one : cases) {
    std::string words;
    for (const KeeperRule rule : one.chain) words += keeperRuleWord(rule) + " ";
    SCOPED_TRACE(words);
    const Pick pick = chooseKeeper(candidates, one.chain.front(), std::span(one.chain).subspan(1),
                                   options, random);
    ASSERT_TRUE(pick.keeper);
    EXPECT_EQ(pick.keeper - rows.data(), one.kept);
    EXPECT_EQ(pick.rule, one.decided);

    // The same, slowly: of those left, those with the highest score by each rule.
    std::vector<const ResultTrack*> left = candidates;
    for (const KeeperRule rule : one.chain) {
      std::vector<std::pair<std::int64_t, const ResultTrack*>> scored;
      for (const ResultTrack* row : left)
        if (const auto score = keeperScore(rule, *row, options)) scored.emplace_back(*score, row);
      if (scored.empty()) continue;
      const std::int64_t best = std::max_element(scored.begin(), scored.end())->first;
      left.clear();
      for (const auto& [score, row] : scored)
        if (score == best) left.push_back(row);
    }
    EXPECT_EQ(left.back(), pick.keeper);
  }
}

}  // namespace
}  // namespace kestrel
