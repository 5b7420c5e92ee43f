#include "changes/plan.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "changes/library_changes.h"
#include "changes/plan_json.h"
#include "changes/report.h"
#include "foundation/library_error.h"
#include "tests/musicapp/playlist_builders.h"

namespace kestrel {
namespace {

using namespace kestrel::testing;
using IDs = std::vector<std::uint64_t>;

TEST(Plan, SaysWhatChangesAndWhy) {
  const auto library = playlists({playlist("Library", 1, {1, 2, 3, 4, 5}).master(),
                                  folder("F", 0xF, {2, 5}), playlist("in", 2, {2, 9, 2, 5}).in(0xF),
                                  playlist("none", 3, {9}), playlist("both", 4, {4, 1, 5, 3})});
  const std::vector<ReplaylistChoice> choices = {{4, false, {{4, 3}, {5, 3}, {9, 9}}},
                                                 {2, true, {{2, 1}, {5, 3}}},
                                                 {3, true, {{2, 1}}},
                                                 {0xF, true, {}},
                                                 {1, true, {}},
                                                 {77, true, {}}};
  const Plan plan = planReplaylist(*library, choices, {{2, "Most Played: 4 over 2 plays"}});
  ASSERT_EQ(plan.playlists.size(), 2U);
  const PlannedPlaylist& in = plan.playlists[0];
  EXPECT_EQ(in.name, "in");
  EXPECT_EQ(in.folderName, "F");
  EXPECT_EQ(in.replacements, (std::vector<Replacement>{{1, 2, 1, "Most Played: 4 over 2 plays"},
                                                       {3, 2, 1, "Most Played: 4 over 2 plays"},
                                                       {4, 5, 3, ""}}));
  EXPECT_TRUE(in.repeats.empty()) << "track 2 stood there twice before";
  EXPECT_EQ(newEntries(in, (*library)[2].items), (IDs{1, 9, 1, 3}));
  const PlannedPlaylist& both = plan.playlists[1];
  EXPECT_FALSE(both.shown);
  EXPECT_EQ(both.repeats, (std::vector<CreatedRepeat>{{3, {1, 3, 4}}}));
  std::string left;
  for (const LeftOut& one : plan.leftOut) left += one.id + " ";
  EXPECT_EQ(left, "F 1 4D 3 ");
}

TEST(Plan, LeavesOutNamesakesWhereReplacingOneWouldDeleteTheOthers) {
  const auto library =
      playlists({playlist("Mix", 1, {2}), playlist("Mix", 2, {2}), playlist("mix", 3, {2}),
                 playlist("Mix", 4, {2}).distinguished(4), playlist("Own", 5, {2}),
                 playlist("Own", 6, {}).kind(PlaylistKind::smart)});
  std::vector<ReplaylistChoice> choices;
  for (const std::uint64_t id : {1, 2, 3, 5}) choices.push_back({id, true, {{2, 1}}});
  EXPECT_EQ(planReplaylist(*library, choices, {}).playlists.size(), 4U);
  const Plan plan = planReplaylist(*library, choices, {}, false);
  ASSERT_EQ(plan.playlists.size(), 2U);
  EXPECT_EQ(plan.playlists[0].playlist * 10 + plan.playlists[1].playlist, 35U);
  EXPECT_EQ(plan.leftOut.size(), 2U);
}

TEST(Plan, DeletesWhatWouldRepeatATrackWherePlaylistsListItOnce) {
  const auto library = playlists({playlist("in", 1, {2, 1, 3, 4}), playlist("all", 2, {5, 6})});
  const std::vector<ReplaylistChoice> choices = {{1, true, {{2, 1}, {3, 7}, {4, 7}}}};
  const Plan plan = planReplaylist(*library, choices, {}, true, false);
  ASSERT_EQ(plan.playlists.size(), 1U);
  EXPECT_EQ(newEntries(plan.playlists[0], (*library)[0].items), (IDs{1, 7}));
  EXPECT_TRUE(plan.playlists[0].repeats.empty());

  const Plan added = planAddToPlaylist(*library, 2, {6, 7, 7}, false);
  ASSERT_EQ(added.playlists.size(), 1U);
  EXPECT_EQ(added.playlists[0].additions, IDs{7});
  const Plan nothing = planAddToPlaylist(*library, 2, {6, 5}, false);
  EXPECT_TRUE(nothing.playlists.empty());
  EXPECT_EQ(nothing.leftOut.size(), 1U);
}

TEST(Plan, AnotherLibraryIsToldFromTheOneItWasMadeFrom) {
  const LibraryIdentity planned{"file:///music/l.xml", "AB", "1"};
  EXPECT_TRUE(differenceOf(planned, planned).empty());
  for (const auto& [now, expected] : std::vector<std::pair<LibraryIdentity, const char*>>{
           {{"file:///music/m.xml", "AB", "1"}, "from the library /music/l.xml, and this is /mus"},
           {{"file:///music/l.xml", "AC", "1"}, "another library has taken the place"},
           {{"file:///music/l.xml", "AB", "2"}, "was changed since"}})
    EXPECT_NE(differenceOf(planned, now).english().find(expected), std::string::npos) << expected;
}

/// Of three entries.
PlannedPlaylist planned(std::uint64_t id, std::string name,
                        std::vector<Replacement> replacements = {}) {
  PlannedPlaylist made;
  made.playlist = id;
  made.name = std::move(name);
  made.entryCount = 3;
  made.replacements = std::move(replacements);
  return made;
}

TEST(Plan, ReadsBackAsItWasWritten) {
  Plan plan;
  plan.made = Moment(std::chrono::nanoseconds(1'700'000'000'123'456'789));
  plan.library = {"file:///m/l.xml", "AB", "7"};
  plan.leftOut = {{LeftOut::What::group, "12", "", Message::verbatim("why")},
                  {LeftOut::What::folder, "F", "Fö \"x\"", Message::verbatim("why")}};
  std::vector<Plan> plans(6, plan);
  plans[0].playlists = {planned(~std::uint64_t{0}, "a\n", {{1, 2, 3, "r"}, {3, 2, 3, ""}}),
                        planned(2, "b", {{1, 1, 2, ""}})};
  PlannedPlaylist& full = plans[0].playlists[0];
  full.folder = 0xF;
  full.folderName = "Fö";
  full.shown = false;
  full.entries = 9;
  full.repeats = {{3, {1, 3}}};
  plans[1].kind = RunKind::cleanUp;
  plans[1].playlists = {planned(1, "P")};
  plans[1].playlists[0].deleteIndexes = {1, 3};
  plans[2].kind = RunKind::trash;
  plans[2].files = {{"/m/\xFF.mp3", 1, "n", -3, 5, 6, 7, "/k.mp3", {}},
                    {"", 2, "", 0, 0, 0, 0, "", Message::verbatim("x")}};
  plans[2].files[0].keeper = 0xAB;
  plans[2].files[0].otherTracks = {3, 4};
  plans[3].kind = RunKind::addToPlaylist;
  plans[3].playlists = {planned(1, "P")};
  plans[3].playlists[0].additions = {7, 7, 8};
  plans[4] = planAddToLibrary(std::vector<std::string>{"/m/\xFF.mp3", "/m/x/../b.mp3"});
  EXPECT_EQ(plans[4].files[1].path, "/m/b.mp3");
  plans[5].kind = RunKind::remove;
  plans[5].playlists = plans[0].playlists;
  plans[5].playlists[0].deleteIndexes = {2};
  plans[5].files = plans[2].files;
  plans[5].tracks = {{1, "n", 3, 4, {}}, {2, "m", 3, {}, Message::verbatim("x")}};
  plans[5].carries = {TrackValue::plays, TrackValue::comments};
  TrackValues values;
  values.plays = 3;
  values.rating = 80;
  values.added = values.lastPlayed = OptionalDate{1'400'000'000};
  values.comments = "c \"x\"\n";
  plans[5].carried = {{4, "k", 3, {}, {{1, values}, {2, {}}}}};
  for (const Plan& one : plans) EXPECT_EQ(planFromJson(jsonOf(one).dump(), "p.json"), one);
}

TEST(Plan, OfTheEarlierFormatIsRead) {
  const Plan plan = planFromJson(
      R"({"version":1,"kind":"cleanup","made":5,"library":{"path":"/m/L b.xml","persistentID":"AB",
          "playlists":"7","file":{"size":9,"modified":1700000000000000001,"device":3,"inode":4}},
          "playlists":[{"hexpid":"1","name":"P","folderName":"","shown":true,"entryCount":3,
          "fingerprint":"F","deleteIndexes":[2]}],"leftOut":[]})",
      "p.json");
  EXPECT_EQ(plan.library,
            (LibraryIdentity{"file:///m/L%20b.xml", "AB", "9-1700000000000000001-3-4"}));
  EXPECT_EQ(plan.playlists.at(0).deleteIndexes, IDs{2});
}

