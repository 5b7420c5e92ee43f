#include "replaylist/survey.h"

#include <gtest/gtest.h>
#include <map>
#include <random>
#include <sstream>

#include "tests/cleanup/playlist_builders.h"

namespace kestrel {
namespace {

using namespace kestrel::testing;
using Reason = SkippedGroup::Reason;

/// Rows written as "7A* 7B 8C!": group number, track (a letter, A is 1), "*" ticked, "!" missing.
std::vector<SurveyRow> rows(const std::string& text) {
  std::vector<SurveyRow> made;
  std::istringstream words(text);
  for (std::string word; words >> word;) {
    SurveyRow& row = made.emplace_back();
    const std::size_t letter = word.find_first_not_of("0123456789");
    row.tGroupID = std::stoi(word.substr(0, letter));
    row.track = static_cast<std::uint64_t>(word[letter] - 'A' + 1);
    row.tCheckbox = word.find('*') != std::string::npos;
    row.fileMissing = word.find('!') != std::string::npos;
  }
  return made;
}

std::string letters(std::span<const std::uint64_t> tracks) {
  std::string text;
  for (const std::uint64_t track : tracks) text += static_cast<char>('A' + track - 1);
  return text;
}

/// "A<BC D<E -F 7? 8!": keepers with their non-keepers, non-keepers without one, groups without a
/// keeper, groups with a missing file.
std::string text(const GroupSurvey& survey) {
  if (survey.severalKeepers) return "several in " + std::to_string(*survey.severalKeepers);
  std::string all;
  const KeeperTable& table = survey.keepers;
  for (std::size_t i = 0; i < table.size(); ++i)
    all += letters(std::vector{table.keeper(i)}) + "<" + letters(table.nonKeepers(i)) + " ";
  for (std::uint64_t track = 1; track <= 26; ++track)
    if (table.isNonKeeper(track) && !table.keeperOf(track))
      all += "-" + letters(std::vector{track}) + " ";
  for (const SkippedGroup& group : survey.skipped)
    all += std::to_string(group.tGroupID) + (group.reason == Reason::noKeeper         ? "? "
                                             : group.reason == Reason::severalKeepers ? "+ "
                                                                                      : "! ");
  return all;
}

TEST(GroupSurvey, MapsKeepersToNonKeepersUnlessAGroupHasTwo) {
  const struct {
    std::string rows, ticksMarkKeepers, ticksMarkTheOthers;
  } cases[] = {
      {"", "", ""},
      {"0A* 0B", "A<B ", "B<A "},
      {"5C 0A* 0B 5D* 5E", "D<CE A<B ", "several in 5"},
      {"0A 0B 1C* 1D", "C<D -A -B 0? ", "several in 0"},
      {"0A* 0B* 1C 1D*", "several in 0", "C<D -A -B 0? "},
      {"3A* 3B! 4C* 4D", "C<D 3! ", "D<C 3! "},
      {"3A! 3B! 4C* 4D", "C<D 3! ", "several in 3"},
      // A group that would be skipped is checked all the same, up to the first offender.
      {"3A* 3B*! 4C* 4D*", "several in 3", "-C -D 3! 4? "},
      // Tracks that stand twice in the table: as keeper and non-keeper, as keeper of two groups.
      {"0A* 0A 0B", "A<AB ", "several in 0"},
      {"0A* 0B 1C* 1D 2A* 2E", "A<E C<D -B ", "B<A D<C E<A "},
      {"0A* 0C 1B* 1C", "A<C B<C ", "C<B -A "},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(text(surveyGroups(rows(c.rows), true)), c.ticksMarkKeepers) << c.rows;
    EXPECT_EQ(text(surveyGroups(rows(c.rows), false)), c.ticksMarkTheOthers) << c.rows;
  }
  // Of two keepers the first counts; a track is named once.
  const KeeperTable table = surveyGroups(rows("0A* 0C 1B* 1C 1D"), true).keepers;
  EXPECT_EQ(table.keeperOf(3), 1U);
  EXPECT_EQ(letters(table.allNonKeepers()), "CD");
}

TEST(GroupSurvey, WholeGroupsArePreparedSoThatNoneEndsItForTheOthers) {
  const struct {
    std::string rows, survey;
  } cases[] = {
      {"", ""},
      {"0A* 0B! 0C 1D* 1E", "A<BC D<E "},  // of B there is more reason to replace the entries
      {"0A*! 0B 1C! 1D", "0! 1! "},
      {"0A* 0B* 1C* 1D 2E 2F", "C<D -E -F 0+ 2? "},
      {"0A 0B* 0A 0B 1C* 1C* 1C 1D", "B<A C<D "},  // listed more than once
      {"0A* 0A", "A< "},
  };
  for (const auto& c : cases) {
    const PreparedRows prepared = preparedRows(rows(c.rows), true);
    GroupSurvey survey = surveyGroups(prepared.rows, true);
    survey.skipped.insert(survey.skipped.begin(), prepared.leftOut.begin(), prepared.leftOut.end());
    EXPECT_EQ(text(survey), c.survey) << c.rows;
  }
}

TEST(PlaylistSurvey, TheOutlineHasParentFoldersOfAffectedPlaylists) {
  const KeeperTable table = surveyGroups(rows("0A* 0B 1C 1D"), true).keepers;
  const std::vector<std::uint64_t> hit = {9, 2, 1, 2}, lost = {3}, clean = {1, 9};
  const struct {
    const char* description;
    std::vector<PlaylistBuilder> library;
    std::string outline, hidden;
  } cases[] = {
      {"non-keepers count whether they have a keeper or not",
       {playlist("a", 1, hit), playlist("b", 2, lost), playlist("c", 3, clean),
        playlist("d", 4, {})},
       "a b",
       ""},
      {"only the user's own regular playlists are considered",
       {playlist("master", 1, hit).master(), playlist("music", 2, hit).distinguished(4),
        playlist("smart", 3, hit).kind(PlaylistKind::smart), folder("F", 4, hit)},
       "",
       ""},
      {"a parent of parents is missing, and with it the branch",
       {folder("F", 1, hit), folder("G", 2, hit).in(1), playlist("deep", 3, hit).in(2)},
       "",
       "deep"},
      {"unless it holds an affected playlist itself",
       {folder("F", 1, hit), folder("G", 2, hit).in(1), playlist("deep", 3, hit).in(2),
        playlist("a", 4, hit).in(1), playlist("top", 5, hit), folder("H", 6)},
       "F(a G(deep)) top",
       ""},
      {"folders that contain each other",
       {folder("F", 1).in(2), folder("G", 2).in(1), playlist("a", 3, hit).in(1),
        playlist("b", 4, hit).in(2)},
       "",
       "a b"},
  };
  for (const auto& c : cases) {
    const PlaylistSurvey survey = surveyPlaylists(playlists(c.library), table, nullptr);
    EXPECT_EQ(outlineText(*survey.outline), c.outline) << c.description;
    EXPECT_EQ(hiddenNames(survey), c.hidden) << c.description;
  }

  const auto library =
      playlists({folder("F", 0xFF, hit), playlist("a", 1, hit).in(0xFF), playlist("b", 2, lost)});
  const PlaylistSurvey survey = surveyPlaylists(library, table, nullptr);
  EXPECT_EQ(survey.affected[0]->nonKeeperKeeperPairs(), (std::vector<KeeperPair>{{2, 1}}));
  EXPECT_EQ(survey.affected[0]->value("hexParentID").text(), "FF");
  EXPECT_TRUE(survey.affected[1]->nonKeeperKeeperPairs().empty());
  EXPECT_TRUE(survey.affected[1]->value("hexParentID").isAbsent());
  EXPECT_EQ(survey.justFolders.at(0)->items(), (std::vector<std::string>{"9", "2", "1", "2"}));
}

TEST(PlaylistSurvey, PairsAreThoseOfASearchThroughEveryList) {
  std::mt19937 random(3);
  const auto upTo = [&](std::uint32_t most) { return random() % most; };
  for (int round = 0; round < 20; ++round) {
    std::vector<SurveyRow> table;
    std::map<std::uint64_t, std::uint64_t> keeperOf;  // 0: there is none
    for (std::uint64_t track = 1, group = 0; group < 40; ++group) {
      const std::uint64_t first = track, last = track + 2 + upTo(3), keeper = first + upTo(5);
      const bool missing = upTo(6) == 0;
      for (; track < last; ++track) {
        table.push_back(
            {track, static_cast<std::int32_t>(group), track == keeper, missing && track == first});
        if (!missing && track != keeper) keeperOf[track] = keeper < last ? keeper : 0;
      }
    }
    std::shuffle(table.begin(), table.end(), random);
    std::vector<PlaylistBuilder> builders;
    for (std::uint64_t id = 1; id <= 15; ++id) {
      std::vector<std::uint64_t> items(upTo(12));
      for (std::uint64_t& item : items) item = upTo(200);
      builders.push_back(playlist("p", id, items));
    }
    const auto library = playlists(builders);
    const PlaylistSurvey survey =
        surveyPlaylists(library, surveyGroups(table, true).keepers, nullptr);
    auto found = survey.affected.begin();
    for (const Playlist& playlist : *library) {
      std::vector<KeeperPair> pairs;
      bool affected = false;
      for (const std::uint64_t item : playlist.items) {
        const auto nonKeeper = keeperOf.find(item);
        if (nonKeeper == keeperOf.end()) continue;
        affected = true;
        const KeeperPair pair{item, nonKeeper->second};
        if (pair.keeper != 0 && std::find(pairs.begin(), pairs.end(), pair) == pairs.end())
          pairs.push_back(pair);
      }
      if (!affected) continue;
      ASSERT_NE(found, survey.affected.end());
      EXPECT_EQ(&(*found)->playlist(), &playlist);
      EXPECT_EQ((*found)->nonKeeperKeeperPairs(), pairs);
      ++found;
    }
    EXPECT_EQ(found, survey.affected.end());
  }
}

}  // namespace
}  // namespace kestrel
