#include "app/controller/result_groups.h"

#include <algorithm>
#include <utility>

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
    : rows_(rows), groups_(rows.size(), [&](std::size_t row) { return rows[row].tGroupID; }) {
  std::int32_t highest = -1;
  for (const std::int32_t group : groups_.numbers()) highest = std::max(highest, group);
  picks_.resize(static_cast<std::size_t>(highest + 1));
}

void ResultGroups::replaceRows(std::span<ResultTrack> rows) {
  const auto picks = std::move(picks_);
  const bool keeperValue = keeperValue_;
  *this = ResultGroups(rows);
  for (const std::int32_t group : groups_.numbers())
    if (const auto place = static_cast<std::size_t>(group); place < picks.size())
      setPick(group, picks[place]);
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

void ResultGroups::forEachTrack(std::int32_t group, FunctionRef<void(std::uint32_t)> visit) const {
  const auto rows = members(group);
  // Most groups list a track once, and are small.
  constexpr std::size_t few = 8;
  bool repeats = rows.size() > few;
  for (std::size_t i = 1; i < rows.size() && !repeats; ++i)
    for (std::size_t k = 0; k < i; ++k) repeats |= rows_[rows[i]].record == rows_[rows[k]].record;
  if (!repeats) {
    for (const std::uint32_t row : rows) visit(row);
    return;
  }
  std::vector<SurveyRow> tracks;
  for (const std::uint32_t position : rows) tracks.emplace_back(rows_[position]);
  for (const std::uint32_t counting : rowsThatCount(tracks, keeperValue_)) visit(rows[counting]);
}

void ResultGroups::addToSummary(std::int32_t group, std::size_t sign) {
  const auto rows = members(group);
  if (rows.empty()) return;
  std::size_t keepers = 0;
  forEachTrack(group, [&](std::uint32_t position) {
    if (isKeeper(position)) {
      ++keepers;
      return;
    }
    summary_.toActOn += sign;
    const TrackRecord& record = *rows_[position].record;
    if (record.availability() == FileAvailability::reachable && record.item().fileSize > 0)
      summary_.bytes += sign * static_cast<std::uint64_t>(record.item().fileSize);
  });
  summary_.tracks += sign * rows.size();
  summary_.groups += sign;
  if (keepers == 0) summary_.withoutKeeper += sign;
  if (keepers > 1) summary_.manyKeepers += sign;
  if (keepers != 1 && pickOf(group) != PickState::holds) summary_.open += sign;
}

void ResultGroups::count(bool keeperValue) {
  keeperValue_ = keeperValue;
  summary_ = {};
  // In the order of the content, where records of neighbours are asked for ahead.
  for (std::uint32_t i = 0; i < rows_.size(); ++i) {
    readAhead(i, rows_.size(), [&](std::size_t at) { return rows_[at].record; });
    if (members(rows_[i].tGroupID).front() == i) addToSummary(rows_[i].tGroupID, 1);
  }
}

void ResultGroups::setPick(std::int32_t group, PickState state) {
  PickState& pick = picks_[static_cast<std::size_t>(group)];
  if (pick != PickState::none) --pickedCount_;
  if (state != PickState::none) ++pickedCount_;
  pick = state;
}

void ResultGroups::change(std::span<const std::uint32_t> positions,
                          FunctionRef<bool(std::uint32_t)> flagOf) {
  std::vector<std::int32_t> groups;
  std::vector<bool> met(picks_.size());
  for (const std::uint32_t position : positions) {
    ResultTrack& row = rows_[position];
    const bool flag = flagOf(position);
    if (row.tCheckbox == flag) continue;
    // With the first change, while its rows are still as they were counted.
    if (const auto group = static_cast<std::size_t>(row.tGroupID); !met[group]) {
      met[group] = true;
      groups.push_back(row.tGroupID);
      addToSummary(row.tGroupID, static_cast<std::size_t>(-1));
    }
    row.tCheckbox = flag;
  }
  for (const std::int32_t group : groups) {
    setPick(group, PickState::holds);
    addToSummary(group, 1);
  }
}

void ResultGroups::setFlags(std::span<const std::uint32_t> positions, bool flag) {
  change(positions, [flag](std::uint32_t) { return flag; });
}

void ResultGroups::makeOnlyKeepers(std::span<const std::uint32_t> positions) {
  std::vector<std::uint32_t> keepers(picks_.size());  // by group
  for (const std::uint32_t position : positions)
    keepers[static_cast<std::size_t>(rows_[position].tGroupID)] = position;
  for (const std::int32_t group : groupsOf(positions)) {
    addToSummary(group, static_cast<std::size_t>(-1));
    for (const std::uint32_t member : members(group))
      rows_[member].tCheckbox =
          (member == keepers[static_cast<std::size_t>(group)]) == keeperValue_;
    // Also where the rules have decided so: now the user has.
    setPick(group, PickState::holds);
    addToSummary(group, 1);
  }
}

std::vector<std::int32_t> ResultGroups::groupsOf(std::span<const std::uint32_t> rows) const {
  std::vector<std::int32_t> groups;
  for (const std::uint32_t row : rows) groups.push_back(rows_[row].tGroupID);
  std::sort(groups.begin(), groups.end());
  groups.erase(std::unique(groups.begin(), groups.end()), groups.end());
  return groups;
}

GroupState ResultGroups::state(std::int32_t group) const {
  GroupState state{group, pickOf(group), {}};
  for (const std::uint32_t member : members(group))
    if (isKeeper(member)) state.keepers.push_back(rows_[member].record->item().persistentID);
  return state;
}

std::vector<std::uint64_t> ResultGroups::tracksOf(std::int32_t group) const {
  std::vector<std::uint64_t> tracks;
  tracks.reserve(members(group).size());
  for (const std::uint32_t member : members(group))
    tracks.push_back(rows_[member].record->item().persistentID);
  return tracks;
}

void ResultGroups::putBack(const GroupState& state) {
  if (members(state.group).empty()) return;
  addToSummary(state.group, static_cast<std::size_t>(-1));
  const auto& keepers = state.keepers;
  for (const std::uint32_t member : members(state.group)) {
    const std::uint64_t track = rows_[member].record->item().persistentID;
    rows_[member].tCheckbox =
        (std::find(keepers.begin(), keepers.end(), track) != keepers.end()) == keeperValue_;
  }
  setPick(state.group, state.picked);
  addToSummary(state.group, 1);
}

void ResultGroups::applyPicks(const KeeperPicks& picks, bool keeperValue) {
  std::fill(picks_.begin(), picks_.end(), PickState::none);
  pickedCount_ = 0;
  if (picks.empty()) return;
  std::vector<ResultTrack*> rows;
  rows.reserve(rows_.size());
  for (ResultTrack& row : rows_) rows.push_back(&row);
  kestrel::applyPicks(
      rows, groups_, picks, !keeperValue,
      [&](std::int32_t group, const GroupPick& pick) { setPick(group, pick.state); });
}

std::vector<std::int32_t> ResultGroups::picked() const {
  std::vector<std::int32_t> groups;
  for (std::size_t group = 0; group < picks_.size(); ++group)
    if (picks_[group] != PickState::none) groups.push_back(static_cast<std::int32_t>(group));
  return groups;
}

std::size_t ResultGroups::pickedWithoutKeeper() const {
  // Most often there is none at all.
  if (summary_.withoutKeeper == 0) return 0;
  std::size_t count = 0;
  for (std::size_t group = 0; group < picks_.size(); ++group) {
    if (picks_[group] == PickState::none) continue;
    const auto rows = members(static_cast<std::int32_t>(group));
    count +=
        std::none_of(rows.begin(), rows.end(), [&](std::uint32_t row) { return isKeeper(row); })
            ? 1
            : 0;
  }
  return count;
}

std::size_t ResultGroups::undecidedPicks() const {
  return static_cast<std::size_t>(std::count(picks_.begin(), picks_.end(), PickState::undecided));
}

GroupFacts ResultGroups::facts(std::int32_t group) const {
  GroupFacts facts;
  forEachTrack(group, [&](std::uint32_t position) {
    const TrackRecord& record = *rows_[position].record;
    ++facts.copies;
    if (isKeeper(position)) ++facts.keepers;
    if (record.availability() == FileAvailability::missing) ++facts.missing;
    if (!isKeeper(position) && record.availability() == FileAvailability::reachable &&
        record.item().fileSize > 0)
      facts.freed += static_cast<std::uint64_t>(record.item().fileSize);
  });
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
