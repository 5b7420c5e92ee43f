#include "replaylist/survey_groups.h"

#include <algorithm>
#include <numeric>
#include <tuple>
#include <utility>

namespace kestrel {
namespace {

/// Rows by group, groups by their first row: a counting sort.
class RowsByGroup {
 public:
  explicit RowsByGroup(std::span<const SurveyRow> rows) {
    IdMap numbers;
    std::vector<std::uint32_t> groupOfRow;
    groupOfRow.reserve(rows.size());
    for (const SurveyRow& row : rows) {
      const auto id = static_cast<std::uint32_t>(row.tGroupID);
      const auto next = static_cast<std::uint32_t>(ends_.size());
      if (numbers.insert(id, next)) ends_.push_back(0);
      groupOfRow.push_back(*numbers.find(id));
      ++ends_[groupOfRow.back()];
    }
    std::size_t end = 0;
    for (std::size_t& count : ends_) count = std::exchange(end, end + count);
    sorted_.resize(rows.size());
    for (std::size_t i = 0; i < rows.size(); ++i) sorted_[ends_[groupOfRow[i]]++] = rows[i];
  }

  [[nodiscard]] std::size_t size() const noexcept { return ends_.size(); }
  [[nodiscard]] std::span<const SurveyRow> operator[](std::size_t group) const {
    const std::size_t begin = group ? ends_[group - 1] : 0;
    return std::span(sorted_).subspan(begin, ends_[group] - begin);
  }

 private:
  std::vector<std::size_t> ends_;
  std::vector<SurveyRow> sorted_;
};

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

PreparedRows preparedRows(std::span<const SurveyRow> rows, bool keeperValue) {
  std::vector<SurveyRow> counting;
  for (const std::uint32_t position : rowsThatCount(rows, keeperValue))
    counting.push_back(rows[position]);
  const RowsByGroup groups(counting);
  PreparedRows prepared;
  prepared.rows.reserve(counting.size());
  for (std::size_t i = 0; i < groups.size(); ++i) {
    std::size_t keepers = 0;
    bool keeperThere = false;
    for (const SurveyRow& row : groups[i])
      if (row.tCheckbox == keeperValue) {
        ++keepers;
        keeperThere = !row.fileMissing;
      }
    if (keepers > 1) {
      prepared.leftOut.push_back(
          {groups[i].front().tGroupID, SkippedGroup::Reason::severalKeepers});
      continue;
    }
    for (SurveyRow row : groups[i]) {
      row.fileMissing &= !keeperThere;
      prepared.rows.push_back(row);
    }
  }
  return prepared;
}

GroupSurvey surveyGroups(std::span<const SurveyRow> rows, bool keeperValue) {
  const RowsByGroup groups(rows);
  GroupSurvey survey;
  KeeperTableBuilder keepers;
  for (std::size_t i = 0; i < groups.size(); ++i) {
    const std::span<const SurveyRow> group = groups[i];
    std::optional<std::uint64_t> keeper;
    bool fileMissing = false;
    for (const SurveyRow& row : group) {
      fileMissing |= row.fileMissing;
      if (row.tCheckbox != keeperValue) continue;
      if (keeper) {
        survey.severalKeepers = row.tGroupID;
        return survey;
      }
      keeper = row.track;
    }
    const std::int32_t number = group.front().tGroupID;
    if (fileMissing) {
      survey.skipped.push_back({number, SkippedGroup::Reason::missingFile});
      continue;
    }
    if (!keeper) survey.skipped.push_back({number, SkippedGroup::Reason::noKeeper});
    keepers.add(group, keeper, keeperValue);
  }
  survey.keepers = keepers.finish();
  return survey;
}

}  // namespace kestrel
