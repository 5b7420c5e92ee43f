/// The rows of a table: content as it was added, arranged by the table's sort order.
///
/// Made for a million rows: content is one array, the arrangement another of positions, and a sort
/// key may look at each row once (to compute a collation key, say) before any two are compared.
/// Rows are added, removed, arranged and selected by tasks of the main queue only. A background
/// task may change rows in place meanwhile; that neither re-arranges nor notifies.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <numeric>
#include <ranges>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "ui/models/observers.h"

namespace kestrel {

/// One key of a sort order.
template <typename Row>
struct SortKey {
  /// Of two rows, by position: less than 0 when the first goes before the second in this key's
  /// direction, 0 when the next key decides, else more than 0. It need not be symmetric: two rows
  /// that are said to go before each other keep their order, and no further key is asked.
  using Comparison = std::function<int(std::size_t, std::size_t)>;

  std::string key;  ///< what is compared, by the name that columns use
  bool ascending = true;
  /// Called once per arrangement with the rows to compare, which outlive the comparison.
  std::function<Comparison(std::span<const Row>)> over;
};

/// Compares the values that `valueOf(row)` gives, by their own order. Each value is taken once.
template <typename Row, typename ValueOf>
SortKey<Row> plainSortKey(std::string key, bool ascending, ValueOf valueOf) {
  return {std::move(key), ascending, [ascending, valueOf](std::span<const Row> rows) {
            std::vector<std::decay_t<decltype(valueOf(rows[0]))>> values;
            values.reserve(rows.size());
            for (const Row& row : rows) values.push_back(valueOf(row));
            return typename SortKey<Row>::Comparison(
                [ascending, column = std::move(values)](std::size_t a, std::size_t b) {
                  const auto& first = ascending ? column[a] : column[b];
                  const auto& second = ascending ? column[b] : column[a];
                  return first < second ? -1 : second < first ? 1 : 0;
                });
          }};
}

template <typename Row>
class ArrayController {
 public:
  [[nodiscard]] std::size_t size() const noexcept { return content_.size(); }
  /// The rows in the order of adding.
  [[nodiscard]] std::span<const Row> content() const noexcept { return content_; }

  /// The rows in table order: a random-access range of references, valid until rows are added or
  /// removed.
  [[nodiscard]] auto arrangedRows() {
    return std::views::transform(
        std::span<const std::uint32_t>(arranged_),
        [rows = content_.data()](std::uint32_t position) -> Row& { return rows[position]; });
  }
  [[nodiscard]] auto arrangedRows() const {
    return std::views::transform(
        std::span<const std::uint32_t>(arranged_),
        [rows = content_.data()](std::uint32_t position) -> const Row& { return rows[position]; });
  }

  /// Adds rows to the content and arranges all. Nothing is selected then.
  void add(std::vector<Row> rows) {
    clearSelection();
    if (content_.empty())
      content_ = std::move(rows);
    else
      content_.insert(content_.end(), std::move_iterator(rows.begin()),
                      std::move_iterator(rows.end()));
    rearrange();
  }
  void add(std::span<const Row> rows) { add(std::vector<Row>(rows.begin(), rows.end())); }
  void removeAll() {
    clearSelection();
    content_ = {};
    rearrange();
  }

  [[nodiscard]] const std::vector<SortKey<Row>>& sortOrder() const noexcept { return sortOrder_; }
  /// Arranges by the keys, the first deciding first; rows that all keys leave equal stay in the
  /// order of adding, as do all rows when there is no key.
  void setSortOrder(std::vector<SortKey<Row>> keys) {
    sortOrder_ = std::move(keys);
    rearrange();
  }
  /// The same with what arranging by the keys comes to, worked out before: each position of the
  /// content once. For a million rows, whose order another thread can find.
  void setSortOrder(std::vector<SortKey<Row>> keys, std::vector<std::uint32_t> arrangement) {
    sortOrder_ = std::move(keys);
    arranged_ = std::move(arrangement);
    observers.notify();
  }
  /// Arranges again, after rows were changed in place.
  void rearrange() {
    arranged_.resize(content_.size());
    std::iota(arranged_.begin(), arranged_.end(), 0U);
    sort();
    observers.notify();
  }

  [[nodiscard]] std::size_t selectedCount() const noexcept { return selectedCount_; }
  /// Positions in table order, ascending.
  [[nodiscard]] std::vector<std::size_t> selection() const {
    std::vector<std::size_t> positions;
    positions.reserve(selectedCount_);
    if (selectedCount_ != 0)
      for (std::size_t i = 0; i < arranged_.size(); ++i)
        if (selected_[arranged_[i]]) positions.push_back(i);
    return positions;
  }
  /// Selects these positions of the table order, and no others; those beyond the end are ignored.
  /// The rows stay selected wherever a later arrangement puts them, until rows are added or
  /// removed.
  void setSelection(std::span<const std::size_t> positions) {
    clearSelection();
    selected_.resize(content_.size());
    for (const std::size_t position : positions) {
      if (position >= arranged_.size() || selected_[arranged_[position]]) continue;
      selected_[arranged_[position]] = true;
      ++selectedCount_;
    }
    selectionObservers.notify();
  }

  Observers observers;
  /// Told when the user's selection changes; rows that come and go are the other observers' news.
  Observers selectionObservers;

 private:
  void clearSelection() {
    selected_.clear();
    selectedCount_ = 0;
  }
  void sort() {
    std::vector<typename SortKey<Row>::Comparison> comparisons;
    for (const SortKey<Row>& key : sortOrder_) comparisons.push_back(key.over(content_));
    const auto before = [&comparisons](std::uint32_t a, std::uint32_t b) {
      for (const auto& compare : comparisons)
        if (const int order = compare(a, b); order != 0) return order < 0 && compare(b, a) >= 0;
      return false;
    };
    // Search results arrive in the order that the table then asks for.
    if (!std::is_sorted(arranged_.begin(), arranged_.end(), before))
      std::stable_sort(arranged_.begin(), arranged_.end(), before);
  }

  std::vector<Row> content_;
  std::vector<std::uint32_t> arranged_;  ///< positions in content_, in table order
  std::vector<SortKey<Row>> sortOrder_;
  std::vector<bool> selected_;  ///< by position in content_; empty while nothing is selected
  std::size_t selectedCount_ = 0;
};

}  // namespace kestrel
