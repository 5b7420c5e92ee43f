/// The keeper pass: decides group after group and sets the keeper flags of the rows.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "dupes/group_filter.h"
#include "foundation/function_ref.h"

namespace kestrel {

/// Which rows of a table are in which group.
class GroupIndex {
 public:
  GroupIndex() = default;
  /// `groupOf(row)` is the number of a row's group, from 0. Memory grows with the highest.
  GroupIndex(std::size_t rows, FunctionRef<std::int32_t(std::size_t)> groupOf);

  /// The rows of a group, ascending; none for a number that no group has.
  [[nodiscard]] std::span<const std::uint32_t> members(std::int32_t group) const noexcept;
  /// The numbers of the groups, in the order in which they are met.
  [[nodiscard]] const std::vector<std::int32_t>& numbers() const noexcept { return numbers_; }

 private:
  std::vector<std::uint32_t> starts_;  ///< by group number, in rows_, and one more
  std::vector<std::uint32_t> rows_;
  std::vector<std::int32_t> numbers_;
};

/// Decides the groups of a table's rows that have these numbers, in this order, and sets the keeper
/// flag (`tCheckbox`) of their members: of non-keepers to `nonKeeperValue`, of keepers to its
/// opposite. Tells each decision, with the number's place and the members in table order; what it
/// points to is valid as long as the rows. A number that no row has is a group without members.
void setKeepers(
    std::span<ResultTrack* const> rows, std::span<const std::int32_t> numbers,
    FilterSettings settings, bool nonKeeperValue, Random& random,
    FunctionRef<void(std::size_t, std::span<const ResultTrack* const>, const GroupDecision&)>
        decided);

}  // namespace kestrel
