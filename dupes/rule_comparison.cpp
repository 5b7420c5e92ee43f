#include "dupes/rule_comparison.h"

#include <algorithm>
#include <array>
#include <bit>
#include <future>
#include <limits>
#include <thread>

#include "dupes/read_ahead.h"

namespace kestrel {
namespace {

constexpr std::size_t mostRules = 63;

using Scores = std::vector<std::optional<std::int64_t>>;

/// What a rule says of a group: who stays, if it says anything.
struct Choice {
  const ResultTrack* keeper = nullptr;
  bool chooses = false;  ///< not all candidates are as good to it
};

/// The groups that one thread compares, and what came of them.
class Comparison {
 public:
  Comparison(std::span<const ComparedRule> rules, const FilterSettings& settings,
             const KeeperFacts& facts)
      : rules_(rules), settings_(settings), facts_(facts), filter_(settings) {
    settings_.keeper.facts = nullptr;
    outcomes.resize(rules.size());
  }

  GroupAgreement compare(std::int32_t number, std::span<const ResultTrack* const> members,
                         FunctionRef<bool(const ResultTrack&)> isKeeper, bool isFixed,
                         std::span<std::uint64_t> leaving) {
    GroupAgreement agreement{number, 0, 0};
    kept_.clear();
    for (const ResultTrack* member : members)
      if (isKeeper(*member)) kept_.push_back(member);
    candidates_ = isFixed ? std::vector<const ResultTrack*>() : filter_.candidates(members);
    for (auto& scores : scores_) scores.clear();
    for (std::size_t i = 0; i < rules_.size(); ++i) {
      const Choice choice = candidates_.empty() ? Choice() : choose(rules_[i].rules);
      if (choice.keeper && rules_[i].rules.size() == 1 && choice.chooses) {
        ++agreement.of;
        if (kept_.size() == 1 && kept_.front() == choice.keeper) ++agreement.agree;
      }
      count(i, choice, members, leaving);
    }
    return agreement;
  }

  std::vector<RuleOutcome> outcomes;

 private:
  std::span<const std::optional<std::int64_t>> scoresOf(KeeperRule rule) {
    Scores& scores = scores_[static_cast<std::size_t>(rule)];
    if (!scores.empty()) return scores;
    KeeperOptions& options = settings_.keeper;
    for (const ResultTrack* track : candidates_) {
      if (rule == KeeperRule::inMostPlaylists)
        scores.emplace_back(facts_.playlistsWith(*track->record));
      else if (rule == KeeperRule::albumWithMostTracks)
        scores.emplace_back(facts_.albumScore(*track->record));
      else
        scores.push_back(keeperScore(rule, *track, options));
    }
    // The one exception of that rule: the first of all, however long its name is.
    if (rule == KeeperRule::shortestFileName && !scores.front() &&
        candidates_.front()->record->availability() != FileAvailability::cloud)
      scores.front() = std::numeric_limits<std::int64_t>::min();
    return scores;
  }

  Choice choose(std::span<const KeeperRule> rules) {
    Choice choice;
    left_.resize(candidates_.size());
    for (std::uint32_t i = 0; i < left_.size(); ++i) left_[i] = i;
    for (const KeeperRule rule : rules) {
      if (choice.keeper && left_.size() == 1) break;
      if (rule == KeeperRule::singleArbitrary) return {};
      const auto scores = scoresOf(rule);
      std::optional<std::int64_t> best;
      for (const std::uint32_t i : left_)
        if (scores[i] && (!best || *scores[i] >= *best)) {
          best = scores[i];
          choice.keeper = candidates_[i];
        }
      if (!best) continue;
      choice.chooses =
          std::erase_if(left_, [&](std::uint32_t i) { return scores[i] != best; }) > 0 ||
          choice.chooses;
    }
    return choice;
  }

