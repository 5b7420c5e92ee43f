#include "dupes/group_index.h"

#include <numeric>

namespace kestrel {

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

}  // namespace kestrel
