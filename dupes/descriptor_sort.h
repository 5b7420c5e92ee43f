/// Sorts rows of a table by sort descriptors.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

#include "dupes/sort_descriptors.h"
#include "foundation/function_ref.h"
#include "library/track_keys.h"

namespace kestrel {

using SortDescriptors = std::vector<std::unique_ptr<SortDescriptor>>;

/// The numbers 0 to `rows` - 1 in sorted order. `valueOf` gives a row's value in a column; it is
/// called once at most for each row and column, and borrowed texts must last until the end.
///
/// Stable, and defined although the comparisons are no order: a row stands before another when the
/// first descriptor that does not find them the same says so. Rows that are empty in a column
/// follow each other as they did, and later columns do not count between them.
///
/// `before` holds the same numbers as the rows stood so far, if not by number. That lets a caller
/// number rows in the order in which their values lie in memory, which is worth a lot.
///
/// Each different text of a column is prepared for comparison once. A column costs about a second
/// when a million rows have a million different names in it, much less when names repeat.
std::vector<std::uint32_t> sortedOrder(
    std::size_t rows, std::span<const std::unique_ptr<SortDescriptor>> descriptors,
    FunctionRef<Value(std::size_t row, std::size_t column)> valueOf,
    std::vector<std::uint32_t> before = {});

/// The same as places from 0 on, by row; rows that no descriptor tells apart share one. For many
/// rows with the values of few things: sort those, and the rows by counting.
std::vector<std::uint32_t> sortedPlaces(
    std::size_t rows, std::span<const std::unique_ptr<SortDescriptor>> descriptors,
    FunctionRef<Value(std::size_t row, std::size_t column)> valueOf);

/// Sorts numbers of rows by the rows' places, all below `count`. Stable; by counting, so that
/// places need not come from a comparison that is an order.
void sortByPlaces(std::vector<std::uint32_t>& order, std::span<const std::uint32_t> places,
                  std::uint32_t count);

/// Puts the rows into this order.
template <typename Row>
void arrange(std::vector<Row>& rows, std::span<const std::uint32_t> order) {
  std::vector<Row> arranged;
  arranged.reserve(rows.size());
  for (const std::uint32_t row : order) arranged.push_back(std::move(rows[row]));
  rows = std::move(arranged);
}

/// Sorts rows that have `value(TrackKey)` and `value(key text)`.
template <typename Row>
void sortByDescriptors(std::vector<Row>& rows,
                       std::span<const std::unique_ptr<SortDescriptor>> descriptors) {
  std::vector<std::optional<TrackKey>> keys;
  for (const auto& descriptor : descriptors) keys.push_back(trackKey(descriptor->key()));
  const auto valueOf = [&](std::size_t row, std::size_t column) -> Value {
    if (keys[column]) return rows[row].value(*keys[column]);
    return rows[row].value(std::string_view(descriptors[column]->key()));
  };
  arrange(rows, sortedOrder(rows.size(), descriptors, valueOf));
}

}  // namespace kestrel
