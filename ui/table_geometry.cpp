#include "ui/table_geometry.h"

#include <algorithm>

#include "ui/process.h"

namespace kestrel {

Rect TableGeometry::selectedRect() const noexcept {
  if (!selectedRow) return {};
  return {{0, static_cast<double>(*selectedRow) * rowHeight}, {width, rowHeight}};
}

Point centringOrigin(const Rect& row, const Size& visible) noexcept {
  return {row.origin.x, std::max(0.0, row.origin.y + (row.size.height - visible.height) / 2)};
}

void TextSorter::selectInTable(std::size_t row, bool withMain) {
  auto& tables = process().state<ResultsTableReferences>();
  TableGeometry& table = withMain ? tables.maxTableView : tables.minTableView;
  if (row >= table.rows) return;
  table.selectedRow = row;
  scrollToCenter(&table);
}

void TextSorter::scrollToCenter(TableGeometry* table) {
  if (table) table->visibleOrigin = centringOrigin(table->selectedRect(), table->visibleSize);
}

}  // namespace kestrel
