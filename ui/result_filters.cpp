#include "ui/result_filters.h"

#include <charconv>
#include <vector>

#include "dupes/read_ahead.h"
#include "foundation/number_table.h"
#include "platform/preferences.h"
#include "platform/queues.h"
#include "platform/settings.h"
#include "ui/process.h"

namespace kestrel {

FilterSettings filterSettings(const Preferences& preferences) {
  FilterSettings wanted;
  wanted.rule = preferences.text(settings::filterMatrixButton);
  wanted.ruleNumber = preferences.integer(settings::filterMatrixButton);
  wanted.keeper.folder = preferences.text(settings::filterFolderLoc);
  wanted.keeper.alwaysUnCheck = preferences.boolean(settings::alwaysUnCheck);
  if (preferences.boolean(settings::useFileType))
    wanted.fileType = preferences.text(settings::thisFileType);
  if (preferences.boolean(settings::useBitType))
    wanted.bitRate = preferences.text(settings::thisBitType);
  return wanted;
}

}  // namespace kestrel

namespace kestrel::TextSorter {
namespace {

using Rows = std::span<ResultTrack* const>;

/// The arranged rows of the upper table by group number.
class RowsByGroup {
 public:
  /// Up to `lookups` groups can be asked for.
  template <typename Arranged>
  RowsByGroup(const Arranged& arranged, std::size_t lookups) : table_(arranged.size() + lookups) {
    std::vector<std::uint32_t> groupOfRow;
    groupOfRow.reserve(arranged.size());
    for (const ResultTrack& row : arranged) {
      // Rows of a group are neighbours in most arrangements.
      const std::uint32_t group = !groupOfRow.empty() && numbers_.back() == row.tGroupID &&
                                          groupOfRow.back() + 1 == numbers_.size()
                                      ? groupOfRow.back()
                                      : slot(row.tGroupID);
      groupOfRow.push_back(group);
      if (group == ends_.size()) ends_.push_back(0);
      ++ends_[group];
    }
    std::size_t end = 0;
    for (std::size_t& count : ends_) count = std::exchange(end, end + count);
    rows_.resize(end);
    auto group = groupOfRow.begin();
    for (ResultTrack& row : arranged) rows_[ends_[*group++]++] = &row;
  }

  /// In row order; none for a text that is no group's.
  Rows of(std::string_view groupNumber) {
    std::int32_t number = 0;
    const char* end = groupNumber.data() + groupNumber.size();
    const auto [stop, error] = std::from_chars(groupNumber.data(), end, number);
    // The texts must be the same, so that "01" is not group 1.
    if (error != std::errc() || stop != end || std::to_string(number) != groupNumber) return {};
    const std::uint32_t group = slot(number);
    if (group >= ends_.size()) return {};
    const std::size_t begin = group ? ends_[group - 1] : 0;
    return Rows(rows_).subspan(begin, ends_[group] - begin);
  }

 private:
  std::uint32_t slot(std::int32_t number) {
    const std::uint64_t hash = static_cast<std::uint32_t>(number) * 0x9E3779B97F4A7C15U;
    const std::uint32_t found = table_.number(
        hash ^ (hash >> 32), [&](std::uint32_t other) { return numbers_[other] == number; });
    if (found == numbers_.size()) numbers_.push_back(number);
    return found;
  }

  NumberTable table_;
  std::vector<std::int32_t> numbers_;  ///< of the groups, by slot
  std::vector<std::size_t> ends_;      ///< by slot, where the group ends in rows_
  std::vector<ResultTrack*> rows_;
};

/// The members of groups, one group after the other.
struct Members {
  std::vector<ResultTrack*> rows;
  std::vector<std::size_t> ends;  ///< of the groups
};

template <typename Arranged>
Members membersOf(std::span<const std::string> groupNumbers, const Arranged& arranged) {
  RowsByGroup rowsByGroup(arranged, groupNumbers.size());
  Members members;
  members.rows.reserve(arranged.size());
  members.ends.reserve(groupNumbers.size());
  for (const std::string& groupNumber : groupNumbers) {
    const Rows rows = rowsByGroup.of(groupNumber);
    members.rows.insert(members.rows.end(), rows.begin(), rows.end());
    members.ends.push_back(members.rows.size());
  }
  return members;
}

/// For a walk over the members that has come to the one `at`: as the groups come in any order, the
/// rows too lie all over the table.
void readAhead(const Members& members, std::size_t at) {
  constexpr std::size_t ahead = 48;
  if (at + ahead < members.rows.size()) __builtin_prefetch(members.rows[at + ahead]);
  kestrel::readAhead(at, members.rows.size(),
                     [&](std::size_t i) { return members.rows[i]->record; });
}

void showProgress(std::size_t groups, std::int64_t ruleNumber) {
  process().with.mainQueue.post([groups, ruleNumber] {
    MainWindowReferences& window = process().textSorter.window;
    window.mainProgressSpinner.setMinimum(0);
    window.mainProgressSpinner.setMaximum(static_cast<double>(groups));
    window.mainProgressSpinner.setValue(0);
    window.mainProgressSpinner.setHidden(false);
    const std::optional<KeeperRule> rule = keeperRule(ruleNumber);
    window.mainProgressSpinnerStatus.setText(
        Message::tr("Filtering by %1")
            .arg(rule ? Message::tr(keeperRuleInfo(*rule).name) : Message()));
  });
}

void endProgress() {
  process().with.mainQueue.post([] {
    ProgressBar& bar = process().textSorter.window.mainProgressSpinner;
    bar.setMaximum(0);
    bar.setValue(0);
    bar.setHidden(true);
  });
}

}  // namespace

bool filterArray(std::span<const std::string> groupNumbers) {
  return filterArray(groupNumbers, [](std::string_view, const GroupDecision&) {});
}

bool filterArray(std::span<const std::string> groupNumbers,
                 FunctionRef<void(std::string_view, const GroupDecision&)> decided) {
  Process& here = process();
  MainWindowReferences& window = here.textSorter.window;
  const FilterSettings wanted = filterSettings(here.with.preferences);
  const bool nonKeeperValue = here.with.preferences.boolean(settings::keeperMode);
  showProgress(groupNumbers.size(), wanted.ruleNumber);
  const GroupFilter filter(wanted);
  const Members all = membersOf(groupNumbers, window.bigArrayController.arrangedRows());
  const std::vector<const ResultTrack*> readable(all.rows.begin(), all.rows.end());
  std::size_t begin = 0;
  for (std::size_t group = 0; group < groupNumbers.size(); ++group) {
    here.with.mainQueue.postAdvance(window.mainProgressSpinner, 1.0);
    const std::size_t size = all.ends[group] - begin;
    for (std::size_t i = 0; i < size; ++i) readAhead(all, begin + i);
    const GroupDecision decision =
        filter.decide(std::span(readable).subspan(begin, size), here.with.random);
    for (std::size_t i = 0; i < size; ++i)
      if (decision.flags[i] != MemberFlag::unchanged)
        all.rows[begin + i]->tCheckbox =
            (decision.flags[i] == MemberFlag::keeper) != nonKeeperValue;
    decided(groupNumbers[group], decision);
    begin = all.ends[group];
  }
  endProgress();
  return true;
}

}  // namespace kestrel::TextSorter