TEST(Plan, WhatIsNoPlanIsRefusedWithItsPlace) {
  Plan plan;
  plan.playlists = {planned(1, "P", {{1, 2, 3, "r"}, {2, 2, 3, ""}})};
  const std::string good = jsonOf(plan).dump();
  const auto with = [&](const std::string& from, const std::string& to) {
    std::string text = good;
    return text.replace(text.find(from), from.size(), to);
  };
  const std::vector<std::pair<std::string, std::string>> cases = {
      {"", "JSON"},
      {"{\n \"version\" 1}", "line 2, column 12"},
      {"[]", "plan.version is not a whole number"},
      {with("\"version\":2", "\"version\":3"), "format 3"},
      {with("replaylist", "other"), "plan.kind"},
      {with("\"hexpid\":\"1\"", "\"hexpid\":\"G\""), "plan.playlists[0].hexpid is not a hex"},
      {with("\"position\":2", "\"position\":1"), "entries[1].position"},
      {with("\"position\":2", "\"position\":4"), "entries[1].position"},
      {with("\"shown\":true,", ""), "playlists[0].shown is not true or false"},
      {with("\"entryCount\":3", "\"entryCount\":-3"), "entryCount"}};
  for (const auto& [text, expected] : cases) {
    try {
      planFromJson(text, "p.json");
      ADD_FAILURE() << text;
    } catch (const LibraryError& error) {
      EXPECT_NE(std::string(error.what()).find(expected), std::string::npos) << error.what();
    }
  }
}

