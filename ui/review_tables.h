/// The behaviour of the two review tables: the upper one, which shows the result of a search, and
/// the lower one, which lists a selection of it.
///
/// The delegates decide; what binds a widget to them asks and carries out. All operations are
/// called on the main thread. Rows are passed as they are, not by position, so that a binding is
/// free in how it filters and arranges them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "library/result_track.h"
#include "ui/custom_views.h"
#include "ui/models/array_controller.h"
#include "ui/table_columns.h"

namespace kestrel {

class Preferences;

/// The event that a table is handling.
struct TableEvent {
  enum class Kind : std::uint8_t {
    leftMouseDown,
    leftMouseUp,
    keyDown,
    keyUp,
    systemDefined,
    other
  };
  Kind kind = Kind::other;
  std::ptrdiff_t columnUnderPointer = -1;  ///< position in the table; -1 outside every column
};

/// A table to show anew.
struct TableReload {
  ReviewTable table;
  bool selectsAgain;  ///< the rows that were selected before, and no others
  friend bool operator==(const TableReload&, const TableReload&) = default;
};

/// What a row says by its colour. Views say it in other ways, too: not all people tell colours.
struct RowState {
  bool keeper;
  FileAvailability file;
};
RowState rowState(const ResultTrack& row, bool keeperMode);

/// By whether the row shows a keeper, and its `fileAvail`; what is neither "1" nor "2" is missing.
Color cellTextColor(bool keeper, std::string_view fileAvail);

/// What the two tables have in common.
class ReviewTableDelegate {
 public:
  /// Extends a sort that the table has just set to the clicked column's own single key and
  /// direction. The check box column, and an empty sort, stay as they are.
  void didClickTableColumn(TableSort& sort, std::string_view column) const;

  [[nodiscard]] MyNSTableRowView rowViewForRow() const { return {}; }

  /// The cell with its text colour.
  [[nodiscard]] CellView viewForTableColumn(std::string_view column, const ResultTrack& row) const;

  /// Whether the user may move the column at one position to another.
  [[nodiscard]] bool shouldReorderColumn(std::ptrdiff_t from, std::ptrdiff_t to) const noexcept;

  /// A press on the check box, or outside every column, leaves the selection as it is.
  [[nodiscard]] bool selectionShouldChangeInTableView(const TableEvent& event) const noexcept;

  /// What to show anew after a check box has changed its own row's `tCheckbox`, in this order. No
  /// other member of the group changes.
  [[nodiscard]] std::vector<TableReload> clickedACheckBox(bool lowerWindowVisible) const;

 protected:
  ReviewTableDelegate(ReviewTable table, Preferences& preferences)
      : table_(table), preferences_(preferences) {}
  ~ReviewTableDelegate() = default;
  ReviewTableDelegate(const ReviewTableDelegate&) = default;

 private:
  ReviewTable table_;
  Preferences& preferences_;
};

/// Of the upper table. Remembers its sort column in the settings.
class KSMaxDel final : public ReviewTableDelegate {
 public:
  explicit KSMaxDel(Preferences& preferences)
      : ReviewTableDelegate(ReviewTable::upper, preferences) {}

  /// Gives the rows of neighbouring groups different backgrounds, while the table is sorted by
  /// group and shows them all.
  static void didAddRowView(MyNSTableRowView& view, const ResultTrack& row,
                            const ArrayController<ResultTrack>& maxArrayController, bool filtered);
};

/// Of the lower table.
class KSMinDel final : public ReviewTableDelegate {
 public:
  explicit KSMinDel(Preferences& preferences)
      : ReviewTableDelegate(ReviewTable::lower, preferences) {}
};

/// A click on a column's header, the table's part included: turns the direction round when the
/// rows are sorted by the column already, has the delegate extend the sort, and arranges once.
/// Nothing happens for an unknown column.
void clickColumnHeader(const ReviewTableDelegate& delegate, ArrayController<ResultTrack>& rows,
                       std::string_view column);
/// The order that a click asks for; empty for an unknown column.
TableSort clickedSort(const ReviewTableDelegate& delegate, const ArrayController<ResultTrack>& rows,
                      std::string_view column);
/// The same with a direction, as when the last sort is restored.
void sortByColumn(const ReviewTableDelegate& delegate, ArrayController<ResultTrack>& rows,
                  std::string_view column, bool ascending);

}  // namespace kestrel
