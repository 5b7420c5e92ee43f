#include "app/controller/result_groups.h"

#include <algorithm>
#include <unordered_set>

#include "decisions/apply_decisions.h"
#include "dupes/read_ahead.h"
#include "platform/preferences.h"
#include "platform/random.h"
#include "platform/settings.h"
#include "replaylist/survey.h"

namespace kestrel {

bool keeperValueBy(const Preferences& preferences) {
  return !preferences.boolean(settings::keeperMode);
}

std::span<ResultTrack> rowsOf(ArrayController<ResultTrack>& controller) {
  if (controller.size() == 0) return {};
  ResultTrack& any = *controller.arrangedRows().begin();
  return {&any - (&any - controller.content().data()), controller.size()};
}

ResultGroups::ResultGroups(std::span<ResultTrack> rows)
    : rows_(rows), groups_(rows.size(), [&](std::size_t row) { return rows[row].tGroupID; }) {}

void ResultGroups::replaceRows(std::span<ResultTrack> rows) {
  auto changed = std::move(picked_);
  const bool keeperValue = keeperValue_;
  *this = ResultGroups(rows);
  picked_ = std::move(changed);
  count(keeperValue);
}

std::vector<std::string> ResultGroups::numbers() const {
  std::vector<std::string> numbers;
  for (const std::int32_t group : groups_.numbers()) numbers.push_back(std::to_string(group));
  return numbers;
}

ResultGroups::Members ResultGroups::membersOf(std::span<const std::int32_t> groups) const {
  Members found;
  found.reserve(groups.size());
  for (const std::int32_t group : groups) {
    auto& rows = found.emplace_back();
    for (const std::uint32_t row : members(group)) rows.push_back(&rows_[row]);
  }
  return found;
}

void ResultGroups::addToSummary(std::int32_t group, std::size_t sign) {
  const auto rows = members(group);
  if (rows.empty()) return;
  std::vector<SurveyRow> tracks;
  for (const std::uint32_t position : rows) tracks.emplace_back(rows_[position]);
  std::size_t keepers = 0;
  for (const std::uint32_t counting : rowsThatCount(tracks, keeperValue_)) {
    const std::uint32_t position = rows[counting];
    if (isKeeper(position)) {
      ++keepers;
      continue;
    }
    summary_.toActOn += sign;
    const TrackRecord& record = *rows_[position].record;
    if (record.availability() == FileAvailability::reachable && record.item().fileSize > 0)
      summary_.bytes += sign * static_cast<std::uint64_t>(record.item().fileSize);
  }
  summary_.tracks += sign * rows.size();
  summary_.groups += sign;
  if (keepers == 0) summary_.withoutKeeper += sign;
  if (keepers > 1) summary_.manyKeepers += sign;
}

void ResultGroups::count(bool keeperValue) {
  // Windows may be reading it, and it is the same but for the first time.
  if (keeperValue_ != keeperValue) keeperValue_ = keeperValue;
  summary_ = {};
  // In the order of the content, where records of neighbours are asked for ahead.
  for (std::uint32_t i = 0; i < rows_.size(); ++i) {
    readAhead(i, rows_.size(), [&](std::size_t at) { return rows_[at].record; });
    if (members(rows_[i].tGroupID).front() == i) addToSummary(rows_[i].tGroupID, 1);
  }
}

void ResultGroups::change(std::span<const std::uint32_t> positions,
                          FunctionRef<bool(std::uint32_t)> flagOf) {
  std::unordered_set<std::int32_t> groups;
  for (const std::uint32_t position : positions) {
    ResultTrack& row = rows_[position];
    const bool flag = flagOf(position);
    if (row.tCheckbox == flag) continue;
    // With the first change, while its rows are still as they were counted.
    if (groups.insert(row.tGroupID).second)
      addToSummary(row.tGroupID, static_cast<std::size_t>(-1));
    row.tCheckbox = flag;
  }
  for (const std::int32_t group : groups) {
    addToSummary(group, 1);
    picked_[group] = PickState::holds;
  }
}

void ResultGroups::setFlags(std::span<const std::uint32_t> positions, bool flag) {
  change(positions, [flag](std::uint32_t) { return flag; });
}

void ResultGroups::makeOnlyKeepers(std::span<const std::uint32_t> positions) {
  std::unordered_map<std::int32_t, std::uint32_t> keepers;
  for (const std::uint32_t position : positions) keepers[rows_[position].tGroupID] = position;
  std::vector<std::uint32_t> all;
  for (const auto& [group, keeper] : keepers)
    all.insert(all.end(), members(group).begin(), members(group).end());
  change(all, [&](std::uint32_t member) {
    return (member == keepers[rows_[member].tGroupID]) == keeperValue_;
  });
  // Also where the rules have decided so: now the user has.
  for (const auto& [group, keeper] : keepers) picked_[group] = PickState::holds;
}

std::vector<std::int32_t> ResultGroups::groupsOf(std::span<const std::uint32_t> rows) const {
  std::vector<std::int32_t> groups;
  for (const std::uint32_t row : rows) groups.push_back(rows_[row].tGroupID);
  std::sort(groups.begin(), groups.end());
  groups.erase(std::unique(groups.begin(), groups.end()), groups.end());
  return groups;
}

GroupState ResultGroups::state(std::int32_t group) const {
  const auto found = picked_.find(group);
  GroupState state{group, found == picked_.end() ? PickState::none : found->second, {}};
  for (const std::uint32_t member : members(group))
    if (isKeeper(member)) state.keepers.push_back(rows_[member].record->item().persistentID);
  return state;
}

void ResultGroups::putBack(const GroupState& state) {
  const auto& keepers = state.keepers;
  change(members(state.group), [&](std::uint32_t member) {
    const std::uint64_t track = rows_[member].record->item().persistentID;
    return (std::find(keepers.begin(), keepers.end(), track) != keepers.end()) == keeperValue_;
  });
  if (state.picked == PickState::none)
    picked_.erase(state.group);
  else
    picked_[state.group] = state.picked;
}

std::vector<std::pair<std::int32_t, PickState>> ResultGroups::applyPicks(const KeeperPicks& picks,
                                                                         bool keeperValue) {
  std::vector<std::pair<std::int32_t, PickState>> applied;
  if (picks.empty()) return applied;
  std::vector<ResultTrack*> rows;
  rows.reserve(rows_.size());
  for (ResultTrack& row : rows_) rows.push_back(&row);
  kestrel::applyPicks(
      rows, groups_, picks, !keeperValue,
      [&](std::int32_t group, const GroupPick& pick) { applied.emplace_back(group, pick.state); });
  return applied;
}

void ResultGroups::setPicked(std::span<const std::pair<std::int32_t, PickState>> groups) {
  picked_ = {groups.begin(), groups.end()};
}

std::size_t ResultGroups::pickedWithoutKeeper() const {
  // Most often there is none at all.
  if (summary_.withoutKeeper == 0) return 0;
  return static_cast<std::size_t>(
      std::count_if(picked_.begin(), picked_.end(), [&](const auto& picked) {
        const auto rows = members(picked.first);
        return std::none_of(rows.begin(), rows.end(),
                            [&](std::uint32_t row) { return isKeeper(row); });
      }));
}

std::size_t ResultGroups::undecidedPicks() const {
  return static_cast<std::size_t>(
      std::count_if(picked_.begin(), picked_.end(),
                    [](const auto& picked) { return picked.second == PickState::undecided; }));
}

GroupFacts ResultGroups::facts(std::int32_t group) const {
  const auto rows = members(group);
  std::vector<SurveyRow> tracks;
  for (const std::uint32_t position : rows) tracks.emplace_back(rows_[position]);
  GroupFacts facts;
  for (const std::uint32_t counting : rowsThatCount(tracks, keeperValue_)) {
    const std::uint32_t position = rows[counting];
    const TrackRecord& record = *rows_[position].record;
    ++facts.copies;
    if (isKeeper(position)) ++facts.keepers;
    if (record.availability() == FileAvailability::missing) ++facts.missing;
    if (!isKeeper(position) && record.availability() == FileAvailability::reachable &&
        record.item().fileSize > 0)
      facts.freed += static_cast<std::uint64_t>(record.item().fileSize);
  }
  return facts;
}

void ResultGroups::invertFlags() {
  for (ResultTrack& row : rows_) row.tCheckbox = !row.tCheckbox;
  keeperValue_ = !keeperValue_;
}

GroupDecision ResultGroups::decision(std::int32_t group, const FilterSettings& settings) const {
  std::vector<const ResultTrack*> rows;
  for (const std::uint32_t position : members(group)) rows.push_back(&rows_[position]);
  if (rows.empty()) return {};
  SeededRandom random(0);
  return GroupFilter(settings).decide(rows, random);
}

}  // namespace kestrel
