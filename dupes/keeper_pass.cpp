#include "dupes/keeper_pass.h"

#include <utility>

#include "dupes/group_index.h"
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
