#include "ui/models/grouped_rows.h"

#include <algorithm>
#include <numeric>
#include <utility>

namespace kestrel {

GroupedRows::GroupedRows(std::vector<Group> groups) : groups_(std::move(groups)) {
  const auto before = [this](std::uint32_t a, std::uint32_t b) {
    return groups_[a].first < groups_[b].first;
  };
  std::vector<std::uint32_t> order(groups_.size());
  std::iota(order.begin(), order.end(), 0U);
  if (!std::is_sorted(order.begin(), order.end(), before)) {
    std::sort(order.begin(), order.end(), before);
    byFirstRow_ = std::move(order);
  }
  starts_.resize(groups_.size() + 1);
  sum(0);
}

void GroupedRows::sum(std::size_t from) {
  for (std::size_t i = from; i < groups_.size(); ++i)
    starts_[i + 1] = starts_[i] + 1 + (groups_[i].folded ? 0 : groups_[i].count);
}

GroupedRows::Place GroupedRows::at(std::size_t position) const {
  const auto next = std::upper_bound(starts_.begin(), starts_.end(), position);
  const auto group = static_cast<std::size_t>(next - starts_.begin()) - 1;
  const std::size_t offset = position - starts_[group];
  if (offset == 0) return {group, std::nullopt};
  return {group, groups_[group].first + static_cast<std::uint32_t>(offset - 1)};
}

std::optional<std::size_t> GroupedRows::groupOf(std::uint32_t row) const {
  const auto shown = [this](std::size_t i) {
    return byFirstRow_.empty() ? i : std::size_t{byFirstRow_[i]};
  };
  // The last group that begins at the row or before it.
  std::size_t low = 0;
  std::size_t high = groups_.size();
  while (low < high) {
    const std::size_t middle = (low + high) / 2;
    if (groups_[shown(middle)].first <= row)
      low = middle + 1;
    else
      high = middle;
  }
  if (low == 0) return std::nullopt;
  const std::size_t group = shown(low - 1);
  if (row - groups_[group].first >= groups_[group].count) return std::nullopt;
  return group;
}

std::optional<std::size_t> GroupedRows::positionOf(std::uint32_t row) const {
  const auto group = groupOf(row);
  if (!group || groups_[*group].folded) return std::nullopt;
  return starts_[*group] + 1 + row - groups_[*group].first;
}

void GroupedRows::setFolded(std::size_t group, bool folded) {
  if (std::exchange(groups_[group].folded, folded) != folded) sum(group);
}

void GroupedRows::setAllFolded(bool folded) {
  for (Group& group : groups_) group.folded = folded;
  sum(0);
}

}  // namespace kestrel
