#include "dupes/sorting.h"

#include <algorithm>
#include <functional>
#include <numeric>
#include <string>
#include <utility>

#include "foundation/collation.h"
#include "foundation/number_table.h"

namespace kestrel {
namespace {

const TextCollator& collatorOf(ComparisonSelector selector) {
  return TextCollator::users(selector == ComparisonSelector::localizedStandardCompare
                                 ? TextOrder::standard
                                 : TextOrder::caseInsensitive);
}

// In the order in which values of different sorts compare.
enum class Sort : std::uint8_t { nothing, number, date, text };

Sort sortOf(const Value& value) noexcept {
  return value.isText()     ? Sort::text
         : value.isDate()   ? Sort::date
         : value.isNumber() ? Sort::number
                            : Sort::nothing;
}

std::int64_t numberOf(const Value& value) noexcept {
  return value.isDate() ? value.date().seconds : value.number();
}

/// What a value is compared by.
struct SortKey {
  Sort sort;
  std::uint64_t head;   ///< the number, or the first bytes, in an order of unsigned numbers
  std::uint64_t begin;  ///< where the bytes of a text lie
  std::uint32_t size;
};

/// Appends the bytes of a text to `bytes`.
SortKey keyOf(const Value& value, ComparisonSelector selector, std::string& bytes) {
  const std::uint64_t begin = bytes.size();
  if (!value.isText()) {
    const auto number = static_cast<std::uint64_t>(numberOf(value));
    return {sortOf(value), number ^ (std::uint64_t{1} << 63), begin, 0};
  }
  if (selector == ComparisonSelector::compare)
    bytes += value.text();
  else
    bytes += collatorOf(selector).sortKey(value.text());
  // Most comparisons end with the first eight bytes; shorter keys are filled up with zeros, and
  // the rest, compared from the beginning, decides whether those belonged to the text.
  std::uint64_t head = 0;
  const std::size_t size = bytes.size() - begin;
  for (std::size_t i = 0; i < sizeof head; ++i)
    head = head << 8 | (i < size ? static_cast<unsigned char>(bytes[begin + i]) : 0U);
  return {Sort::text, head, begin, static_cast<std::uint32_t>(size)};
}

/// -1, 0 or 1.
int compareKeys(const SortKey& a, const SortKey& b, std::string_view bytes) noexcept {
  if (a.sort != b.sort) return a.sort < b.sort ? -1 : 1;
  if (a.head != b.head) return a.head < b.head ? -1 : 1;
  const int rest = bytes.substr(a.begin, a.size).compare(bytes.substr(b.begin, b.size));
  return rest < 0 ? -1 : rest > 0 ? 1 : 0;
}

/// The different values of a column, so that each is prepared for comparison once.
class DifferentValues {
 public:
  explicit DifferentValues(std::size_t most) : table_(most) {}

  /// A number for the value, the same for equal ones. Borrowed texts must outlive this object.
  std::uint32_t number(const Value& value) {
    const std::uint64_t hash =
        value.isText()
            ? std::hash<std::string_view>{}(value.text())
            : (static_cast<std::uint64_t>(numberOf(value)) + static_cast<unsigned>(sortOf(value))) *
                  0x9E3779B97F4A7C15U;
    const std::uint32_t found = table_.number(
        hash ^ (hash >> 29), [&](std::uint32_t candidate) { return values_[candidate] == value; });
    if (found == values_.size()) values_.push_back(value);
    return found;
  }

  /// By number: the place among the different values in ascending order. Values that the selector
  /// finds the same share a place; `places` receives how many places there are.
  std::vector<std::uint32_t> ranks(ComparisonSelector selector, std::uint32_t& places) const {
    std::string bytes;
    std::vector<std::pair<SortKey, std::uint32_t>> keys;
    keys.reserve(values_.size());
    for (const Value& value : values_)
      keys.emplace_back(keyOf(value, selector, bytes), static_cast<std::uint32_t>(keys.size()));
    std::sort(keys.begin(), keys.end(), [&](const auto& a, const auto& b) {
      return compareKeys(a.first, b.first, bytes) < 0;
    });
    std::vector<std::uint32_t> ranks(values_.size());
    places = 0;
    for (std::size_t i = 0; i < keys.size(); ++i) {
      if (i == 0 || compareKeys(keys[i - 1].first, keys[i].first, bytes) != 0) ++places;
      ranks[keys[i].second] = places - 1;
    }
    return ranks;
  }

