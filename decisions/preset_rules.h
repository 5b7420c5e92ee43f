/// Rules and presets side by side, to be compared.
#pragma once

#include <span>
#include <vector>

#include "decisions/decisions.h"
#include "dupes/rule_comparison.h"

namespace kestrel {

/// Every rule, then the presets as far as all their rules are known.
std::vector<ComparedRule> comparedRules(std::span<const Preset> presets);

}  // namespace kestrel
