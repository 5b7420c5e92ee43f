/// Sorting rows of a table by sort descriptors, each one column of a sort, which a table can copy,
/// turn round and apply.
///
/// The two kinds of this system put empty values behind all others, whichever way their column
/// is turned at first: a name that is missing must not stand in front of those that are there.
#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "foundation/function_ref.h"
#include "foundation/value.h"

namespace kestrel {

/// How two values that are there compare. Texts under `compare` go by their code points.
enum class ComparisonSelector : std::uint8_t {
  compare,
  localizedCaseInsensitiveCompare,
  localizedStandardCompare,
};

/// -1, 0 or 1. Values of different sorts order as: absent and null, numbers, dates, texts.
int standardComparison(const Value& a, const Value& b, ComparisonSelector selector);

/// Immutable.
class SortDescriptor {
 public:
  SortDescriptor(std::string key, bool ascending, ComparisonSelector selector)
      : key_(std::move(key)), ascending_(ascending), selector_(selector) {}
  virtual ~SortDescriptor() = default;

  [[nodiscard]] const std::string& key() const noexcept { return key_; }
  [[nodiscard]] bool ascending() const noexcept { return ascending_; }
  [[nodiscard]] ComparisonSelector selector() const noexcept { return selector_; }

  /// A new one of the same class.
  [[nodiscard]] std::unique_ptr<SortDescriptor> copyWithZone() const { return make(ascending_); }
  [[nodiscard]] std::unique_ptr<SortDescriptor> reversedSortDescriptor() const {
    return make(!ascending_);
  }

  /// -1, 0 or 1, the direction already taken into account, for records with `value(key text)`.
  /// Not symmetric between two empty values: the first one always counts as the larger. A sort must
  /// therefore not take it for an order; `sortByDescriptors` does not.
  template <typename Record>
  [[nodiscard]] int compareObject(const Record& first, const Record& second) const {
    return compareValues(first.value(std::string_view(key_)), second.value(std::string_view(key_)));
  }
  [[nodiscard]] int compareValues(const Value& first, const Value& second) const;

  /// Whether the class gives this value the special place.
  [[nodiscard]] virtual bool isEmpty(const Value& value) const noexcept = 0;

 protected:
  SortDescriptor(const SortDescriptor&) = default;
  SortDescriptor& operator=(const SortDescriptor&) = delete;
  [[nodiscard]] virtual std::unique_ptr<SortDescriptor> make(bool ascending) const = 0;

 private:
  std::string key_;
  bool ascending_;
  ComparisonSelector selector_;
};

/// A class of descriptors: `IsEmpty` tells which values have the special place.
template <bool (*IsEmpty)(const Value&) noexcept>
class SortDescriptorWith final : public SortDescriptor {
 public:
  explicit SortDescriptorWith(std::string key, bool ascending = true,
                              ComparisonSelector selector = ComparisonSelector::compare)
      : SortDescriptor(std::move(key), ascending, selector) {}
  [[nodiscard]] bool isEmpty(const Value& value) const noexcept override { return IsEmpty(value); }

 private:
  [[nodiscard]] std::unique_ptr<SortDescriptor> make(bool ascending) const override {
    return std::make_unique<SortDescriptorWith>(key(), ascending, selector());
  }
};

inline bool isNeverEmpty(const Value&) noexcept { return false; }
inline bool isEmptyText(const Value& value) noexcept {
  return value.isAbsent() || value.isNull() || (value.isText() && value.text().empty());
}
inline bool isEmptyNumber(const Value& value) noexcept {
  return value.isAbsent() || value.isNull() || (value.isNumber() && value.number() == 0);
}

using PlainSortDescriptor = SortDescriptorWith<isNeverEmpty>;
/// For text columns: missing values, null and the empty text are empty.
using MySortDescriptor = SortDescriptorWith<isEmptyText>;
/// For number columns: missing values and 0 are empty.
using MyNumSortDescriptor = SortDescriptorWith<isEmptyNumber>;

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

}  // namespace kestrel
