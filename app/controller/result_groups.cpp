#include "app/controller/result_groups.h"

#include <algorithm>

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
  auto changed = std::move(changedByUser_);
  const bool keeperValue = keeperValue_;
  *this = ResultGroups(rows);
  changedByUser_ = std::move(changed);
  count(keeperValue);
}

std::vector<std::string> ResultGroups::numbers() const {
  std::vector<std::string> numbers;
  for (const std::int32_t group : groups_.numbers()) numbers.push_back(std::to_string(group));
  return numbers;
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
  keeperValue_ = keeperValue;
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
  for (const std::int32_t group : groups) addToSummary(group, 1);
  changedByUser_.merge(groups);
}

void ResultGroups::setFlags(std::span<const std::uint32_t> positions, bool flag) {
  change(positions, [flag](std::uint32_t) { return flag; });
}

void ResultGroups::makeOnlyKeeper(std::uint32_t position) {
  change(members(rows_[position].tGroupID),
         [&](std::uint32_t member) { return (member == position) == keeperValue_; });
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
