#include "dupes/descriptor_sort.h"

#include <algorithm>
#include <cstring>
#include <functional>
#include <numeric>
#include <string>

#include "foundation/collation.h"
#include "foundation/number_table.h"
#include "foundation/text_pool.h"

namespace kestrel {
namespace {

const TextCollator& collatorOf(ComparisonSelector selector) {
  return TextCollator::users(selector == ComparisonSelector::localizedStandardCompare
                                 ? TextOrder::standard
                                 : TextOrder::caseInsensitive);
}

/// The different values of a column, so that each is prepared for comparison once.
class DifferentValues {
 public:
  explicit DifferentValues(std::size_t most) : table_(most) {}

  /// A number for the value, the same for equal ones.
  std::uint32_t number(const Value& value) {
    const Entry entry = read(value);
    const std::uint64_t hash =
        value.isText()
            ? std::hash<std::string_view>{}(value.text())
            : (static_cast<std::uint64_t>(entry.number) + static_cast<unsigned>(entry.sort)) *
                  0x9E3779B97F4A7C15U;
    const std::uint32_t found = table_.number(hash ^ (hash >> 29), [&](std::uint32_t candidate) {
      const Entry& other = entries_[candidate];
      return other.sort == entry.sort && other.number == entry.number &&
             (entry.sort != Sort::text || other.text.view() == value.text());
    });
    if (found == entries_.size()) {
      entries_.push_back(entry);
      if (entry.sort == Sort::text) entries_.back().text = texts_.add(value.text());
    }
    return found;
  }

  /// By number: the place among the different values in ascending order. Values that the selector
  /// finds the same share a place; `places` receives how many places there are.
  std::vector<std::uint32_t> ranks(ComparisonSelector selector, std::uint32_t& places) const {
    std::string bytes;
    std::vector<SortKey> keys;
    keys.reserve(entries_.size());
    for (const Entry& entry : entries_) keys.push_back(keyOf(entry, selector, bytes));
    const auto restOf = [&](const SortKey& key) {
      return std::string_view(bytes).substr(key.begin, key.size);
    };
    const auto same = [&](const SortKey& a, const SortKey& b) {
      return a.sort == b.sort && a.head == b.head && restOf(a) == restOf(b);
    };
    std::sort(keys.begin(), keys.end(), [&](const SortKey& a, const SortKey& b) {
      if (a.sort != b.sort) return a.sort < b.sort;
      if (a.head != b.head) return a.head < b.head;
      return restOf(a) < restOf(b);
    });
    std::vector<std::uint32_t> ranks(entries_.size());
    places = 0;
    for (std::size_t i = 0; i < keys.size(); ++i) {
      if (i == 0 || !same(keys[i - 1], keys[i])) ++places;
      ranks[keys[i].number] = places - 1;
    }
    return ranks;
  }

 private:
  // In the order in which values of different sorts compare.
  enum class Sort : std::uint8_t { nothing, number, date, text };
  struct Entry {
    Sort sort;
    std::int64_t number;  ///< of a date, its seconds
    Text text;
  };
  struct SortKey {
    std::uint64_t head;   ///< the number, or the first bytes, in an order of unsigned numbers
    std::uint64_t begin;  ///< of the bytes behind the head
    std::uint32_t size;
    std::uint32_t number;
    Sort sort;
  };

  static Entry read(const Value& value) {
    if (value.isText()) return {Sort::text, 0, {}};
    if (value.isDate()) return {Sort::date, value.date().seconds, {}};
    if (value.isNumber()) return {Sort::number, value.number(), {}};
    return {Sort::nothing, 0, {}};
  }

  SortKey keyOf(const Entry& entry, ComparisonSelector selector, std::string& bytes) const {
    const auto number = static_cast<std::uint32_t>(&entry - entries_.data());
    if (entry.sort != Sort::text) {
      const std::uint64_t head =
          static_cast<std::uint64_t>(entry.number) ^ (std::uint64_t{1} << 63);
      return {head, 0, 0, number, entry.sort};
    }
    const std::uint64_t begin = bytes.size();
    if (selector == ComparisonSelector::compare)
      bytes += entry.text.view();
    else
      bytes += collatorOf(selector).sortKey(entry.text.view());
    // Most comparisons end with the first eight bytes; shorter keys are filled up with zeros, and
    // the rest, compared from the beginning, decides whether those belonged to the text.
    std::uint64_t head = 0;
    const std::size_t size = bytes.size() - begin;
    for (std::size_t i = 0; i < sizeof head; ++i)
      head = head << 8 | (i < size ? static_cast<unsigned char>(bytes[begin + i]) : 0U);
    return {head, begin, static_cast<std::uint32_t>(size), number, entry.sort};
  }

  NumberTable table_;
  std::vector<Entry> entries_;
  TextPool texts_;
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
