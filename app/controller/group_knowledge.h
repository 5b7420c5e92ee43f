/// What can be told of the groups of a result beyond who is in them: which are doubtful, and how
/// many rules would keep what is kept.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <unordered_map>
#include <vector>

#include "dupes/doubts.h"
#include "dupes/keeper_facts.h"
#include "dupes/rule_comparison.h"
#include "library/result_track.h"

namespace kestrel {

/// A result as it stood when somebody began to look at it. The rows must stay in their place;
/// their flags may change meanwhile.
struct ResultInView {
  std::span<const ResultTrack> rows;
  std::vector<bool> kept;  ///< by row
  /// Groups with keepers that the user has picked.
  std::vector<std::int32_t> picked;
  GroupingOptions grouping;
  FilterSettings settings;  ///< by which the keepers were chosen
  std::shared_ptr<const KeeperFacts> facts;
};

class GroupKnowledge {
 public:
  /// Looks at all groups. False when `cancelled`, which is asked every few hundred groups: then
  /// what is known is not whole. For the worker.
  bool findDoubts(const ResultInView& result, FunctionRef<bool()> cancelled);
  /// The same, on several threads.
  bool findAgreements(const ResultInView& result, FunctionRef<bool()> cancelled);

  /// None for a group that nothing speaks against, or that is unknown.
  [[nodiscard]] std::span<const Doubt> doubtsOf(std::int32_t group) const;
  /// How many groups have any.
  [[nodiscard]] std::size_t doubtful() const noexcept { return doubts_.size(); }
  /// As the rules have chosen; 0 of 0 where the user has, no rule tells the copies apart, or it is
  /// not known yet.
  [[nodiscard]] GroupAgreement agreementOf(std::int32_t group) const;
  /// Of the library; nullptr while they are not worked out.
  [[nodiscard]] const std::shared_ptr<const KeeperFacts>& facts() const noexcept { return facts_; }

 private:
  std::unordered_map<std::int32_t, std::vector<Doubt>> doubts_;
  std::vector<GroupAgreement> agreements_;  ///< by group number
  std::shared_ptr<const KeeperFacts> facts_;
};

}  // namespace kestrel
