#include "ui/keeper_selection.h"

#include <algorithm>

#include "dupes/keeper_rules.h"
#include "platform/preferences.h"
#include "platform/settings.h"
#include "ui/process.h"

namespace kestrel::TextSorter {

const ResultTrack* filterThisDupeGroup(std::span<const ResultTrack* const> candidates,
                                       std::string_view opt) {
  const Collaborators& with = process().with;
  const std::optional<KeeperRule> rule = keeperRule(opt);
  KeeperOptions options;
  options.alwaysUnCheck = with.preferences.boolean(settings::alwaysUnCheck);
  if (rule == KeeperRule::folderLocation)
    options.folder = with.preferences.text(settings::filterFolderLoc);
  return chooseKeeper(candidates, rule, options, with.random).keeper;
}

bool anyDead(std::span<const ResultTrack* const> tracks) noexcept {
  return std::any_of(tracks.begin(), tracks.end(), [](const ResultTrack* track) {
    return track->record->availability() == FileAvailability::missing;
  });
}

void setAllEntries(std::span<ResultTrack* const> tracks, bool keeperVal) noexcept {
  for (ResultTrack* track : tracks) track->tCheckbox = keeperVal;
}

}  // namespace kestrel::TextSorter
