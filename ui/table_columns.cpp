#include "ui/table_columns.h"

#include <algorithm>
#include <vector>

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

// Numbers of which 0 means that nobody knows sort as `number`, so that those come last; where 0 is
// a value like any other, as in play counts, they sort as `plain`. "3 of 12" is a text in which
// numbers count by their value.
constexpr Description descriptions[] = {
    {"tCheckbox", "Keep", 28, shown, A::center, checkBox, S::plain},
    {"dupeSort", "Group", 68, shown, A::right, number, S::plain},
    {"tName", "Name", 220, shown, A::left, text, S::text},
    {"tArtist", "Artist", 160, shown, A::left, text, S::text},
    {"tAlbum", "Album", 180, shown, A::left, text, S::text},
    {"realTime", "Time", 56, shown, A::right, transformed, S::plain, "TimeTransformer"},
    {"tBit", "Bit Rate", 72, shown, A::right, transformed, S::plain, "KilobytesTransformer"},
    {"tKind", "Kind", 140, shown, A::left, text, S::text},
    {"realSize", "Size", 72, shown, A::right, transformed, S::plain, "SizeTransformer"},
    {"tPlayCount", "Plays", 52, shown, A::right, number, S::plain},
    {"realRating", "Rating", 72, shown, A::left, transformed, S::plain, "RatingTransformer"},
    {"tAddDate", "Date Added", 120, shown, A::left, date, S::plain},
    {"fileAvail", "File", 64, shown, A::left, availability, S::plain},
    {"tTrackNumString", "Track", 64, hidden, A::right, text, S::text},
    {"tDiscNumString", "Disc", 64, hidden, A::right, text, S::text},
    {"tAlbumArtist", "Album Artist", 160, hidden, A::left, text, S::text},
    {"tComposer", "Composer", 140, hidden, A::left, text, S::text},
    {"tGenre", "Genre", 100, hidden, A::left, text, S::text},
    {"tYearString", "Year", 52, hidden, A::right, text, S::text},
    {"tGrouping", "Grouping", 120, hidden, A::left, text, S::text},
    {"tComments", "Comments", 160, hidden, A::left, text, S::text},
    {"tSample", "Sample Rate", 88, hidden, A::right, transformed, S::plain, "HertzTransformer"},
    {"tBPM", "BPM", 52, hidden, A::right, number, S::number},
    {"tSkipCount", "Skips", 52, hidden, A::right, number, S::plain},
    {"tPlayDate", "Last Played", 120, hidden, A::left, date, S::plain},
    {"tSkipDate", "Last Skipped", 120, hidden, A::left, date, S::plain},
    {"tModDate", "Date Modified", 120, hidden, A::left, date, S::plain},
    {"tCompilation", "Compilation", 80, hidden, A::center, flag, S::plain},
    {"tPurch", "Purchased", 72, hidden, A::left, text, S::text},
    {"tProtected", "Protected", 72, hidden, A::left, text, S::text},
    {"tType", "Type", 64, hidden, A::left, text, S::text},
    {"tCloudStatus", "Cloud Status", 88, hidden, A::left, text, S::text},
    {"tFileName", "File Name", 180, hidden, A::left, text, S::text},
    {"tLoc", "Location", 280, hidden, A::left, text, S::text},
    {"hexpid", "Persistent ID", 140, hidden, A::left, text, S::text},
    // Nothing fills these yet: tables offer them, and sorting by them leaves all rows in place.
    {"tWork", "Work", 120, hidden, A::left, text, S::text},
    {"tMovement", "Movement", 120, hidden, A::left, text, S::text},
    {"tMoveNumString", "Movement Number", 64, hidden, A::right, text, S::text},
    {"tWorkMove", "Work and Movement", 160, hidden, A::left, text, S::text},
    {"tWorkNum", "Work Number", 64, hidden, A::right, number, S::number},
    {"tShow", "Show", 120, hidden, A::left, text, S::text},
    {"tSeason", "Season", 56, hidden, A::right, number, S::number},
    {"tEpisodeNum", "Episode", 56, hidden, A::right, number, S::number},
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
                          ShortDateTimeFormatter& dates) {
  if (!column.key || column.content == checkBox) return {};
  const Value value = row.value(*column.key);
  switch (column.content) {
    case checkBox:
      break;
    case text:
      return std::string(value.text());
    case number:
      return value.number() == 0 ? std::string() : std::to_string(value.number());
    case date:
      return value.isDate() ? dates.text(value.date().seconds) : std::string();
    case flag:
      return value.number() != 0 ? "\u2713" : "";
    case availability:
      return value.text() == "1" ? "Available" : value.text() == "2" ? "Cloud" : "Missing";
    case transformed:
      return std::string(column.transformer->transformedValue(value).text());
  }
  return {};
}

}  // namespace kestrel
