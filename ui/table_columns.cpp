#include "ui/table_columns.h"

#include <algorithm>
#include <array>
#include <memory>
#include <numeric>
#include <string>
#include <utility>
#include <vector>

#include "dupes/sorting.h"
#include "foundation/dates.h"

namespace kestrel {
namespace {

using enum ColumnContent;
using A = ColumnAlignment;
using S = SortMethod;

struct Description {
  std::string_view identifier, title;
  double width;
  bool visible;
  ColumnAlignment alignment;
  ColumnContent content;
  SortMethod sortMethod;
  std::string_view transformer = {};
};

constexpr bool shown = true, hidden = false;

// Numbers of which 0 means unknown sort as `number`, so that those come last; where 0 is
// a value like any other, as in play counts, they sort as `plain`. "3 of 12" is a text in which
// numbers count by their value.
constexpr Description descriptions[] = {
    {"tCheckbox", Message::literal("Keep"), 28, shown, A::center, checkBox, S::plain},
    {"dupeSort", Message::literal("Group"), 68, hidden, A::right, number, S::plain},
    {"tName", Message::literal("Name"), 220, shown, A::left, text, S::text},
    {"tArtist", Message::literal("Artist"), 160, shown, A::left, text, S::text},
    {"tAlbum", Message::literal("Album"), 180, shown, A::left, text, S::text},
    {"realTime", Message::literal("Time"), 72, shown, A::right, transformed, S::plain,
     "TimeTransformer"},
    {"tBit", Message::literal("Bit Rate"), 96, shown, A::right, transformed, S::plain,
     "KilobytesTransformer"},
    {"tKind", Message::literal("Kind"), 140, hidden, A::left, text, S::text},
    {"realSize", Message::literal("Size"), 72, hidden, A::right, transformed, S::plain,
     "SizeTransformer"},
    {"tPlayCount", Message::literal("Plays"), 72, shown, A::right, number, S::plain},
    {"realRating", Message::literal("Rating"), 72, hidden, A::left, transformed, S::plain,
     "RatingTransformer"},
    {"tAddDate", Message::literal("Date Added"), 120, hidden, A::left, date, S::plain},
    {"fileAvail", Message::literal("File"), 48, shown, A::center, availability, S::plain},
    {"tSound", Message::literal("Sound"), 124, hidden, A::right, text, S::text},
    {"tAgreement", Message::literal("Rules That Agree"), 96, hidden, A::right, text, S::text},
    {"tTrackNumString", Message::literal("Track"), 64, hidden, A::right, text, S::text},
    {"tDiscNumString", Message::literal("Disc"), 64, hidden, A::right, text, S::text},
    {"tAlbumArtist", Message::literal("Album Artist"), 160, hidden, A::left, text, S::text},
    {"tComposer", Message::literal("Composer"), 140, hidden, A::left, text, S::text},
    {"tGenre", Message::literal("Genre"), 100, hidden, A::left, text, S::text},
    {"tYearString", Message::literal("Year"), 52, hidden, A::right, text, S::text},
    {"tGrouping", Message::literal("Grouping"), 120, hidden, A::left, text, S::text},
    {"tComments", Message::literal("Comments"), 160, hidden, A::left, text, S::text},
    {"tSample", Message::literal("Sample Rate"), 88, hidden, A::right, transformed, S::plain,
     "HertzTransformer"},
    {"tBPM", Message::literal("BPM"), 52, hidden, A::right, number, S::number},
    {"tSkipCount", Message::literal("Skips"), 52, hidden, A::right, number, S::plain},
    {"tPlayDate", Message::literal("Last Played"), 120, hidden, A::left, date, S::plain},
    {"tSkipDate", Message::literal("Last Skipped"), 120, hidden, A::left, date, S::plain},
    {"tModDate", Message::literal("Date Modified"), 120, hidden, A::left, date, S::plain},
    {"tCompilation", Message::literal("Compilation"), 80, hidden, A::center, flag, S::plain},
    {"tPurch", Message::literal("Purchased"), 72, hidden, A::left, text, S::text},
    {"tProtected", Message::literal("Protected"), 72, hidden, A::left, text, S::text},
    {"tType", Message::literal("Type"), 64, hidden, A::left, text, S::text},
    {"tCloudStatus", Message::literal("Cloud Status"), 88, hidden, A::left, text, S::text},
    {"tFileName", Message::literal("File Name"), 180, hidden, A::left, text, S::text},
    {"tLoc", Message::literal("Location"), 280, hidden, A::left, text, S::text},
    {"hexpid", Message::literal("Persistent ID"), 140, hidden, A::left, text, S::text},
    // Nothing fills these yet: tables offer them, and sorting by them leaves all rows in place.
    {"tWork", Message::literal("Work"), 120, hidden, A::left, text, S::text},
    {"tMovement", Message::literal("Movement"), 120, hidden, A::left, text, S::text},
    {"tMoveNumString", Message::literal("Movement Number"), 64, hidden, A::right, text, S::text},
    {"tWorkMove", Message::literal("Work and Movement"), 160, hidden, A::left, text, S::text},
    {"tWorkNum", Message::literal("Work Number"), 64, hidden, A::right, number, S::number},
    {"tShow", Message::literal("Show"), 120, hidden, A::left, text, S::text},
    {"tSeason", Message::literal("Season"), 56, hidden, A::right, number, S::number},
    {"tEpisodeNum", Message::literal("Episode"), 56, hidden, A::right, number, S::number},
};

std::vector<TableColumn> makeColumns() {
  std::vector<TableColumn> columns;
  for (const Description& d : descriptions)
    columns.push_back({d.identifier, d.title, d.width, d.visible, d.alignment, d.content,
                       d.sortMethod, ValueTransformer::named(d.transformer),
                       trackKey(d.identifier)});
  return columns;
}

}  // namespace

std::span<const TableColumn> tableColumns() {
  static const std::vector<TableColumn> columns = makeColumns();
  return columns;
}

const TableColumn* tableColumn(std::string_view identifier) {
  const auto columns = tableColumns();
  const auto found = std::find_if(columns.begin(), columns.end(), [&](const TableColumn& column) {
    return column.identifier == identifier;
  });
  return found == columns.end() ? nullptr : &*found;
}

std::string displayedText(const TableColumn& column, const ResultTrack& row,
                          ShortDateTimeFormatter& dates, MessageText inWords) {
  if (!column.key || column.content == checkBox) return {};
  const Value value = row.value(*column.key);
  switch (column.content) {
    case checkBox:
      break;
    case text:
      return inWords(column.key == TrackKey::tSound       ? textOf(row.sound)
                     : column.key == TrackKey::tAgreement ? agreementText(row)
                                                          : wordedText(*row.record, *column.key));
    case number:
      return value.number() == 0 ? std::string() : std::to_string(value.number());
    case date:
      return value.isDate() ? dates.text(value.date().seconds) : std::string();
    case flag:
      return value.number() != 0 ? "\u2713" : "";
    case availability:
      return inWords(value.text() == "1"   ? Message::tr("Available")
                     : value.text() == "2" ? Message::tr("Cloud")
                                           : Message::tr("Missing"));
    case transformed: {
      std::string text(column.transformer->transformedValue(value).text());
      if (text == SizeTransformer::stream) return inWords(Message::tr(SizeTransformer::stream));
      if (column.key == TrackKey::tBit)
        return inWords(Message::tr("%1 kbit/s").arg(text.substr(0, text.find(' '))));
      return text;
    }
  }
  return {};
}

std::vector<TrackInfoRow> trackInfoRows(const ResultTrack& track, ShortDateTimeFormatter& dates,
                                        MessageText inWords) {
  std::vector<TrackInfoRow> rows;
  for (const TableColumn& column : tableColumns())
    if (std::string text = displayedText(column, track, dates, inWords); !text.empty())
      rows.push_back({std::string(column.title), std::move(text)});
  return rows;
}

CellView KSInfoDel::viewForTableColumn(std::string_view column, int tag) {
  CellView cell{column};
  if (column == "tLabel") cell.textColor = SystemColor::gray;
  if (column == "tValue" && tag == 0) cell.textColor = colors::darkred;
  if (column == "tValue" && tag == 2) cell.textColor = colors::darkblue;
  return cell;
}

double KSInfoDel::heightOfRow(const TrackInfoRow& row, double fieldWidth, TextHeight textHeight) {
  constexpr float lineHeight = 15, rowHeight = 21;
  if (row.tValue.empty()) return rowHeight;
  const auto height = static_cast<float>(textHeight(row.tValue, fieldWidth, 9999));
  return height / lineHeight * rowHeight;
}
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

}  // namespace

std::vector<std::uint32_t> arrangement(std::span<const ResultTrack> rows, const TableSort& sort) {
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
  return order;
}

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
      return Key::Comparison(
          [places = inverse(arrangement(rows, sort))](std::size_t a, std::size_t b) {
            return places[a] < places[b] ? -1 : places[b] < places[a] ? 1 : 0;
          });
    };
  return keys;
}

}  // namespace kestrel
