#include "decisions/decisions.h"

#include <algorithm>
#include <utility>

namespace kestrel {

const Preset* Decisions::preset(const std::string& name) const noexcept {
  const auto found = std::find_if(presets.begin(), presets.end(),
                                  [&](const Preset& preset) { return preset.name == name; });
  return found == presets.end() ? nullptr : &*found;
}

void Decisions::setPreset(Preset made) {
  for (Preset& preset : presets)
    if (preset.name == made.name) {
      preset = std::move(made);
      return;
    }
  presets.push_back(std::move(made));
}

bool Decisions::removePreset(const std::string& name) {
  return std::erase_if(presets, [&](const Preset& preset) { return preset.name == name; }) > 0;
}

void Decisions::merge(const Decisions& other) {
  for (const KeeperPick& pick : other.picks.list()) picks.set(pick.keepers, pick.members);
  for (const TrackIDs& set : other.notDuplicates.list()) notDuplicates.add(set);
  for (const Preset& preset : other.presets) setPreset(preset);
  maps.insert(maps.end(), other.maps.begin(), other.maps.end());
}

TrackIDs Decisions::tracks() const {
  TrackIDs all;
  for (const KeeperPick& pick : picks.list())
    all.insert(all.end(), pick.members.begin(), pick.members.end());
  for (const TrackIDs& set : notDuplicates.list()) all.insert(all.end(), set.begin(), set.end());
  return trackIDs(all);
}

}  // namespace kestrel
