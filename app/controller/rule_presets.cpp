#include "app/controller/rule_presets.h"

#include <algorithm>
#include <utility>

#include "app/controller/result_groups.h"
#include "platform/preferences.h"
#include "platform/settings.h"
#include "ui/dupe_search.h"
#include "ui/process.h"

namespace kestrel {
namespace {

constexpr std::size_t mostCompared = 63;

/// The first rule and those that follow it.
std::vector<KeeperRule> chosenRules(const Preferences& preferences) {
  std::vector<KeeperRule> rules;
  if (const auto rule = keeperRule(preferences.integer(settings::filterMatrixButton)))
    rules.push_back(*rule);
  for (const std::string& text : preferences.textArray(settings::keeperChain))
    if (const auto rule = keeperRuleNamed(text)) rules.push_back(*rule);
  return rules;
}

}  // namespace

Preset presetOfSettings(const Preferences& preferences, std::string name) {
  Preset preset{std::move(name), {}, {}, {}};
  preset.loose = preferences.textArray(settings::looseMatching);
  for (const KeeperRule rule : chosenRules(preferences)) {
    preset.keep.push_back(keeperRuleWord(rule));
    if (rule == KeeperRule::orderOfFolders)
      preset.folders = preferences.textArray(settings::keeperFolders);
    if (rule == KeeperRule::orderOfKinds)
      preset.kinds = preferences.textArray(settings::keeperKinds);
  }
  return preset;
}

bool choosePreset(Preferences& preferences, const Preset& preset) {
  std::vector<std::int64_t> rules;
  for (const std::string& word : preset.keep)
    if (const auto rule = keeperRuleNamed(word)) rules.push_back(static_cast<std::int64_t>(*rule));
  if (rules.empty()) return false;
  preferences.set(settings::filterMatrixButton, rules.front());
  std::vector<std::string> chain;
  for (std::size_t i = 1; i < rules.size(); ++i) chain.push_back(std::to_string(rules[i]));
  preferences.set(settings::keeperChain, std::move(chain));
  if (!preset.folders.empty()) preferences.set(settings::keeperFolders, preset.folders);
  if (!preset.kinds.empty()) preferences.set(settings::keeperKinds, preset.kinds);
  if (preset.loose) preferences.set(settings::looseMatching, *preset.loose);
  return true;
}

ResultComparison compareRulesOfResult(const std::vector<Preset>& presets,
                                      const std::unordered_set<std::int32_t>& picked,
                                      const std::atomic<bool>& cancelled) {
  const Preferences& preferences = process().with.preferences;
  ResultComparison result;
  result.rules = comparedRules(presets);
  const std::vector<KeeperRule> chosen = chosenRules(preferences);
  const auto current =
      std::find_if(result.rules.begin(), result.rules.end(),
                   [&](const ComparedRule& compared) { return compared.rules == chosen; });
  if (current != result.rules.end())
    result.current = static_cast<std::size_t>(current - result.rules.begin());
  else if (!chosen.empty())
    result.rules.insert(result.rules.begin(), {chosen, {}});
  if (result.rules.size() > mostCompared) result.rules.resize(mostCompared);

  const auto facts = keeperFacts();
  if (!facts) return result;
  const auto content = process().textSorter.window.bigArrayController.content();
  std::vector<const ResultTrack*> rows;
  rows.reserve(content.size());
  for (const ResultTrack& row : content) rows.push_back(&row);
  const GroupIndex groups(rows.size(), [&](std::size_t row) { return rows[row]->tGroupID; });
  result.groups = groups.numbers().size();
  result.picked = picked.size();
  const bool keeperValue = keeperValueBy(preferences);
  const FilterSettings settings = filterSettings(preferences);
  result.outcomes = compareRules(
                        rows, groups, result.rules, settings, *facts,
                        [&](const ResultTrack& row) { return row.tCheckbox == keeperValue; },
                        [&](std::int32_t group) { return picked.contains(group); },
                        [&] { return cancelled.load(); })
                        .rules;
  return result;
}

}  // namespace kestrel
