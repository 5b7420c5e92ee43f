#include "replaylist/survey_groups.h"

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
