#include "ui/table_columns.h"

#include <algorithm>
#include <vector>

#include "foundation/dates.h"
#include "library/worded_values.h"

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
    {"dupeSort", Message::literal("Group"), 68, shown, A::right, number, S::plain},
    {"tName", Message::literal("Name"), 220, shown, A::left, text, S::text},
    {"tArtist", Message::literal("Artist"), 160, shown, A::left, text, S::text},
    {"tAlbum", Message::literal("Album"), 180, shown, A::left, text, S::text},
    {"realTime", Message::literal("Time"), 56, shown, A::right, transformed, S::plain,
     "TimeTransformer"},
    {"tBit", Message::literal("Bit Rate"), 72, shown, A::right, transformed, S::plain,
     "KilobytesTransformer"},
    {"tKind", Message::literal("Kind"), 140, shown, A::left, text, S::text},
    {"realSize", Message::literal("Size"), 72, shown, A::right, transformed, S::plain,
     "SizeTransformer"},
    {"tPlayCount", Message::literal("Plays"), 52, shown, A::right, number, S::plain},
    {"realRating", Message::literal("Rating"), 72, shown, A::left, transformed, S::plain,
     "RatingTransformer"},
    {"tAddDate", Message::literal("Date Added"), 120, shown, A::left, date, S::plain},
    {"fileAvail", Message::literal("File"), 64, shown, A::left, availability, S::plain},
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
      return inWords(wordedText(*row.record, *column.key));
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
        return inWords(Message::tr("%1 kbps").arg(text.substr(0, text.find(' '))));
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

}  // namespace kestrel
