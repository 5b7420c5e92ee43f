// What is told about groups: doubts, why they match, what goes with their copies, and what other
// rules would do.

#include <gtest/gtest.h>
#include <random>
#include <set>

#include "dupes/doubts.h"
#include "dupes/keeper_pass.h"
#include "dupes/losses.h"
#include "dupes/match_explanation.h"
#include "dupes/rule_comparison.h"
#include "tests/dupes/builders.h"

namespace kestrel::testing {
namespace {

std::string doubts(const std::vector<TrackBuilder>& tracks, const GroupingOptions& options = {}) {
  const World world(tracks);
  std::string text;
  for (const Doubt& doubt : DoubtFinder(options).doubtsOf(world.records()))
    text.append(text.empty() ? "" : "; ").append(explain(doubt).english());
  return text;
}

TEST(Doubts, NameWhatNotAllMembersHave) {
  EXPECT_EQ(doubts({track("Tea"), track("Tea")}), "");
  EXPECT_EQ(doubts({track("Tea (LIVE)"), track("Tea")}), "not all are live");
  EXPECT_EQ(doubts({track("Live and Let Die"), track("live and let die")}), "");
  EXPECT_EQ(doubts({track("Olive"), track("Alive"), track("Delivered")}), "") << "whole words only";
  EXPECT_EQ(doubts({track("Te").album("Ao Vivo em Lisboa"), track("Te")}), "not all are live");
  EXPECT_EQ(doubts({track("T").path("/m/T - Remasterisé.mp3"), track("T")}),
            "not all are remastered");
  EXPECT_EQ(doubts({track("T - Versión Acústica"), track("T - Remezcla")}),
            "not all are a remix; not all are acoustic");
  EXPECT_EQ(doubts({track("T (Radio Edit)"), track("T [Radio]")}), "not all are a radio edit");
  EXPECT_EQ(doubts({track("T (Edição de Rádio)"), track("T (Lange Fassung)")}),
            "not all are a radio edit; not all are extended");
  EXPECT_EQ(doubts({track("T (zensiert)"), track("T (explicit)")}),
            "not all are explicit; not all are clean");
  // Unknown times say nothing.
  EXPECT_EQ(doubts({track().lasts(180'000), track().lasts(0)}), "");
  EXPECT_EQ(doubts({track().lasts(180'000), track().lasts(199'000)}),
            "playing times are 19 seconds apart");
  EXPECT_EQ(doubts({track().lasts(180'000).album("A"), track().lasts(184'000).album("a")}), "");
  EXPECT_EQ(doubts({track().lasts(180'000).album("A"), track().lasts(184'000).album("B")}),
            "different albums, and 4 seconds apart");
  EXPECT_EQ(doubts({track().lasts(180'000), track().lasts(183'000)}, {false, 2}),
            "playing times are 3 seconds apart");
}

TEST(Doubts, KnowCommonFormsOfSixLanguages) {
  const std::pair<const char*, std::vector<const char*>> sorts[] = {
      {"live", {"Liveversion", "en concierto", "in concerto", "em concerto", "ＬＩＶＥ"}},
      {"a remix", {"remixée", "remixato"}},
      {"remastered", {"remasterización", "remasterização"}},
      {"acoustic", {"Akustikversion", "akustische Version"}},
      {"a radio edit", {"Radioedit", "versão de rádio"}},
      {"extended", {"rallongée", "versione lunga", "versão longa", "versão estendida", "12 Inch"}},
      {"explicit", {"explizit"}},
      {"mono", {"Monofassung"}}};
  for (const auto& [sort, words] : sorts)
    for (const std::string word : words)
      EXPECT_EQ(doubts({track("T"), track("T (" + word + ")")}), std::string("not all are ") + sort)
          << word;
  EXPECT_EQ(doubts({track("Ｌｉｖｅｒｙ"), track("ﾗｲﾌﾞ")}), "");
}

TEST(MatchExplanation, GoesFieldByField) {
  const World world({track("ab").by("C").album("x").lasts(61'000), track("A").by("bc").album("y")});
  const std::string criteria[] = {"tName", "tArtist"};
  const auto records = world.records();
  const MatchExplanation match =
      explainMatch(*world.store(), records, criteria, {false, 3}, records[0]);
  std::vector<std::string> lines = english(explain(match));
  EXPECT_EQ(lines,
            (std::vector<std::string>{
                "tName: \"ab\" and \"a\"", "tArtist: \"c\" and \"bc\"",
                "the fields differ and are equal only joined together: \"abc\"",
                "times count from 1:01, of \"ab\"", "would be split by: tAlbum and realTime"}));
}

TEST(LooseMatching, PassesOverWhatIsAskedFor) {
  const auto loose = [](const char* text, std::initializer_list<Loose> what) {
    LooseSet set = 0;
    for (const Loose one : what) set |= bitOf(one);
    std::string out;
    Loosener(set).append(text, out);
    return out;
  };
  using enum Loose;
  EXPECT_EQ(loose("Beyoncé Straße Øre", {accents}), "Beyonce Strasse Ore");
  EXPECT_EQ(loose("AC/DC – Mr. X", {punctuation}), "ACDCMrX");
  EXPECT_EQ(loose("Tea (Live) [2009]", {brackets}), "Tea");
  EXPECT_EQ(loose("(Intro)", {brackets}), "(Intro)") << "nothing would be left";
  EXPECT_EQ(loose("!!!", {punctuation, accents}), "!!!");
  EXPECT_EQ(loose("Tea (feat. Ann) - Mix", {featuring}), "Tea  - Mix");
  EXPECT_EQ(loose("Ann Ft. Bo", {featuring}), "Ann");
  EXPECT_EQ(loose("Aftermath", {featuring, articles}), "Aftermath");
  EXPECT_EQ(loose("The Band & Co", {articles, ampersand}), "Band and Co");
  EXPECT_EQ(loose("\xEF\xBC\xA1\xEF\xBC\xA2", {width}), "AB");
  EXPECT_EQ(loose("Tea (é)", {}), "Tea (é)");
  EXPECT_EQ(loose("Beyonce\xCC\x81", {accents}), "Beyonce");
  EXPECT_EQ(loose("が 한국 Йод", {accents}), "が 한국 Иод") << "voiced kana are other letters";
}

TEST(LooseMatching, AnEmptyValueMatchesOnlyWhereItIsAskedTo) {
  const World world({track("Tea").by("Ann"), track("Téa").by("Ann"), track("Tea"), track("tea"),
                     track("").by("TeaAnn"), track("").by("teaann"), track(""), track("")});
  const std::string criteria[] = {"tName", "tArtist"};
  const auto groups = [&](LooseSet loose) {
    const auto records = world.records();
    const Grouping grouping =
        groupTracks(*world.store(), records, criteria, {false, 0, loose}, [] { return false; });
    std::string text;
    for (std::size_t i = 0; i < grouping.members.size(); ++i) {
      if (i > 0 && grouping.members[i].group != grouping.members[i - 1].group) text += " | ";
      text += std::to_string(grouping.members[i].record->item().persistentID);
    }
    return text;
  };
  using enum Loose;
  EXPECT_EQ(groups(0), "156 | 34") << "untouched: an empty artist is equal to another";
  EXPECT_EQ(groups(bitOf(accents)), "12");
  EXPECT_EQ(groups(bitOf(punctuation)), "");
  EXPECT_EQ(groups(bitOf(accents) | bitOf(emptyValues)), "1256 | 34");
  EXPECT_EQ(groups(bitOf(emptyValues)), groups(0));
}

TEST(LooseMatching, EveryWordIsKnownAndAlone) {
  std::set<std::string> words;
  LooseSet all = 0;
  for (const LooseInfo& info : loosenings()) {
    EXPECT_TRUE(words.insert(info.word).second) << info.word;
    EXPECT_EQ(looseNamed(info.word), info.loose);
    EXPECT_EQ(all & bitOf(info.loose), 0) << info.word;
    all |= bitOf(info.loose);
  }
  EXPECT_FALSE(looseNamed("nothing"));
  // What is passed over once is passed over: a second time changes nothing.
  const char* texts[] = {
      "The Bänd (feat. X) & Co. [Live]", "Ａ・Ｂ", "L'été", "!!!", "(Intro)", "a"};
  for (const char* text : texts) {
    std::string once, twice;
    Loosener loosener(all);
    loosener.append(text, once);
    loosener.append(once, twice);
    EXPECT_EQ(twice, once) << text;
    EXPECT_FALSE(once.empty()) << text;
  }
}

// Fields that are equal only joined together, against comparing them one by one.
TEST(MatchExplanation, TellsJoinsThatOnlyLookEqual) {
  const std::string criteria[] = {"tName", "tArtist", "tAlbum"};
  const struct {
    TrackBuilder a, b;
    bool joined, onlyJoins;
  } cases[] = {
      {track("ab").by("c"), track("a").by("bc"), true, true},
      {track("ab").by("c"), track("AB").by("C"), true, false},
      {track("a").album("b"), track("a").by("b"), true, true},
      {track("a").by("b"), track("a").by("c"), false, false},
      {track("").by("ab"), track("ab"), true, true},
      {track("1").by("2"), track("12"), true, true},
  };
  for (const auto& one : cases) {
    const World world({one.a, one.b});
    const auto records = world.records();
    const Grouping grouping =
        groupTracks(*world.store(), records, criteria, {}, [] { return false; });
    EXPECT_EQ(grouping.groups, one.joined ? 1 : 0) << one.a.name << ' ' << one.b.name;
    if (!one.joined) continue;
    EXPECT_EQ(explainMatch(*world.store(), records, criteria, {}, nullptr).onlyJoins, one.onlyJoins)
        << one.a.name << ' ' << one.b.name;
  }
}

TEST(Losses, OfCoversAreToldWhereTheyAreAskedFor) {
  const World world({track(), track(), track(), track()});
  const KeeperFacts facts(world.store(), std::make_shared<const std::vector<Playlist>>());
  // With, without, not known, with.
  const CoverOf cover = [&](const TrackRecord& record) -> std::optional<bool> {
    if (&record == world[2]) return std::nullopt;
    return &record != world[1];
  };
  const auto loses = [&](std::size_t copy, std::size_t keeper) {
    return lossOf(*world[copy], *world[keeper], facts, cover).cover;
  };
  EXPECT_TRUE(loses(0, 1));
  EXPECT_FALSE(loses(1, 0));
  EXPECT_FALSE(loses(0, 3));
  EXPECT_FALSE(loses(0, 2)) << "the keeper may have one";
  EXPECT_FALSE(loses(2, 1)) << "the copy may have none";
  EXPECT_TRUE(lossOf(*world[0], *world[1], facts).isNothing()) << "not asked for";
  LossTotal total;
  for (const std::size_t copy : {0, 3}) total.add(lossOf(*world[copy], *world[1], facts, cover));
  EXPECT_EQ(explain(total).english(), "2 covers");
}

TEST(Losses, OfARatingThatWasWorkedOutAreNone) {
  auto computed = track();
  computed.item.rating = 80;
  computed.item.isRatingComputed = true;
  auto own = track();
  own.item.rating = 60;
  const World world({computed, own, track()});
  const KeeperFacts facts(world.store(), std::make_shared<const std::vector<Playlist>>());
  EXPECT_EQ(lossOf(*world[0], *world[2], facts).rating, 0);
  EXPECT_EQ(lossOf(*world[1], *world[0], facts).rating, 60);
  Loss loss = lossOf(*world[1], *world[0], facts);
  LossesBesideCarrying({TrackValue::rating}).leaveOut(loss);
  EXPECT_TRUE(loss.isNothing()) << "it is carried over";
}

TEST(Losses, OfCommentsAreAllButThoseThatAreCarriedOver) {
  const World world({track(), track()});
  LossesBesideCarrying beside({TrackValue::comments});
  std::string left;
  const std::pair<const TrackRecord*, const char*> copies[] = {
      {world[0], ""}, {world[0], "one"}, {world[0], "other"}, {world[0], "one"}, {world[1], "two"}};
  for (const auto& [keeper, comments] : copies) {
    Loss loss;
    loss.keeper = keeper;
    loss.comments = comments;
    beside.leaveOut(loss);
    left.append(loss.comments).append(";");
  }
  EXPECT_EQ(left, ";;other;;;") << "a keeper has room for one copy's";
}

TEST(Losses, AreWhatTheKeeperLacks) {
  auto full = track().plays(7).added(100).played(900).kind("FLAC audio file");
  full.item.rating = 80;
  full.item.beatsPerMinute = 120;
  full.item.skipCount = 3;
  full.item.skipped = full.item.lastPlayed;
  const World world({full, track().plays(2).added(200).kind("MPEG audio file"), track().plays(1)});
  std::vector<Playlist> lists(2);
  lists[0].items = {1, 2, 1};
  lists[1].items = {1};
  const KeeperFacts facts(world.store(), std::make_shared<const std::vector<Playlist>>(lists));
  const std::vector<ResultTrack> rows = world.rows();
  const auto losses =
      lossesOf(pointers(rows), facts, [&](const ResultTrack& row) { return &row == &rows[1]; });
  ASSERT_EQ(losses.size(), 2U);
  EXPECT_EQ(explain(losses[0]).english(),
            "7 plays, ★★★★, the earlier date added, the later date played, 3 skips, the "
            "later date skipped, 120 BPM, lossless sound and 1 playlist");
  EXPECT_EQ(explain(losses[1]).english(), "1 play");
  LossTotal total;
  for (const Loss& loss : losses) total.add(loss);
  EXPECT_EQ(total.plays, 8);
  EXPECT_EQ(explain(total).english(),
            "8 plays, 1 rating, 1 earlier date added, 1 later date played, 3 skips, 1 later date "
            "skipped, 1 BPM value, 1 lossless file and 1 place in playlists");
  EXPECT_EQ(total.copies, 2);
  EXPECT_TRUE(lossOf(*world[2], *world[0], facts).plays == 1);
}

// Against a keeper pass by each rule, with everything counted row by row.
TEST(RuleComparison, SparesCloudCopiesByTheRuleThatSparesThem) {
  const World world({track().cloud().plays(3), track().cloud().plays(5)});
  std::vector<ResultTrack> rows = world.rows();
  const GroupIndex index(rows.size(), [&](std::size_t row) { return rows[row].tGroupID; });
  const auto facts = std::make_shared<const KeeperFacts>(
      world.store(), std::make_shared<const std::vector<Playlist>>());
  const std::vector<ComparedRule> rules = {{{KeeperRule::shortestFileName}, {}},
                                           {{KeeperRule::mostPlayed}, {}}};
  FilterSettings settings{"2", 2, {}};
  const auto outcomes = compareRules(
                            pointers(rows), index, rules, settings, *facts,
                            [&](const ResultTrack& row) { return &row == &rows[1]; },
                            [](std::int32_t) { return false; }, [] { return false; })
                            .rules;
  EXPECT_EQ(outcomes[0].changedGroups, 1U) << "both stay";
  EXPECT_EQ(outcomes[0].playsLost, 0);
  EXPECT_EQ(outcomes[1].changedGroups, 0U);
  EXPECT_EQ(outcomes[1].playsLost, 3);
}

TEST(RuleComparison, SaysWhatAPassByEachRuleWouldDo) {
  std::mt19937 random(5);
  std::vector<TrackBuilder> made;
  const auto below = [&](int limit) { return static_cast<std::int64_t>(random() % limit); };
  for (int i = 0; i < 600; ++i) {
    auto one = track()
                   .plays(below(4))
                   .bits(below(3) * 64)
                   .bytes(below(5) * 1000)
                   .inGroup(static_cast<std::int32_t>(below(150)));
    one.path("/" + std::string(static_cast<std::size_t>(below(3) + 1), 'a') + "/" +
             std::string(static_cast<std::size_t>(below(4) + 1), 'b') + std::to_string(i));
    one.added(below(3) * 1000).modified(below(2)).played(below(3)).album(below(2) ? "x" : "y");
    one.item.rating = below(3) * 20;
    if (below(8) == 0) one.cloud();
    if (below(9) == 0) one.missing();
    made.push_back(one);
  }
  const World world(made);
  std::vector<ResultTrack> rows = world.rows();
  std::vector<Playlist> lists(3);
  for (int i = 0; i < 300; ++i) lists[random() % 3].items.push_back(random() % 600 + 1);
  const auto facts = std::make_shared<const KeeperFacts>(
      world.store(), std::make_shared<const std::vector<Playlist>>(lists));
  std::vector<ResultTrack*> all;
  for (ResultTrack& row : rows) all.push_back(&row);
  const GroupIndex index(rows.size(), [&](std::size_t row) { return rows[row].tGroupID; });
  FilterSettings settings{"4", 4, {"/aa", true}};
  settings.keeper.facts = facts;
  settings.keeper.folders = {"/aaa"};
  SeededRandom chance(1);
  const auto pass = [&](KeeperRule rule, auto decided) {
    settings.ruleNumber = static_cast<int>(rule);
    settings.rule = std::to_string(settings.ruleNumber);
    setKeepers(all, index.numbers(), settings, false, chance, decided);
  };
  const auto nothing = [](auto, auto, const GroupDecision&) {};
  pass(KeeperRule::highestBitRate, nothing);
  std::vector<bool> kept;
  for (const ResultTrack& row : rows) kept.push_back(row.tCheckbox);
  const std::vector<ComparedRule> rules = everyRule();
  const std::vector<const ResultTrack*> readable(all.begin(), all.end());
  const RuleComparison comparison = compareRules(
      readable, index, rules, settings, *facts,
      [](const ResultTrack& row) { return row.tCheckbox; }, [](std::int32_t) { return false; },
      [] { return false; });
  for (std::size_t i = 0; i < rules.size(); ++i) {
    if (rules[i].rules.front() == KeeperRule::singleArbitrary) continue;
    std::size_t changed = 0, opinions = 0;
    pass(rules[i].rules.front(), [&](std::size_t, auto members, const GroupDecision& decision) {
      if (!decision.pick.opinion) return;
      ++opinions;
      for (std::size_t m = 0; m < members.size(); ++m)
        if ((decision.flags[m] == MemberFlag::keeper) !=
            kept[static_cast<std::size_t>(members[m] - rows.data())]) {
          ++changed;
          break;
        }
    });
    EXPECT_EQ(comparison.rules[i].opinions, opinions) << i + 1;
    EXPECT_EQ(comparison.rules[i].changedGroups, changed) << i + 1;
  }
  const RuleOutcome& same = comparison.rules[static_cast<std::size_t>(4 - 1)];
  EXPECT_EQ(same.changedGroups, 0U);
  EXPECT_GT(same.bytes, 0);
  EXPECT_GT(same.entries, same.playlists);
  for (const GroupAgreement& group : comparison.groups) EXPECT_LE(group.agree, group.of);
}

}  // namespace
}  // namespace kestrel::testing
