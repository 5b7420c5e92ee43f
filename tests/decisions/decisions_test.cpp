#include <algorithm>
#include <gtest/gtest.h>
#include <random>
#include <set>

#include "decisions/apply_decisions.h"
#include "decisions/decisions_file.h"
#include "decisions/decisions_json.h"
#include "decisions/seen_groups.h"
#include "tests/dupes/builders.h"

namespace kestrel::testing {
namespace {

using IDs = std::vector<std::uint64_t>;

TEST(KeeperPicks, CountWhereAKeeperStandsBesideAnotherMember) {
  KeeperPicks picks;
  picks.set(IDs{2}, IDs{1, 2, 3});
  picks.set(IDs{5}, IDs{5, 4});
  struct Case {
    const char* what;
    IDs group;
    PickState state;
    IDs keepers;
    std::size_t newMembers;
  };
  const Case cases[] = {
      {"as it was picked", {3, 2, 1}, PickState::holds, {2}, 0},
      {"a part of it", {2, 3}, PickState::holds, {2}, 0},
      {"with a new copy", {1, 2, 3, 9}, PickState::holds, {2}, 1},
      {"without the keeper", {1, 3}, PickState::none, {}, 0},
      {"the keeper beside strangers", {2, 9}, PickState::none, {}, 0},
      {"listed twice", {2, 2}, PickState::none, {}, 0},
      {"two groups joined", {1, 2, 4, 5}, PickState::undecided, {2, 5}, 0},
      {"joined without a keeper", {1, 2, 4}, PickState::holds, {2}, 1},
  };
  for (const Case& one : cases) {
    const GroupPick pick = picks.keepersFor(one.group);
    EXPECT_EQ(pick.state, one.state) << one.what;
    EXPECT_EQ(pick.keepers, one.keepers) << one.what;
    EXPECT_EQ(pick.newMembers, one.newMembers) << one.what;
  }
  // A group that is left alone, until somebody keeps one of it.
  picks.set({}, IDs{7, 8});
  EXPECT_EQ(picks.keepersFor(IDs{8, 7, 9}).state, PickState::holds);
  EXPECT_TRUE(picks.keepersFor(IDs{8, 7, 9}).keepers.empty());
  EXPECT_EQ(picks.keepersFor(IDs{7, 9}).state, PickState::none);
  EXPECT_EQ(decisionsFromText(decisionsText({picks, {}, {}, {}}, {}), "f").decisions.picks, picks);
  EXPECT_EQ(picks.keepersFor(IDs{2, 3, 7, 8}).state, PickState::undecided);
  picks.set(IDs{7}, IDs{7, 8});
  EXPECT_EQ(picks.clear(IDs{7, 8}), 1U);
  picks.set(IDs{4}, IDs{1, 2, 4, 5});
  EXPECT_EQ(picks.keepersFor(IDs{1, 2, 4, 5}).keepers, IDs{4}) << "the latest word on the group";
  EXPECT_EQ(picks.size(), 1U);
  EXPECT_EQ(picks.clear(IDs{4, 5}), 1U);
  EXPECT_TRUE(picks.empty());
}

// Against a table of all pairs.
TEST(NotDuplicates, AreThePairsThatWereAddedAndNotTakenBack) {
  std::mt19937 random(7);
  NotDuplicates sets;
  std::set<std::pair<std::uint64_t, std::uint64_t>> pairs;
  const auto some = [&] {
    IDs ids(2 + random() % 4);
    for (auto& id : ids) id = random() % 9;
    return ids;
  };
  const auto forEachPair = [](const IDs& ids, auto visit) {
    for (const auto a : ids)
      for (const auto b : ids)
        if (a < b) visit(std::pair(a, b));
  };
  for (int step = 0; step < 3000; ++step) {
    const IDs changed = some(), asked = some();
    if (random() % 3 != 0) {
      sets.add(changed);
      forEachPair(changed, [&](auto pair) { pairs.insert(pair); });
    } else {
      sets.remove(changed);
      forEachPair(changed, [&](auto pair) { pairs.erase(pair); });
    }
    bool all = trackIDs(asked).size() > 1;
    forEachPair(asked, [&](auto pair) { all = all && pairs.contains(pair); });
    ASSERT_EQ(sets.covers(asked), all) << step;
  }
}

TEST(DecisionsFile, KeepsWhatSeveralProgramsDecideAndFollowsAMovedLibrary) {
  MemoryFiles files;
  files.put("/music/Library.xml", "");
  DecisionsFile one(files, {"file:///music/Library.xml", "ABC", "1"});
  DecisionsFile other(files, {"file:///music/Library.xml", "ABC", "2"});
  EXPECT_EQ(one.load(), Decisions());
  one.change([](Decisions& decisions) {
    decisions.picks.set(IDs{2}, IDs{1, 2});
    decisions.setPreset({"Best \"sound\"", {"highest-bit-rate", "a-newer-rule"}, {"/a"}, {"FLAC"}});
    Preset strict{"Strict", {"most-played"}, {}, {}};
    strict.loose.emplace();
    decisions.setPreset(std::move(strict));
  });
  other.change([](Decisions& decisions) {
    decisions.notDuplicates.add(IDs{7, 0xFFFFFFFFFFFFFFFF});
  });
  const Decisions both = one.load();
  EXPECT_EQ(both.picks.list(), (std::vector<KeeperPick>{{{2}, {1, 2}}}));
  EXPECT_TRUE(both.notDuplicates.covers(IDs{7, 0xFFFFFFFFFFFFFFFF}));
  EXPECT_EQ(both.presets.front().keep.back(), "a-newer-rule");
  EXPECT_FALSE(both.presets.front().loose) << "says nothing of it";
  EXPECT_TRUE(both.presets.back().loose && both.presets.back().loose->empty());

  const LibraryIdentity moved{"file:///elsewhere/Library.xml", "ABC", "3"};
  EXPECT_EQ(DecisionsFile(files, moved).load(), Decisions()) << "a copy of a library that is there";
  files.remove("/music/Library.xml");
  EXPECT_EQ(DecisionsFile(files, moved).load(), both);
  EXPECT_EQ(DecisionsFile(files, {"file:///x.xml", "XYZ", "1"}).load(), Decisions());
}

TEST(DecisionsFile, IsNeverOverwrittenWhenItCannotBeRead) {
  for (const std::string text :
       {"{\"kestrelDecisions\": 1,\n \"picks\": }", "[]", "{}", "{\"kestrelDecisions\": 2}",
        "{\"kestrelDecisions\": 1, \"picks\": [{\"keep\": [\"1F\"], \"group\": [\"G\"]}]}",
        "{\"kestrelDecisions\": 1, \"notDuplicates\": [1]}"}) {
    MemoryFiles files;
    DecisionsFile file(files, {"file:///music/Library.xml", "", ""});
    files.put(file.path(), text);
    EXPECT_THROW(file.change([](Decisions&) {}), LibraryError) << text;
    EXPECT_EQ(files.readAll(file.path()), text);
  }
  try {
    decisionsFromText("{\"kestrelDecisions\": 1,\n \"picks\": [{\"keep\": [31]}]}", "mine.json");
    FAIL();
  } catch (const LibraryError& error) {
    EXPECT_NE(error.message.english().find("$.picks[0].keep[0]"), std::string::npos)
        << error.message.english();
  }
}

TEST(DecisionsText, TellsSlipsOfThePen) {
  const ReadDecisions read = decisionsFromText(
      R"({"kestrelDecisions": 1, "pick": [], "presets": [{"name": "a", "keep": ["foo"], "kind": 1}],
          "picks": [{"song": "Tea", "keep": ["1F"], "group": ["1F", "2F"]}]})",
      "mine.json");
  EXPECT_EQ(english(read.notes),
            (std::vector<std::string>{"$.pick has no meaning", "$.presets[0].kind has no meaning",
                                      "$.presets[0].keep: there is no rule \"foo\""}));
  EXPECT_EQ(read.decisions.presets.size(), 1U) << "it may be a rule of a later version";
}

