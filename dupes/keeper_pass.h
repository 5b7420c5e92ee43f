/// The keeper pass: decides group after group and sets the keeper flags of the rows.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "dupes/group_filter.h"
#include "foundation/function_ref.h"

namespace kestrel {

/// The members of groups, each in table order, one group after the other.
struct GroupRows {
  std::vector<ResultTrack*> rows;
  std::vector<std::size_t> ends;  ///< by group: where its members end

  [[nodiscard]] std::size_t size() const noexcept { return ends.size(); }
  [[nodiscard]] std::span<ResultTrack* const> group(std::size_t i) const {
    const std::size_t begin = i ? ends[i - 1] : 0;
    return std::span(rows).subspan(begin, ends[i] - begin);
  }
};

/// The numbers of the groups of a table's rows, in the order in which they are met.
std::vector<std::int32_t> groupNumbers(std::span<const ResultTrack> rows);

/// Gathers the groups with these numbers, in this order, from a table's rows. A number that no row
/// has gives a group without members. Memory grows with the highest number of a row's group.
GroupRows groupRows(std::span<ResultTrack* const> rows, std::span<const std::int32_t> numbers);

/// Sets the keeper flag (`tCheckbox`) of all members: of non-keepers to `nonKeeperValue`, of
/// keepers to its opposite. Tells each decision, with the group's place in `groups`; what it points
/// to is valid as long as the rows.
void setKeepers(const GroupRows& groups, FilterSettings settings, bool nonKeeperValue,
                Random& random, FunctionRef<void(std::size_t, const GroupDecision&)> decided);

}  // namespace kestrel
