/// The columns of the review tables: one table of everything a column is, how tables sort by them,
/// and the table that tells of one track what its columns read.
///
/// A column shows the value of the track-record key that is its identifier. Tables offer all of
/// them; the user hides, shows and moves them, but for the check box, which stays the first.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "foundation/message.h"
#include "library/result_track.h"
#include "ui/custom_views.h"
#include "ui/models/array_controller.h"
#include "ui/value_transformers.h"

namespace kestrel {

class ShortDateTimeFormatter;

enum class ReviewTable : std::uint8_t { upper, lower };

/// How the values under a key are compared.
enum class SortMethod : std::uint8_t {
  plain,   ///< by the values' own order
  text,    ///< as a user expects names, numbers within them by value; empty texts count as larger
  number,  ///< by value; 0 counts as larger
};

/// One key of a table's sort order.
struct ColumnSort {
  std::string_view key;  ///< of a track record; borrowed from the table of columns
  bool ascending = true;
  SortMethod method = SortMethod::plain;
  friend bool operator==(const ColumnSort&, const ColumnSort&) = default;
};

/// The first key decides first.
using TableSort = std::vector<ColumnSort>;

/// The whole order behind a header's own key: albums within an artist, tracks within an album.
/// Empty for keys that stand alone.
TableSort expandedSort(ReviewTable table, std::string_view key, bool ascending);

/// The same order for an array controller, one key each. A million rows by a text column take about
/// a second: each different text is prepared for comparison once, and the first key already knows
/// the whole order, so that arranging compares only places in it.
std::vector<SortKey<ResultTrack>> sortKeys(const TableSort& sort);

/// Positions of the rows in that order. From any thread, while the rows stay as they are.
std::vector<std::uint32_t> arrangement(std::span<const ResultTrack> rows, const TableSort& sort);

enum class ColumnAlignment : std::uint8_t { left, right, center };
enum class ColumnContent : std::uint8_t {
  checkBox,      ///< the keeper flag, for the user to change
  text,          ///< as the record has it
  number,        ///< decimal; nothing for 0
  date,          ///< short, in the user's locale; nothing for a missing date
  flag,          ///< a check mark, or nothing
  availability,  ///< of the file, in a word
  transformed,   ///< by the column's transformer
};

struct TableColumn {
  std::string_view identifier;
  std::string_view title;  ///< in English
  double width;            ///< at first, in points
  bool visible;            ///< at first
  ColumnAlignment alignment;
  ColumnContent content;
  SortMethod sortMethod;  ///< of the column's own single key
  const ValueTransformer* transformer = nullptr;
  std::optional<TrackKey> key;  ///< nothing: a key that no record has

  /// The single key that a click on the column's header sorts by.
  [[nodiscard]] ColumnSort sortPrototype() const { return {identifier, true, sortMethod}; }
};

/// In the order in which tables show them at first: the check box is the first.
std::span<const TableColumn> tableColumns();
/// nullptr when there is no such column.
const TableColumn* tableColumn(std::string_view identifier);

/// What the column's cell reads in this row; empty for the check box.
std::string displayedText(const TableColumn& column, const ResultTrack& row,
                          ShortDateTimeFormatter& dates, MessageText inWords = inEnglish);

// The table that tells about one track: a label and a value in each row.

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
