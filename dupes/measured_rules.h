/// The rules that keep the track with the highest score: what each measures, and how that reads.
#pragma once

#include <cstdint>
#include <optional>
#include <span>

#include "dupes/keeper_rules.h"
#include "foundation/message.h"

namespace kestrel {

struct MeasuredRule {
  KeeperRuleInfo info;
  /// Nothing of a track that the rule does not consider.
  std::optional<std::int64_t> (*score)(const ResultTrack& track, const KeeperOptions& options);
  Message (*worded)(std::int64_t score);
  bool needsFacts = false;  ///< `KeeperOptions::facts`
};

/// In the order of their numbers, which follow those of all other rules.
std::span<const MeasuredRule> measuredRules() noexcept;
/// nullptr for the rules that compare values.
const MeasuredRule* measuredRule(KeeperRule rule) noexcept;

}  // namespace kestrel