 private:
  NumberTable table_;
  std::vector<Value> values_;
};

/// A row's place in one column; rows with the same place are the same there.
struct Column {
  std::vector<std::uint32_t> places;
  std::uint32_t count = 1;
};

/// Rows that end in an earlier column have place 0; those that are empty here end here.
Column placesOf(std::size_t rows, const SortDescriptor& descriptor, std::size_t column,
                FunctionRef<Value(std::size_t, std::size_t)> valueOf, std::vector<bool>& ended) {
  constexpr auto skipped = static_cast<std::uint32_t>(-1);
  constexpr std::uint32_t empty = skipped - 1;
  DifferentValues values(rows + 1);
  Column result;
  result.places.reserve(rows);
  // Neighbours often have the same value, in search results above all.
  Value previous;
  std::uint32_t previousPlace = descriptor.isEmpty(previous) ? empty : values.number(previous);
  for (std::size_t row = 0; row < rows; ++row) {
    if (ended[row]) {
      result.places.push_back(skipped);
      continue;
    }
    Value value = valueOf(row, column);
    if (!(value == previous)) {
      previousPlace = descriptor.isEmpty(value) ? empty : values.number(value);
      previous = std::move(value);
    }
    result.places.push_back(previousPlace);
  }
  std::uint32_t count = 0;
  const std::vector<std::uint32_t> ranks = values.ranks(descriptor.selector(), count);
  for (std::size_t row = 0; row < rows; ++row) {
    std::uint32_t& place = result.places[row];
    if (place == skipped) {
      place = 0;
    } else if (place == empty) {
      // Last when ascending, first when descending.
      place = descriptor.ascending() ? count : 0;
      ended[row] = true;
    } else {
      place = descriptor.ascending() ? ranks[place] : count - ranks[place];
    }
  }
  result.count = count + 1;
  return result;
}

std::vector<Column> columnsOf(std::size_t rows,
                              std::span<const std::unique_ptr<SortDescriptor>> descriptors,
                              FunctionRef<Value(std::size_t, std::size_t)> valueOf) {
  std::vector<bool> ended(rows, false);
  std::vector<Column> columns;
  for (std::size_t column = 0; column < descriptors.size(); ++column)
    columns.push_back(placesOf(rows, *descriptors[column], column, valueOf, ended));
  return columns;
}

std::vector<std::uint32_t> numbersTo(std::size_t rows) {
  std::vector<std::uint32_t> numbers(rows);
  std::iota(numbers.begin(), numbers.end(), 0U);
  return numbers;
}

void sortByColumns(std::vector<std::uint32_t>& order, std::span<const Column> columns) {
  for (auto column = columns.rbegin(); column != columns.rend(); ++column)
    sortByPlaces(order, column->places, column->count);
}

}  // namespace

int standardComparison(const Value& a, const Value& b, ComparisonSelector selector) {
  std::string bytes;
  const SortKey first = keyOf(a, selector, bytes), second = keyOf(b, selector, bytes);
  return compareKeys(first, second, bytes);
}

int SortDescriptor::compareValues(const Value& first, const Value& second) const {
  const int direction = ascending_ ? 1 : -1;
  if (isEmpty(first)) return direction;
  if (isEmpty(second)) return -direction;
  return direction * standardComparison(first, second, selector_);
}

void sortByPlaces(std::vector<std::uint32_t>& order, std::span<const std::uint32_t> places,
                  std::uint32_t count) {
  std::vector<std::uint32_t> starts(count + 1);
  for (const std::uint32_t place : places) ++starts[place + 1];
  for (std::size_t place = 1; place < starts.size(); ++place) starts[place] += starts[place - 1];
  std::vector<std::uint32_t> sorted(order.size());
  for (const std::uint32_t row : order) sorted[starts[places[row]]++] = row;
  order = std::move(sorted);
}

std::vector<std::uint32_t> sortedOrder(
    std::size_t rows, std::span<const std::unique_ptr<SortDescriptor>> descriptors,
    FunctionRef<Value(std::size_t row, std::size_t column)> valueOf,
    std::vector<std::uint32_t> before) {
  std::vector<std::uint32_t> order = before.empty() ? numbersTo(rows) : std::move(before);
  sortByColumns(order, columnsOf(rows, descriptors, valueOf));
  return order;
}

std::vector<std::uint32_t> sortedPlaces(
    std::size_t rows, std::span<const std::unique_ptr<SortDescriptor>> descriptors,
    FunctionRef<Value(std::size_t row, std::size_t column)> valueOf) {
  const std::vector<Column> columns = columnsOf(rows, descriptors, valueOf);
  std::vector<std::uint32_t> order = numbersTo(rows);
  sortByColumns(order, columns);
  std::vector<std::uint32_t> places(rows);
  for (std::size_t i = 1; i < rows; ++i) {
    const bool same = std::all_of(columns.begin(), columns.end(), [&](const Column& column) {
      return column.places[order[i]] == column.places[order[i - 1]];
    });
    places[order[i]] = places[order[i - 1]] + (same ? 0 : 1);
  }
  return places;
}

}  // namespace kestrel