TEST(AppliedDecisions, LeaveOutGroupsAndSetFlags) {
  std::vector<TrackBuilder> made;
  for (int i = 0; i < 8; ++i) made.push_back(track().inGroup(i / 2));
  const World world(made);
  std::vector<ResultTrack> rows = world.rows();
  NotDuplicates ignored;
  ignored.add(IDs{3, 4});
  EXPECT_EQ(leaveOutNotDuplicates(rows, ignored), std::vector<std::int32_t>{1});
  ASSERT_EQ(rows.size(), 6U);
  EXPECT_EQ(rows.back().tGroupID, 3);
  EXPECT_EQ(rows.back().dupeSort, 3);

  KeeperPicks picks;
  picks.set(IDs{1}, IDs{1, 2});
  std::vector<ResultTrack*> all;
  for (ResultTrack& row : rows) all.push_back(&row);
  const GroupIndex groups(rows.size(), [&](std::size_t row) { return rows[row].tGroupID; });
  std::vector<std::int32_t> told;
  const AppliedPicks applied = applyPicks(
      all, groups, picks, false, [&](std::int32_t group, auto&) { told.push_back(group); });
  EXPECT_EQ(told, std::vector<std::int32_t>{0});
  EXPECT_EQ(applied.picked, 1U);
  EXPECT_EQ(applied.changed, 1U);
  EXPECT_TRUE(rows[0].tCheckbox);
  EXPECT_FALSE(rows[1].tCheckbox || rows[2].tCheckbox);
}

