/// The columns of the review tables: one table of everything a column is.
///
/// A column shows the value of the track-record key that is its identifier. Tables offer all of
/// them; the user hides, shows and moves them, but for the check box, which stays the first.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "foundation/message.h"
#include "library/result_track.h"
#include "ui/table_sort.h"
#include "ui/value_transformers.h"

namespace kestrel {

class ShortDateTimeFormatter;

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

}  // namespace kestrel