TEST(Plan, LeavesOutWhatChangedAfterTheScan) {
  const auto choices =
      choicesOf(findRepeats(playlists({playlist("a", 1, {2, 2}), playlist("b", 2, {3, 3})})));
  const Plan plan =
      planCleanUp(*playlists({playlist("a", 1, {4, 2}), playlist("b", 2, {3, 3})}), choices);
  ASSERT_EQ(plan.playlists.size(), 1U);
  EXPECT_EQ(plan.playlists[0].name, "b");
  EXPECT_EQ(plan.leftOut.at(0).reason.english(), "it was changed since it was looked through");
}

TEST(Plan, HasTheConfirmedPlaylistsAndNeverAFolder) {
  const auto library =
      playlists({folder("F", 0xF, {2}), playlist("a", 1, {2}).in(0xF), playlist("b", 2, {2}),
                 folder("G", 0xE).in(0xF), playlist("c", 3, {2}).in(0xE), folder("H", 0xD),
                 folder("I", 0xC).in(0xD), playlist("deep", 4, {2}).in(0xC)});
  SurveyReport survey;
  survey.skippedGroups = {{4, SkippedGroup::Reason::missingFile}};
  const GroupSurvey groups =
      surveyGroups(std::vector<SurveyRow>{{1, 1, true, false}, {2, 1, false, false}}, true);
  survey.playlists = surveyPlaylists(library, groups.keepers, nullptr);
  const auto at = [&](std::size_t place) {
    return PlaylistReplacements{survey.playlists.affected[place], {{2, 1}}};
  };
  auto choices = choicesOf(survey, std::vector{at(0), at(2)});
  choices.push_back({0xF, true, {{2, 1}}});
  Plan plan = planReplaylist(*library, choices, {});
  ASSERT_EQ(plan.playlists.size(), 2U);
  EXPECT_EQ(plan.playlists[0].name + plan.playlists[1].name, "ac");

  for (LeftOut& left : leftOutOf(survey, choices)) plan.leftOut.push_back(std::move(left));
  std::string text;
  for (const Warning& warning : warningsOf(plan)) text += sentence(warning).english() + "\n";
  EXPECT_EQ(text,
            "Chosen for the playlists in it, not rebuilt: \"F\".\n"
            "Left out, because the outline cannot show what is in a folder within a folder: "
            "\"deep\".\n"
            "1 group is left out, because a file of the group is missing.\n");
  EXPECT_EQ(choicesOf(survey).size(), 4U);
}

TEST(Warnings, NameTheDangerAndThePlaylists) {
  Plan plan;
  plan.playlists = {planned(1, "Mix")};
  PlannedPlaylist& mix = plan.playlists[0];
  mix.folderName = "F";
  mix.shown = false;
  mix.repeats = {{3, {1, 2}}};
  for (int i = 0; i < 8; ++i)
    plan.leftOut.push_back({LeftOut::What::playlist, "1", "L", Message::verbatim("why")});
  std::string text;
  for (const Warning& warning : warningsOf(plan)) text += sentence(warning).english() + "\n";
  EXPECT_EQ(text,
            "\"F / Mix\" will list 1 track more than once.\n"
            "The outline does not show \"F / Mix\", which is in a folder within a folder.\n"
            "Left out, because why: \"L\", \"L\", \"L\", \"L\", \"L\" and 3 more.\n");
  EXPECT_EQ(warningsOf(Plan{}), (std::vector<Warning>{{Warning::Kind::nothingToDo, {}, 0}}));
}

}  // namespace
}  // namespace kestrel
