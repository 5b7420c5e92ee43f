#include "decisions/preset_rules.h"

#include <utility>

namespace kestrel {

std::vector<ComparedRule> comparedRules(std::span<const Preset> presets) {
  std::vector<ComparedRule> rules = everyRule();
  for (const Preset& preset : presets) {
    ComparedRule chain{{}, preset.name};
    for (const std::string& word : preset.keep)
      if (const auto rule = keeperRuleNamed(word)) chain.rules.push_back(*rule);
    if (!chain.rules.empty() && chain.rules.size() == preset.keep.size())
      rules.push_back(std::move(chain));
  }
  return rules;
}

}  // namespace kestrel
