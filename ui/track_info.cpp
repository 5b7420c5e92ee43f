#include "ui/track_info.h"

#include "ui/table_columns.h"

namespace kestrel {

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
