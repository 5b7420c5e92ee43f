/// What other rules would do: for each rule, how much would be kept differently and what that
/// costs.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "dupes/group_filter.h"
#include "dupes/group_index.h"
#include "dupes/keeper_facts.h"

namespace kestrel {

/// A rule, or a chain of them under a name.
struct ComparedRule {
  std::vector<KeeperRule> rules;  ///< one or more
  std::string preset;             ///< its name; empty for a single rule
};

/// What would come of a rule. Groups in which it has no opinion or leaves the choice to chance are
/// taken as they are kept now.
struct RuleOutcome {
  std::size_t changedGroups = 0;  ///< whose keeper would be another
  std::size_t opinions = 0;       ///< groups that it decides
  std::int64_t playlists = 0;     ///< in which entries would be replaced
  std::int64_t entries = 0;
  std::int64_t bytes = 0;        ///< of the files that would go, each once for a track
  std::int64_t playsLost = 0;    ///< of the tracks that would go
  std::int64_t ratingsLost = 0;  ///< tracks that would go and are rated higher than what stays
  friend bool operator==(const RuleOutcome&, const RuleOutcome&) = default;
};

/// How many rules would keep what is kept now, of those that choose something: rules which leave
/// the choice to chance, have no opinion, or cannot tell the candidates apart, count in neither.
struct GroupAgreement {
  std::int32_t group = 0;
  std::uint16_t agree = 0, of = 0;
  friend bool operator==(const GroupAgreement&, const GroupAgreement&) = default;
};

struct RuleComparison {
  std::vector<RuleOutcome> rules;      ///< in the order in which they were given
  std::vector<GroupAgreement> groups;  ///< in the order of the index; single rules only
};

/// Every rule on its own, by number.
std::vector<ComparedRule> everyRule();

/// Compares at most 63 rules with the keepers that the rows have now. `settings` are those by which
/// they were chosen; its rule and chain do not count. `isKeeper(row)`: whether a row is kept.
/// `isFixed(group)`: whether a group's keepers stay whatever the rule, as where they were picked by
/// hand; it has no agreement. On several threads; `cancelled`, which all of them ask, leaves the
/// result incomplete.
RuleComparison compareRules(std::span<const ResultTrack* const> rows, const GroupIndex& groups,
                            std::span<const ComparedRule> rules, const FilterSettings& settings,
                            const KeeperFacts& facts,
                            FunctionRef<bool(const ResultTrack&)> isKeeper,
                            FunctionRef<bool(std::int32_t)> isFixed, FunctionRef<bool()> cancelled);

}  // namespace kestrel
