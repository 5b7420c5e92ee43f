#include <algorithm>
#include <array>
#include <memory>
#include <numeric>
#include <string>
#include <utility>

#include "dupes/sorting.h"
#include "ui/table_columns.h"

namespace kestrel {
namespace {

enum class Direction : std::uint8_t { clicked, ascending };

struct AddedKey {
  std::string_view key;
  SortMethod method = SortMethod::plain;
  Direction direction = Direction::ascending;
};

struct Expansion {
  std::string_view key;
  SortMethod method;
  std::array<AddedKey, 4> added;  ///< up to the first one without a key
  bool upperTableOnly = false;
};

constexpr SortMethod byText = SortMethod::text, byNumber = SortMethod::number;
constexpr AddedKey thenAlbum{"tAlbum", byText}, thenDisc{"tDiscNum", byNumber},
    thenTrack{"tTrackNum", byNumber};

constexpr Expansion expansions[] = {
    {"dupeSort", SortMethod::plain, {}},
    {"tArtist", byText, {thenAlbum, thenDisc, thenTrack}},
    {"tAlbum", byText, {thenDisc, thenTrack}},
    // Not as under the artist, where albums always ascend: an album artist's albums
    // turn round with the artists.
    {"tAlbumArtist", byText, {AddedKey{"tAlbum", byText, Direction::clicked}, thenDisc, thenTrack}},
    {"tGenre", byText, {AddedKey{"tArtist", byText}, thenAlbum, thenDisc, thenTrack}},
    {"tShow", byText, {AddedKey{"tSeason", byNumber}, AddedKey{"tEpisodeNum", byNumber}}},
    {"tWorkMove", byText, {AddedKey{"tWorkNum", byNumber}}, true},
};

std::unique_ptr<SortDescriptor> descriptorOf(const ColumnSort& sort) {
  std::string key(sort.key);
  switch (sort.method) {
    case SortMethod::text:
      return std::make_unique<MySortDescriptor>(std::move(key), sort.ascending,
                                                ComparisonSelector::localizedStandardCompare);
    case SortMethod::number:
      return std::make_unique<MyNumSortDescriptor>(std::move(key), sort.ascending,
                                                   ComparisonSelector::compare);
    case SortMethod::plain:
      break;
  }
  return std::make_unique<PlainSortDescriptor>(std::move(key), sort.ascending);
}

/// Row numbers in the order in which the rows' records lie in memory. A table shows them in
/// another; a million rows would mostly wait for memory, as neighbours have nothing in common.
std::vector<std::uint32_t> inMemoryOrder(std::span<const ResultTrack> rows) {
  std::vector<std::pair<const TrackRecord*, std::uint32_t>> records;
  records.reserve(rows.size());
  for (const ResultTrack& row : rows)
    records.emplace_back(row.record, static_cast<std::uint32_t>(records.size()));
  std::sort(records.begin(), records.end());
  std::vector<std::uint32_t> order;
  order.reserve(rows.size());
  for (const auto& [record, row] : records) order.push_back(row);
  return order;
}

std::vector<std::uint32_t> inverse(std::span<const std::uint32_t> order) {
  std::vector<std::uint32_t> places(order.size());
  for (std::uint32_t place = 0; place < order.size(); ++place) places[order[place]] = place;
  return places;
}

std::vector<std::uint32_t> asAdded(std::size_t rows) {
  std::vector<std::uint32_t> order(rows);
  std::iota(order.begin(), order.end(), 0U);
  return order;
}

/// By position in `rows`: the place in the whole order.
std::vector<std::uint32_t> placesOf(std::span<const ResultTrack> rows, const TableSort& sort) {
  SortDescriptors descriptors;
  std::vector<std::optional<TrackKey>> keys;
  for (const ColumnSort& column : sort) {
    descriptors.push_back(descriptorOf(column));
    keys.push_back(trackKey(column.key));
  }
  const bool readsRecords = std::any_of(keys.begin(), keys.end(), [](const auto& key) {
    return key && *key != TrackKey::dupeSort && *key != TrackKey::tCheckbox;
  });
  const std::vector<std::uint32_t> walk = readsRecords ? inMemoryOrder(rows) : asAdded(rows.size());
  const auto valueOf = [&](std::size_t step, std::size_t column) -> Value {
    return keys[column] ? rows[walk[step]].value(*keys[column]) : Value();
  };
  std::vector<std::uint32_t> order = sortedOrder(rows.size(), descriptors, valueOf, inverse(walk));
  for (std::uint32_t& step : order) step = walk[step];
  return inverse(order);
}

}  // namespace

TableSort expandedSort(ReviewTable table, std::string_view key, bool ascending) {
  TableSort sort;
  for (const Expansion& expansion : expansions) {
    if (expansion.key != key) continue;
    if (expansion.upperTableOnly && table != ReviewTable::upper) break;
    sort.push_back({expansion.key, ascending, expansion.method});
    for (const AddedKey& added : expansion.added)
      if (!added.key.empty())
        sort.push_back(
            {added.key, added.direction == Direction::ascending || ascending, added.method});
  }
  return sort;
}

std::vector<SortKey<ResultTrack>> sortKeys(const TableSort& sort) {
  using Key = SortKey<ResultTrack>;
  std::vector<Key> keys;
  for (const ColumnSort& column : sort) {
    Key& key = keys.emplace_back();
    key.key = column.key;
    key.ascending = column.ascending;
    // Asked only where the first key finds two rows the same, which it never does.
    key.over = [](std::span<const ResultTrack>) {
      return [](std::size_t, std::size_t) { return 0; };
    };
  }
  if (!keys.empty())
    keys.front().over = [sort](std::span<const ResultTrack> rows) {
      return Key::Comparison([places = placesOf(rows, sort)](std::size_t a, std::size_t b) {
        return places[a] < places[b] ? -1 : places[b] < places[a] ? 1 : 0;
      });
    };
  return keys;
}

}  // namespace kestrel
