/// Which part of a results table is seen, and how a row is brought to its middle.
#pragma once

#include <cstddef>
#include <optional>

#include "ui/rect.h"

namespace kestrel {

/// A table of rows of equal height; y grows downwards from the first row's upper edge.
struct TableGeometry {
  std::size_t rows = 0;
  double rowHeight = 0;
  double width = 0;
  Size visibleSize;  ///< of the scroll area around the table
  Point visibleOrigin;
  std::optional<std::size_t> selectedRow;

  /// All zeros without a selected row.
  [[nodiscard]] Rect selectedRect() const noexcept;
};

/// The visible origin that puts a row in the middle of what is seen, but not above the first row.
/// There is no such limit at the table's end: what is seen may reach beyond the last row.
Point centringOrigin(const Rect& row, const Size& visible) noexcept;

/// The two results tables as they were when an operation last worked on them. They live as long as
/// the process: `process().state<ResultsTableReferences>()`.
struct ResultsTableReferences {
  TableGeometry maxTableView;  ///< the upper one
  TableGeometry minTableView;
};

}  // namespace kestrel

namespace kestrel::TextSorter {

/// Selects that row alone, in the upper results table or, without `withMain`, in the lower one, and
/// centres it. The other table is left alone, as are both when there is no such row. On the main
/// thread, as are all operations here.
void selectInTable(std::size_t row, bool withMain);

/// Scrolls to the selected row; to the origin without one. Nothing happens without a table.
void scrollToCenter(TableGeometry* table);

}  // namespace kestrel::TextSorter
