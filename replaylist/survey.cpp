#include "replaylist/survey.h"

#include <algorithm>
#include <numeric>
#include <tuple>

#include "dupes/group_index.h"
#include "foundation/identifiers.h"

namespace kestrel {
namespace {

/// Calls `visit(rows)` with those of each group, groups by their first row, until it returns false.
template <typename Visit>
void forEachGroup(std::span<const SurveyRow> rows, Visit&& visit) {
  const GroupIndex groups(rows.size(), [&](std::size_t row) { return rows[row].tGroupID; });
  std::vector<SurveyRow> group;
  for (const std::int32_t number : groups.numbers()) {
    group.clear();
    for (const std::uint32_t row : groups.members(number)) group.push_back(rows[row]);
    if (!visit(std::span<const SurveyRow>(group))) return;
  }
}

}  // namespace

/// Collects the lists first: a keeper that comes again gets the later list, and who replaces whom
/// is only known when all lists are.
class KeeperTableBuilder {
 public:
  void add(std::span<const SurveyRow> group, std::optional<std::uint64_t> keeper,
           bool keeperValue) {
    std::vector<std::uint64_t> nonKeepers;
    for (const SurveyRow& row : group)
      if (row.tCheckbox != keeperValue) nonKeepers.push_back(row.track);
    all_.insert(all_.end(), nonKeepers.begin(), nonKeepers.end());
    if (!keeper) return;
    if (entryOf_.insert(*keeper, static_cast<std::uint32_t>(table_.size()))) {
      table_.keepers_.push_back(*keeper);
      table_.nonKeepers_.push_back(std::move(nonKeepers));
    } else {
      table_.nonKeepers_[*entryOf_.find(*keeper)] = std::move(nonKeepers);
    }
  }

  KeeperTable finish() {
    table_.numbers_.reset(all_.size());
    for (std::uint32_t entry = 0; entry < table_.size(); ++entry)
      for (const std::uint64_t track : table_.nonKeepers_[entry])
        table_.numbers_.insert(track, entry);
    for (const std::uint64_t track : all_) table_.numbers_.insert(track, KeeperTable::noKeeper);
    return std::move(table_);
  }

