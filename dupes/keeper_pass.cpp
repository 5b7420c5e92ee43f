#include "dupes/keeper_pass.h"

#include <numeric>
#include <utility>

#include "dupes/read_ahead.h"

namespace kestrel {
namespace {

/// For a walk over the members that has come to the one `at`: as the groups come in any order, the
/// rows too lie all over the table.
void readAhead(std::span<ResultTrack* const> rows, std::size_t at) {
  constexpr std::size_t ahead = 48;
  if (at + ahead < rows.size()) __builtin_prefetch(rows[at + ahead]);
  kestrel::readAhead(at, rows.size(), [&](std::size_t i) { return rows[i]->record; });
}

}  // namespace

GroupIndex::GroupIndex(std::size_t rows, FunctionRef<std::int32_t(std::size_t)> groupOf)
    : starts_(1), rows_(rows) {
  for (std::size_t row = 0; row < rows; ++row) {
    const auto group = static_cast<std::size_t>(groupOf(row));
    if (group + 2 > starts_.size()) starts_.resize(group + 2);
    if (starts_[group + 1]++ == 0) numbers_.push_back(static_cast<std::int32_t>(group));
  }
  std::partial_sum(starts_.begin(), starts_.end(), starts_.begin());
  std::vector<std::uint32_t> next(starts_.begin(), starts_.end() - 1);
  for (std::uint32_t row = 0; row < rows; ++row)
    rows_[next[static_cast<std::size_t>(groupOf(row))]++] = row;
}

std::span<const std::uint32_t> GroupIndex::members(std::int32_t group) const noexcept {
  if (group < 0 || static_cast<std::size_t>(group) + 1 >= starts_.size()) return {};
  const auto begin = static_cast<std::size_t>(group);
  return std::span(rows_).subspan(starts_[begin], starts_[begin + 1] - starts_[begin]);
}

void setKeepers(
    std::span<ResultTrack* const> rows, std::span<const std::int32_t> numbers,
    FilterSettings settings, bool nonKeeperValue, Random& random,
    FunctionRef<void(std::size_t, std::span<const ResultTrack* const>, const GroupDecision&)>
        decided) {
  const GroupIndex groups(rows.size(), [&](std::size_t row) { return rows[row]->tGroupID; });
  std::vector<ResultTrack*> all;
  all.reserve(rows.size());
  for (const std::int32_t number : numbers)
    for (const std::uint32_t row : groups.members(number)) all.push_back(rows[row]);
  const std::vector<const ResultTrack*> readable(all.begin(), all.end());
  const GroupFilter filter(std::move(settings));
  std::size_t begin = 0;
  for (std::size_t i = 0; i < numbers.size(); ++i) {
    const auto members = std::span(readable).subspan(begin, groups.members(numbers[i]).size());
    for (std::size_t row = 0; row < members.size(); ++row) readAhead(all, begin + row);
    const GroupDecision decision = filter.decide(members, random);
    for (std::size_t row = 0; row < members.size(); ++row)
      if (decision.flags[row] != MemberFlag::unchanged)
        all[begin + row]->tCheckbox = (decision.flags[row] == MemberFlag::keeper) != nonKeeperValue;
    decided(i, members, decision);
    begin += members.size();
  }
}

}  // namespace kestrel
