#include "dupes/keeper_pass.h"

#include <algorithm>
#include <numeric>
#include <ranges>
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

/// One more than the last number.
std::size_t groupsUpTo(const auto& rows) {
  std::int32_t last = -1;
  for (const ResultTrack& row : rows) last = std::max(last, row.tGroupID);
  return static_cast<std::size_t>(last + 1);
}

}  // namespace

std::vector<std::int32_t> groupNumbers(std::span<const ResultTrack> rows) {
  std::vector<std::int32_t> numbers;
  std::vector<bool> met(groupsUpTo(rows));
  for (const ResultTrack& row : rows) {
    const auto number = static_cast<std::size_t>(row.tGroupID);
    if (!met[number]) numbers.push_back(row.tGroupID);
    met[number] = true;
  }
  return numbers;
}

GroupRows groupRows(std::span<ResultTrack* const> rows, std::span<const std::int32_t> numbers) {
  const auto numberOf = [](const ResultTrack* row) {
    return static_cast<std::size_t>(row->tGroupID);
  };
  // Where the group with each number begins in the rows by number, and where the last one ends.
  std::vector<std::size_t> begins(
      groupsUpTo(rows | std::views::transform(
                            [](const ResultTrack* row) -> const ResultTrack& { return *row; })) +
      1);
  for (const ResultTrack* row : rows) ++begins[numberOf(row) + 1];
  std::partial_sum(begins.begin(), begins.end(), begins.begin());
  std::vector<ResultTrack*> byNumber(rows.size());
  std::vector<std::size_t> next = begins;
  for (ResultTrack* row : rows) byNumber[next[numberOf(row)]++] = row;

  GroupRows groups;
  groups.rows.reserve(rows.size());
  groups.ends.reserve(numbers.size());
  for (const std::int32_t number : numbers) {
    const auto at = static_cast<std::size_t>(number);
    if (number >= 0 && at + 1 < begins.size())
      for (std::size_t i = begins[at]; i < begins[at + 1]; ++i) groups.rows.push_back(byNumber[i]);
    groups.ends.push_back(groups.rows.size());
  }
  return groups;
}

void setKeepers(const GroupRows& groups, FilterSettings settings, bool nonKeeperValue,
                Random& random, FunctionRef<void(std::size_t, const GroupDecision&)> decided) {
  const GroupFilter filter(std::move(settings));
  const std::vector<const ResultTrack*> readable(groups.rows.begin(), groups.rows.end());
  std::size_t begin = 0;
  for (std::size_t i = 0; i < groups.size(); ++i) {
    const auto members = groups.group(i);
    for (std::size_t row = 0; row < members.size(); ++row) readAhead(groups.rows, begin + row);
    const GroupDecision decision =
        filter.decide(std::span(readable).subspan(begin, members.size()), random);
    for (std::size_t row = 0; row < members.size(); ++row)
      if (decision.flags[row] != MemberFlag::unchanged)
        members[row]->tCheckbox = (decision.flags[row] == MemberFlag::keeper) != nonKeeperValue;
    decided(i, decision);
    begin += members.size();
  }
}

}  // namespace kestrel