 private:
  KeeperTable table_;
  IdMap entryOf_;                   ///< keepers
  std::vector<std::uint64_t> all_;  ///< non-keepers, those without a keeper included
};

std::vector<std::uint64_t> KeeperTable::allNonKeepers() const {
  std::size_t most = 0;
  for (const auto& list : nonKeepers_) most += list.size();
  std::vector<std::uint64_t> all;
  all.reserve(most);
  IdMap seen;
  seen.reset(most);
  for (const auto& list : nonKeepers_)
    for (const std::uint64_t track : list)
      if (seen.insert(track, 0)) all.push_back(track);
  return all;
}

std::vector<std::uint32_t> rowsThatCount(std::span<const SurveyRow> rows, bool keeperValue) {
  const auto trackOf = [&](std::uint32_t i) { return std::pair(rows[i].tGroupID, rows[i].track); };
  const auto rank = [&](std::uint32_t i) {
    return std::tuple(trackOf(i), rows[i].tCheckbox != keeperValue, i);
  };
  std::vector<std::uint32_t> positions(rows.size());
  std::iota(positions.begin(), positions.end(), 0U);
  std::sort(positions.begin(), positions.end(),
            [&](std::uint32_t a, std::uint32_t b) { return rank(a) < rank(b); });
  const auto repeats =
      std::unique(positions.begin(), positions.end(),
                  [&](std::uint32_t a, std::uint32_t b) { return trackOf(a) == trackOf(b); });
  positions.erase(repeats, positions.end());
  std::sort(positions.begin(), positions.end());
  return positions;
}

std::vector<const ResultTrack*> rowsThatCount(std::span<const ResultTrack* const> rows,
                                              bool keeperValue) {
  std::vector<SurveyRow> tracks;
  tracks.reserve(rows.size());
  for (const ResultTrack* row : rows) tracks.emplace_back(*row);
  std::vector<const ResultTrack*> counting;
  for (const std::uint32_t position : rowsThatCount(tracks, keeperValue))
    counting.push_back(rows[position]);
  return counting;
}

PreparedRows preparedRows(std::span<const SurveyRow> rows, bool keeperValue) {
  std::vector<SurveyRow> counting;
  for (const std::uint32_t position : rowsThatCount(rows, keeperValue))
    counting.push_back(rows[position]);
  PreparedRows prepared;
  prepared.rows.reserve(counting.size());
  forEachGroup(counting, [&](std::span<const SurveyRow> group) {
    std::size_t keepers = 0;
    bool keeperThere = false;
    for (const SurveyRow& row : group)
      if (row.tCheckbox == keeperValue) {
        ++keepers;
        keeperThere = !row.fileMissing;
      }
    if (keepers > 1) {
      prepared.leftOut.push_back({group.front().tGroupID, SkippedGroup::Reason::severalKeepers});
      return true;
    }
    for (SurveyRow row : group) {
      row.fileMissing &= !keeperThere;
      prepared.rows.push_back(row);
    }
    return true;
  });
  return prepared;
}

GroupSurvey surveyGroups(std::span<const SurveyRow> rows, bool keeperValue) {
  GroupSurvey survey;
  KeeperTableBuilder keepers;
  forEachGroup(rows, [&](std::span<const SurveyRow> group) {
    std::optional<std::uint64_t> keeper;
    bool fileMissing = false;
    for (const SurveyRow& row : group) {
      fileMissing |= row.fileMissing;
      if (row.tCheckbox != keeperValue) continue;
      if (keeper) {
        survey.severalKeepers = row.tGroupID;
        return false;
      }
      keeper = row.track;
    }
    const std::int32_t number = group.front().tGroupID;
    if (fileMissing) {
      survey.skipped.push_back({number, SkippedGroup::Reason::missingFile});
      return true;
    }
    if (!keeper) survey.skipped.push_back({number, SkippedGroup::Reason::noKeeper});
    keepers.add(group, keeper, keeperValue);
    return true;
  });
  if (survey.severalKeepers) return survey;
  survey.keepers = keepers.finish();
  return survey;
}

std::vector<KeeperPair> keeperPairs(std::span<const std::uint64_t> items,
                                    const KeeperTable& keepers, IdMap& seen) {
  std::vector<KeeperPair> pairs;
  seen.reset(0);
  // Entries lie all over the table; without looking ahead this would mostly wait for memory.
  constexpr std::size_t ahead = 16;
  for (std::size_t i = 0; i < items.size(); ++i) {
    if (i + ahead < items.size()) keepers.prefetch(items[i + ahead]);
    if (const auto keeper = keepers.keeperOf(items[i]); keeper && seen.insert(items[i], 0))
      pairs.push_back({items[i], *keeper});
  }
  return pairs;
}

Value ReplaylistRecord::value(std::string_view key) const {
  if (key != "hexParentID") return commonValue(key);
  const auto& parent = playlist().parentID;
  return parent ? Value(TextSorter::decToHex(*parent)) : Value();
}

PlaylistSurvey surveyPlaylists(const Playlists& playlists, const KeeperTable& keepers,
                               const std::shared_ptr<const TrackStore>& tracks) {
  PlaylistSurvey survey;
  SharedRecords<ReplaylistRecord> folders;
  IdMap seen;
  for (std::size_t i = 0; i < playlists->size(); ++i) {
    const Playlist& playlist = (*playlists)[i];
    if (!isUsersOwn(playlist)) continue;
    if (playlist.kind == PlaylistKind::folder) {
      folders.push_back(std::make_shared<const ReplaylistRecord>(sharedPlaylist(playlists, i)));
      continue;
    }
    if (playlist.kind != PlaylistKind::regular) continue;
    const auto first = std::find_if(playlist.items.begin(), playlist.items.end(),
                                    [&](std::uint64_t item) { return keepers.isNonKeeper(item); });
    if (first == playlist.items.end()) continue;
    survey.affected.push_back(std::make_shared<const ReplaylistRecord>(
        sharedPlaylist(playlists, i),
        keeperPairs(std::span(first, playlist.items.end()), keepers, seen), tracks));
  }
  survey.arrange(folders, NestedFolders::listed);
  return survey;
}

SurveyReport surveyReplaylist(const PreparedRows& rows, bool keeperValue,
                              const std::function<Playlists()>& playlists,
                              const std::shared_ptr<const TrackStore>& tracks) {
  GroupSurvey groups = surveyGroups(rows.rows, keeperValue);
  SurveyReport report;
  report.skippedGroups = rows.leftOut;
  report.skippedGroups.insert(report.skippedGroups.end(), groups.skipped.begin(),
                              groups.skipped.end());
  if (groups.severalKeepers) {
    report.severalKeepers = groups.severalKeepers;
    report.outcome = SurveyOutcome::severalKeepers;
    return report;
  }
  report.keepers = std::make_shared<const KeeperTable>(std::move(groups.keepers));
  report.playlists = surveyPlaylists(playlists(), *report.keepers, tracks);
  report.outcome =
      report.playlists.affected.empty() ? SurveyOutcome::noResults : SurveyOutcome::found;
  return report;
}

std::vector<PlaylistReplacements> replacementsIn(const SharedRecords<ReplaylistRecord>& chosen,
                                                 const KeeperTable& keepers) {
  std::vector<PlaylistReplacements> replacements;
  IdMap places, seen;
  for (const auto& record : chosen) {
    auto pairs = keeperPairs(record->playlist().items, keepers, seen);
    if (pairs.empty()) continue;
    const std::uint64_t id = record->playlist().persistentID;
    if (places.insert(id, static_cast<std::uint32_t>(replacements.size())))
      replacements.push_back({record, std::move(pairs)});
    else
      replacements[*places.find(id)] = {record, std::move(pairs)};
  }
  return replacements;
}

}  // namespace kestrel
