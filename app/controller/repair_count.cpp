#include "app/controller/repair_count.h"

#include "changes/plan.h"

namespace kestrel {

std::optional<RepairCount> countRepairs(std::span<const SurveyRow> rows, bool keeperValue,
                                        const std::vector<Playlist>& playlists,
                                        FunctionRef<bool()> cancelled) {
  const GroupSurvey survey = surveyGroups(preparedRows(rows, keeperValue).rows, keeperValue);
  RepairCount count;
  for (const Playlist& playlist : playlists) {
    if (cancelled()) return std::nullopt;
    if (!isUserPlaylist(playlist)) continue;
    std::size_t entries = 0;
    for (const std::uint64_t track : playlist.items)
      if (const auto keeper = survey.keepers.keeperOf(track); keeper && *keeper != track) ++entries;
    count.entries += entries;
    count.playlists += entries > 0 ? 1 : 0;
  }
  return count;
}

}  // namespace kestrel