  void count(std::size_t rule, const Choice& choice, std::span<const ResultTrack* const> members,
             std::span<std::uint64_t> leaving) {
    RuleOutcome& outcome = outcomes[rule];
    const bool sparesCloud = rules_[rule].rules.size() == 1 &&
                             rules_[rule].rules.front() == KeeperRule::shortestFileName;
    if (choice.keeper) ++outcome.opinions;
    std::size_t keepers = 0;
    std::int64_t rating = 0;
    bool changes = false;
    const bool sparesAll =
        sparesCloud && !choice.keeper && !candidates_.empty() && !settings_.keeper.alwaysUnCheck;
    const auto stays = [&](const ResultTrack* member) {
      if (sparesAll) return member->record->availability() == FileAvailability::cloud;
      if (!choice.keeper) return std::find(kept_.begin(), kept_.end(), member) != kept_.end();
      return member == choice.keeper ||
             (sparesCloud && member->record->availability() == FileAvailability::cloud);
    };
    for (const ResultTrack* member : members) {
      const bool wasKept = std::find(kept_.begin(), kept_.end(), member) != kept_.end();
      const bool kept = stays(member);
      changes = changes || kept != wasKept;
      if (!kept) continue;
      ++keepers;
      rating = std::max(rating, givenRating(member->record->item()));
    }
    if (changes) ++outcome.changedGroups;
    if (keepers == 0) return;
    for (const ResultTrack* member : members) {
      // A track that is listed twice is one track.
      if (stays(member) || (choice.keeper && member->record == choice.keeper->record)) continue;
      const TrackRecord& record = *member->record;
      const MediaItem& item = record.item();
      if (record.availability() == FileAvailability::reachable)
        outcome.bytes += std::max<std::int64_t>(item.fileSize, 0);
      outcome.playsLost += item.playCount;
      if (givenRating(item) > rating) ++outcome.ratingsLost;
      // Entries are replaced where it is clear by what.
      if (keepers > 1) continue;
      outcome.entries += facts_.entriesOf(record);
      leaving[facts_.placeOf(record)] |= std::uint64_t{1} << rule;
    }
  }

  std::span<const ComparedRule> rules_;
  FilterSettings settings_;
  const KeeperFacts& facts_;
  GroupFilter filter_;
  std::vector<const ResultTrack*> kept_, candidates_;
  std::vector<std::uint32_t> left_;
  std::array<Scores, 64> scores_;
};

void add(RuleOutcome& sum, const RuleOutcome& part) {
  sum.changedGroups += part.changedGroups;
  sum.opinions += part.opinions;
  sum.entries += part.entries;
  sum.bytes += part.bytes;
  sum.playsLost += part.playsLost;
  sum.ratingsLost += part.ratingsLost;
}

}  // namespace

std::vector<ComparedRule> everyRule() {
  std::vector<ComparedRule> rules;
  for (const KeeperRuleInfo& info : keeperRules()) rules.push_back({{info.rule}, {}});
  return rules;
}

RuleComparison compareRules(std::span<const ResultTrack* const> rows, const GroupIndex& groups,
                            std::span<const ComparedRule> rules, const FilterSettings& settings,
                            const KeeperFacts& facts,
                            FunctionRef<bool(const ResultTrack&)> isKeeper,
                            FunctionRef<bool(std::int32_t)> isFixed,
                            FunctionRef<bool()> cancelled) {
  rules = rules.first(std::min(rules.size(), mostRules));
  RuleComparison result;
  result.rules.resize(rules.size());
  result.groups.resize(groups.numbers().size());
  const unsigned threads = std::clamp(std::thread::hardware_concurrency(), 1U, 8U);
  // By place of a record: a track may be a member of groups of several threads, so that each has
  // marks of its own.
  std::vector<std::vector<std::uint64_t>> leaving(threads);
  std::vector<Comparison> parts(threads, Comparison(rules, settings, facts));
  const auto compare = [&](unsigned thread) {
    leaving[thread].resize(facts.store().size() + 1);
    const std::size_t count = groups.numbers().size();
    std::vector<const ResultTrack*> members;
    for (std::size_t i = count * thread / threads; i < count * (thread + 1) / threads; ++i) {
      if (i % 256 == 0 && cancelled()) return;
      const std::int32_t number = groups.numbers()[i];
      members.clear();
      for (const std::uint32_t row : groups.members(number)) members.push_back(rows[row]);
      result.groups[i] =
          parts[thread].compare(number, members, isKeeper, isFixed(number), leaving[thread]);
    }
  };
  std::vector<std::future<void>> helpers;
  for (unsigned thread = 1; thread < threads; ++thread)
    helpers.push_back(std::async(std::launch::async, compare, thread));
  compare(0);
  for (auto& helper : helpers) helper.get();

  std::vector<std::uint64_t>& marks = leaving[0];
  for (unsigned thread = 1; thread < threads; ++thread)
    for (std::size_t i = 0; i < marks.size(); ++i) marks[i] |= leaving[thread][i];
  for (const Comparison& part : parts)
    for (std::size_t i = 0; i < rules.size(); ++i) add(result.rules[i], part.outcomes[i]);
  std::uint64_t touched = 0;
  facts.forEachEntry(
      [&](std::uint32_t place) { touched |= marks[place]; },
      [&] {
        for (; touched; touched &= touched - 1)
          ++result.rules[static_cast<std::size_t>(std::countr_zero(touched))].playlists;
      });
  return result;
}

}  // namespace kestrel