TEST(SeenGroups, AreNewWhenAMemberHasJoined) {
  SeenGroups seen;
  seen.add(IDs{1, 2, 3});
  seen.add(IDs{4, 5});
  Moment when;
  const auto read = SeenGroups::read(seen.text(Moment(std::chrono::seconds(77))), when);
  ASSERT_TRUE(read);
  EXPECT_EQ(when, Moment(std::chrono::seconds(77)));
  EXPECT_FALSE(read->isNew(IDs{1, 3})) << "one has left";
  EXPECT_FALSE(read->isNew(IDs{5, 4}));
  EXPECT_TRUE(read->isNew(IDs{3, 4})) << "from two groups";
  EXPECT_TRUE(read->isNew(IDs{4, 5, 6}));
  EXPECT_FALSE(SeenGroups::read("kestrel-seen-groups 1 77\n1 x\n", when));
}

// Whatever tracks they name, be they in the library or not: a file says the same, and loading it
// again changes nothing.
TEST(Decisions, AreTheSameAfterAnyNumberOfTripsThroughAFile) {
  std::mt19937_64 random(7);
  const auto below = [&](std::uint64_t limit) { return random() % limit; };
  const LibraryIdentity library{"file:///music/Library.xml", "AB\"C", "1"};
  Decisions collected;
  for (int round = 0; round < 40; ++round) {
    SCOPED_TRACE(round);
    Decisions made;
    const auto someTracks = [&] {
      IDs ids;
      for (std::uint64_t i = 0, count = below(3) + 2; i < count; ++i)
        ids.push_back(below(4) == 0 ? ~below(100) : below(30) + 1);
      std::sort(ids.begin(), ids.end());
      ids.erase(std::unique(ids.begin(), ids.end()), ids.end());
      return ids;
    };
    for (std::uint64_t i = 0, count = below(4); i < count; ++i)
      if (const IDs members = someTracks(); members.size() > 1)
        made.picks.set(IDs{members.front()}, members);
    for (std::uint64_t i = 0, count = below(4); i < count; ++i)
      if (const IDs members = someTracks(); members.size() > 1) made.notDuplicates.add(members);
    for (std::uint64_t i = 0, count = below(3); i < count; ++i)
      made.setPreset({"p\n" + std::to_string(below(3)),
                      {"most-played", "a-newer-rule"},
                      {"/m/\xC3\xA9 x"},
                      below(2) ? std::vector<std::string>{"FLAC"} : std::vector<std::string>{}});
    const std::string text = decisionsText(made, library);
    const ReadDecisions read = decisionsFromText(text, "d.json");
    EXPECT_EQ(read.decisions, made);
    EXPECT_EQ(read.library.id, library.id);
    EXPECT_EQ(decisionsText(read.decisions, library), text);
    Decisions twice = made;
    twice.merge(read.decisions);
    EXPECT_EQ(decisionsText(twice, library), text);

    collected.merge(made);
    const TrackIDs known = collected.tracks();
    for (const std::uint64_t track : made.tracks())
      EXPECT_TRUE(std::binary_search(known.begin(), known.end(), track)) << track;
    for (const Preset& preset : made.presets) {
      ASSERT_TRUE(collected.preset(preset.name));
      EXPECT_EQ(*collected.preset(preset.name), preset) << "what is loaded goes first";
    }
  }
  while (!collected.presets.empty())
    EXPECT_TRUE(collected.removePreset(std::string(collected.presets.back().name)));
  EXPECT_FALSE(collected.removePreset("p\n1"));
}

// Against looking at every pair of members.
TEST(SeenGroups, AreNewExactlyWhenSomePairOfThemWas) {
  std::mt19937 random(11);
  for (int round = 0; round < 30; ++round) {
    std::vector<IDs> groups;
    SeenGroups seen;
    for (std::uint64_t track = 1; track < 40;) {
      IDs group;
      for (std::uint32_t i = 0, size = random() % 3 + 2; i < size; ++i) group.push_back(track++);
      track += random() % 3;
      seen.add(group);
      groups.push_back(std::move(group));
    }
    const auto together = [&](std::uint64_t a, std::uint64_t b) {
      return std::any_of(groups.begin(), groups.end(), [&](const IDs& group) {
        return std::count(group.begin(), group.end(), a) &&
               std::count(group.begin(), group.end(), b);
      });
    };
    for (int tries = 0; tries < 50; ++tries) {
      IDs members;
      const std::uint32_t start = random() % 38 + 1;
      for (std::uint32_t i = 0, size = random() % 3 + 2; i < size; ++i)
        members.push_back(start + random() % 4 * (random() % 4 ? 1 : 7));
      std::sort(members.begin(), members.end());
      members.erase(std::unique(members.begin(), members.end()), members.end());
      if (members.size() < 2) continue;
      bool isNew = false;
      for (const std::uint64_t a : members)
        for (const std::uint64_t b : members) isNew |= a != b && !together(a, b);
      EXPECT_EQ(seen.isNew(members), isNew);
    }
  }
}

}  // namespace
}  // namespace kestrel::testing
