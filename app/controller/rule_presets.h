/// The rules that decide what is kept, as presets save and choose them, and what other rules would
/// do with a result.
#pragma once

#include <atomic>
#include <memory>
#include <string>
#include <unordered_set>
#include <vector>

#include "decisions/preset_rules.h"

namespace kestrel {

class Preferences;

/// The rules that are chosen now, and what is passed over when values are compared, under a name.
Preset presetOfSettings(const Preferences& preferences, std::string name);
/// Chooses a preset's rules, with its orders of folders and kinds and its looser matching if it has
/// any. Rules that are not
/// known are passed over; false, and nothing is changed, where none is.
bool choosePreset(Preferences& preferences, const Preset& preset);

/// What each rule would do, against what is kept now.
struct ResultComparison {
  std::vector<ComparedRule> rules;
  std::vector<RuleOutcome> outcomes;  ///< of each
  std::size_t current = 0;            ///< the place of those that are chosen
  std::size_t groups = 0;
  std::size_t picked = 0;  ///< groups that the user has picked: they stay as they are
};

/// Of every rule, every preset, and the chosen chain where it is neither. Reads the upper table and
/// the settings; on the worker, while nobody changes them. Incomplete once `cancelled` is set.
ResultComparison compareRulesOfResult(const std::vector<Preset>& presets,
                                      const std::unordered_set<std::int32_t>& picked,
                                      const std::atomic<bool>& cancelled);

}  // namespace kestrel
