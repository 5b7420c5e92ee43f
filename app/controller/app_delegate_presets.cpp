// The controller's part that is about the rules under names that the user has saved.

#include <algorithm>
#include <utility>

#include "app/controller/app_delegate.h"
#include "app/controller/criteria.h"
#include "app/controller/rule_presets.h"
#include "ui/process.h"

namespace kestrel {

void AppDelegate::savePreset(const std::string& name) {
  Preset preset = presetOfSettings(process_.with.preferences, name);
  changePresets(
      [preset = std::move(preset)](Decisions& decisions) { decisions.setPreset(preset); });
}

void AppDelegate::removePreset(const std::string& name) {
  changePresets([name](Decisions& decisions) {
    std::erase_if(decisions.presets, [&](const Preset& preset) { return preset.name == name; });
  });
}

void AppDelegate::renamePreset(const std::string& name, const std::string& newName) {
  if (name == newName) return;
  changePresets([name, newName](Decisions& decisions) {
    const Preset* found = decisions.preset(name);
    if (!found) return;
    Preset renamed = *found;
    renamed.name = newName;
    // One that has the new name gives way.
    std::erase_if(decisions.presets, [&](const Preset& preset) { return preset.name == newName; });
    std::replace_if(
        decisions.presets.begin(), decisions.presets.end(),
        [&](const Preset& preset) { return preset.name == name; }, renamed);
  });
}

void AppDelegate::changePresets(std::function<void(Decisions&)> edit) {
  if (!decisions_) return;
  // What the worker writes, and what windows show meanwhile.
  Decisions shown;
  shown.presets = std::move(presets_);
  edit(shown);
  presets_ = std::move(shown.presets);
  changeDecisions(std::move(edit));
  presetObservers.notify();
}

bool AppDelegate::usePreset(const Preset& preset) {
  const LooseSet before = chosenLoose(process_.with.preferences);
  if (!choosePreset(process_.with.preferences, preset)) return false;
  // What matches is searched again, and its keepers are chosen by the rules.
  if (before != chosenLoose(process_.with.preferences) && hasSearched_)
    whenIdle([this] { findDuplicates(); });
  else
    rulesChanged();
  presetObservers.notify();
  return true;
}

}  // namespace kestrel
