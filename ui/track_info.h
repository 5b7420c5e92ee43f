/// The table that tells about one track: a label and a value in each row.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "foundation/function_ref.h"
#include "foundation/message.h"
#include "library/result_track.h"
#include "ui/custom_views.h"

namespace kestrel {

class ShortDateTimeFormatter;

struct TrackInfoRow {
  std::string tLabel;  ///< in English
  std::string tValue;
  friend bool operator==(const TrackInfoRow&, const TrackInfoRow&) = default;
};

/// A row for every column of the review tables that has something to say about this track, in the
/// columns' order.
std::vector<TrackInfoRow> trackInfoRows(const ResultTrack& track, ShortDateTimeFormatter& dates,
                                        MessageText inWords = inEnglish);

/// The delegate of the track-info table, on the main thread.
struct KSInfoDel {
  /// The height that a text needs in a box of this width, in points.
  using TextHeight = FunctionRef<double(std::string_view text, double boxWidth, double boxHeight)>;

  /// Labels are grey. A value's colour goes by the table's tag, which says what the table is about:
  /// 0 a missing file, 1 a file, 2 a cloud item.
  [[nodiscard]] static CellView viewForTableColumn(std::string_view column, int tag);

  /// Rows grow by 21 points with each line of 15 points that their value takes in a text field of
  /// this width; a row without a value has one line, whatever its label.
  [[nodiscard]] static double heightOfRow(const TrackInfoRow& row, double fieldWidth,
                                          TextHeight textHeight);

  /// Never: the table is to be read only.
  static constexpr bool selectionShouldChangeInTableView() noexcept { return false; }
};

}  // namespace kestrel
