/// The groups of a table's rows.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

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

}  // namespace kestrel
