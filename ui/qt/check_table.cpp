#include "ui/qt/check_table.h"

#include <QHeaderView>
#include <QKeyEvent>

#include "ui/qt/lines_delegate.h"
#include "ui/qt/table_painting.h"

namespace kestrel {

CheckTable::CheckTable(QAbstractItemModel* model, const QString& accessibleName, int lines) {
  setHorizontalHeader(new TitleHeader(this));
  model->setParent(this);
  setModel(model);
  setItemDelegate(new LinesDelegate(this));
  setAccessibleName(accessibleName);
  setSelectionBehavior(QAbstractItemView::SelectRows);
  setShowGrid(false);
  setWordWrap(false);
  setTabKeyNavigation(false);
  verticalHeader()->hide();
  verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
  verticalHeader()->setDefaultSectionSize(rowHeightOf(lines, fontMetrics()));
  horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
  horizontalHeader()->setHighlightSections(false);
}

void CheckTable::keyPressEvent(QKeyEvent* event) {
  const QModelIndex current = currentIndex().siblingAtColumn(0);
  const QVariant state = current.data(Qt::CheckStateRole);
  if (event->key() != Qt::Key_Space || !state.isValid()) return QTableView::keyPressEvent(event);
  const auto wanted = state.toInt() == Qt::Checked ? Qt::Unchecked : Qt::Checked;
  const QModelIndexList rows = selectionModel()->selectedRows();
  for (const QModelIndex& row : rows.isEmpty() ? QModelIndexList{current} : rows)
    if (row.flags().testFlag(Qt::ItemIsUserCheckable))
      model()->setData(row, wanted, Qt::CheckStateRole);
}

}  // namespace kestrel
