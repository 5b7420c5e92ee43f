#include "app/controller/repair_count.h"

#include <algorithm>
#include <unordered_map>
#include <unordered_set>

#include "changes/plan.h"
#include "dupes/read_ahead.h"

namespace kestrel {

RowsToCount::RowsToCount(std::span<const ResultTrack> rows) {
  rows_.reserve(rows.size());
  for (const ResultTrack& row : rows) {
    rows_.push_back({row.record, row.tGroupID, row.tCheckbox});
    if (stores_.empty() || stores_.back() != row.store) stores_.push_back(row.store);
  }
}

std::vector<SurveyRow> RowsToCount::surveyed() const {
  std::vector<SurveyRow> surveyed;
  surveyed.reserve(rows_.size());
  for (std::size_t i = 0; i < rows_.size(); ++i) {
    readAhead(i, rows_.size(), [&](std::size_t at) { return rows_[at].record; });
    const auto& [record, group, ticked] = rows_[i];
    surveyed.emplace_back(record->item().persistentID, group, ticked,
                          record->availability() == FileAvailability::missing);
  }
  return surveyed;
}

WaitingCopies RowsToCount::waiting(bool keeperValue) const {
  std::unordered_map<std::int32_t, const TrackRecord*> keepers;  ///< nullptr for several
  for (const Row& row : rows_)
    if (row.ticked == keeperValue) {
      const auto [found, isNew] = keepers.try_emplace(row.group, row.record);
      if (!isNew && found->second != row.record) found->second = nullptr;
    }
  WaitingCopies waiting;
  std::unordered_set<const TrackRecord*> counted;  // a track that is listed twice is one
  for (const Row& row : rows_) {
    if (row.ticked == keeperValue) continue;
    const auto keeper = keepers.find(row.group);
    if (keeper == keepers.end() || !isUnsafeReplacement(row.record, keeper->second) ||
        !counted.insert(row.record).second)
      continue;
    ++waiting.copies;
    waiting.bytes +=
        static_cast<std::uint64_t>(std::max<std::int64_t>(row.record->item().fileSize, 0));
  }
  return waiting;
}

const TrackRecord* RowsToCount::track(std::uint64_t id) const {
  for (const auto& store : stores_)
    if (const TrackRecord* found = store->find(id)) return found;
  return nullptr;
}

bool isUnsafeReplacement(const TrackRecord* before, const TrackRecord* after) {
  return before && after && before->availability() == FileAvailability::reachable &&
         after->availability() == FileAvailability::cloud;
}

std::optional<RepairCount> countRepairs(std::span<const SurveyRow> rows, bool keeperValue,
                                        const std::vector<Playlist>& playlists,
                                        const RepairTests& tests) {
  const GroupSurvey survey = surveyGroups(preparedRows(rows, keeperValue).rows, keeperValue);
  RepairCount count;
  for (const Playlist& playlist : playlists) {
    if (tests.cancelled()) return std::nullopt;
    if (!isUserPlaylist(playlist)) continue;
    std::size_t entries = 0, waiting = 0;
    for (const std::uint64_t track : playlist.items)
      if (const auto keeper = survey.keepers.keeperOf(track); keeper && *keeper != track)
        ++(tests.isUnsafe(track, *keeper) ? waiting : entries);
    if (entries + waiting == 0 || !tests.canChange(playlist.persistentID)) continue;
    count.entries += entries;
    count.waiting += waiting;
    count.playlists += entries > 0 ? 1 : 0;
  }
  return count;
}

}  // namespace kestrel
