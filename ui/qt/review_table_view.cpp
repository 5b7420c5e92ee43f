#include "ui/qt/review_table_view.h"

#include <QContextMenuEvent>
#include <QGuiApplication>
#include <QHeaderView>
#include <QKeyEvent>
#include <QMenu>
#include <QMouseEvent>
#include <QScrollBar>
#include <algorithm>

#include "ui/process.h"
#include "ui/qt/table_painting.h"
#include "ui/qt/text.h"
#include "ui/table_columns.h"

namespace kestrel {
namespace {

TableEvent::Kind kindOf(const QEvent& event) {
  switch (event.type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
      return TableEvent::Kind::leftMouseDown;
    case QEvent::MouseButtonRelease:
      return TableEvent::Kind::leftMouseUp;
    case QEvent::KeyPress:
    case QEvent::ShortcutOverride:
      return TableEvent::Kind::keyDown;
    case QEvent::KeyRelease:
      return TableEvent::Kind::keyUp;
    default:
      return TableEvent::Kind::other;
  }
}

}  // namespace

ReviewTableView::ReviewTableView(ResultTableModel& rows, const ReviewTableDelegate& delegate,
                                 ReviewTable table, WhenIdle whenIdle)
    : rows_(rows), delegate_(delegate), table_(table), whenIdle_(std::move(whenIdle)) {
  setModel(&rows_);
  setItemDelegate(new ResultRowPainter(this));
  setSelectionBehavior(SelectRows);
  setSelectionMode(ExtendedSelection);
  setEditTriggers(NoEditTriggers);
  setTabKeyNavigation(false);
  setShowGrid(false);
  setWordWrap(false);
  setCornerButtonEnabled(false);
  setHorizontalScrollMode(ScrollPerPixel);
  setVerticalScrollMode(ScrollPerPixel);
  setUpHeader();
  applyStyle();
  reloadPalette();
  connect(&rows_, &QAbstractItemModel::modelReset, this, [this] {
    restoreSelection();
    showSortIndicator();
  });
}

void ReviewTableView::reloadPalette() {
  setPalette(tablePalette(QGuiApplication::palette()));
  viewport()->update();
}

void ReviewTableView::applyStyle() {
  QHeaderView* side = verticalHeader();
  side->hide();
  side->setSectionResizeMode(QHeaderView::Fixed);
  side->setMinimumSectionSize(0);
  side->setDefaultSectionSize(fontMetrics().height() + 8);
}

void ReviewTableView::changeEvent(QEvent* event) {
  QTableView::changeEvent(event);
  if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) applyStyle();
}

void ReviewTableView::setUpHeader() {
  auto* header = new TitleHeader(this);
  setHorizontalHeader(header);
  header->setSectionsMovable(true);
  header->setFirstSectionMovable(false);
  header->setSectionsClickable(true);
  header->setHighlightSections(false);
  header->setContextMenuPolicy(Qt::CustomContextMenu);
  header->setAccessibleName(tr("Columns"));
  resetColumns();
  connect(header, &QHeaderView::sectionClicked, this, &ReviewTableView::clickHeader);
  connect(header, &QHeaderView::sectionMoved, this,
          [this](int, int from, int to) { guardMove(from, to); });
  connect(header, &QWidget::customContextMenuRequested, this, [this, header](const QPoint& at) {
    QMenu* menu = makeColumnMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->popup(header->mapToGlobal(at));
  });
}

void ReviewTableView::resetColumns() {
  QHeaderView* header = horizontalHeader();
  const auto columns = tableColumns();
  for (int i = 0; i < static_cast<int>(columns.size()); ++i) {
    const TableColumn& column = columns[static_cast<std::size_t>(i)];
    if (header->visualIndex(i) != i) header->moveSection(header->visualIndex(i), i);
    header->setSectionHidden(i, !column.visible);
    header->resizeSection(
        i, i == 0 ? fontMetrics().height() * 3 + 12 : static_cast<int>(column.width));
  }
  showSortIndicator();
}

QByteArray ReviewTableView::columnState() const { return horizontalHeader()->saveState(); }

void ReviewTableView::restoreColumnState(const QByteArray& state) {
  QHeaderView* header = horizontalHeader();
  if (state.isEmpty() || !header->restoreState(state)) return;
  // Of a version with other columns: nothing fits any more.
  if (header->count() != rows_.columnCount() || header->visualIndex(0) != 0) resetColumns();
  header->setSectionHidden(0, false);
  showSortIndicator();
}

void ReviewTableView::setColumnShown(int column, bool shown) {
  if (column > 0) horizontalHeader()->setSectionHidden(column, !shown);
}

QMenu* ReviewTableView::makeColumnMenu(QWidget* parent) {
  auto* menu = new QMenu(parent);
  for (int i = 1; i < rows_.columnCount(); ++i) {
    QAction* action =
        menu->addAction(rows_.headerData(i, Qt::Horizontal, Qt::DisplayRole).toString());
    action->setCheckable(true);
    action->setChecked(!horizontalHeader()->isSectionHidden(i));
    connect(action, &QAction::toggled, this, [this, i](bool shown) { setColumnShown(i, shown); });
  }
  menu->addSeparator();
  connect(menu->addAction(tr("&Reset Columns")), &QAction::triggered, this,
          &ReviewTableView::resetColumns);
  return menu;
}

void ReviewTableView::guardMove(int from, int to) {
  if (restoring_ || delegate_.shouldReorderColumn(from, to)) return;
  // The header does not ask beforehand.
  restoring_ = true;
  horizontalHeader()->moveSection(to, from);
  restoring_ = false;
}

void ReviewTableView::clickHeader(int column) {
  const std::string_view identifier = tableColumns()[static_cast<std::size_t>(column)].identifier;
  whenIdle_([this, identifier] { clickColumnHeader(delegate_, rows_.controller(), identifier); });
  showSortIndicator();
}

void ReviewTableView::showSortIndicator() {
  QHeaderView* header = horizontalHeader();
  const auto& order = rows_.controller().sortOrder();
  const TableColumn* column = order.empty() ? nullptr : tableColumn(order.front().key);
  header->setSortIndicatorShown(column != nullptr);
  if (column)
    header->setSortIndicator(static_cast<int>(column - tableColumns().data()),
                             order.front().ascending ? Qt::AscendingOrder : Qt::DescendingOrder);
}

bool ReviewTableView::allowsSelection(const QEvent& event) const {
  TableEvent asked{kindOf(event), -1};
  if (event.isPointerEvent()) {
    const auto& pointer = static_cast<const QSinglePointEvent&>(event);
    const int column = columnAt(static_cast<int>(pointer.position().x()));
    if (column >= 0) asked.columnUnderPointer = horizontalHeader()->visualIndex(column);
  }
  return delegate_.selectionShouldChangeInTableView(asked);
}

void ReviewTableView::mousePressEvent(QMouseEvent* event) {
  pressRefused_ = !allowsSelection(*event);
  QTableView::mousePressEvent(event);
}

QItemSelectionModel::SelectionFlags ReviewTableView::selectionCommand(const QModelIndex& index,
                                                                      const QEvent* event) const {
  if (event) {
    // A drag and a release belong to their press. Left to itself, the toolkit would make up at the
    // release for what it was not allowed at the press.
    const bool followsPress =
        event->type() == QEvent::MouseMove || event->type() == QEvent::MouseButtonRelease;
    if (followsPress ? pressRefused_ : !allowsSelection(*event))
      return QItemSelectionModel::NoUpdate;
  }
  return QTableView::selectionCommand(index, event);
}

std::vector<int> ReviewTableView::selectedPositions() const {
  std::vector<int> positions;
  for (const QItemSelectionRange& range : selectionModel()->selection())
    for (int row = range.top(); row <= range.bottom(); ++row) positions.push_back(row);
  if (!std::is_sorted(positions.begin(), positions.end()))
    std::sort(positions.begin(), positions.end());
  positions.erase(std::unique(positions.begin(), positions.end()), positions.end());
  return positions;
}

std::vector<std::uint32_t> ReviewTableView::selectedRows() const {
  std::vector<std::uint32_t> rows;
  for (const int position : selectedPositions()) rows.push_back(rows_.contentRow(position));
  return rows;
}

std::optional<int> ReviewTableView::commandRow() const {
  const QItemSelectionModel* selection = selectionModel();
  if (!selection->hasSelection()) return std::nullopt;
  if (const QModelIndex current = currentIndex(); selection->isSelected(current))
    return current.row();
  int first = rows_.rowCount();
  for (const QItemSelectionRange& range : selection->selection())
    first = std::min(first, range.top());
  return first;
}

void ReviewTableView::selectionChanged(const QItemSelection& selected, const QItemSelection& gone) {
  QTableView::selectionChanged(selected, gone);
  if (restoring_) return;
  std::vector<std::size_t> positions;
  for (const int row : selectedPositions()) positions.push_back(rows_.arrangedRow(row));
  rows_.controller().setSelection(positions);
  Q_EMIT tracksSelected();
}

void ReviewTableView::restoreSelection() {
  QItemSelection selection;
  int first = -1;
  int last = -1;
  std::vector<std::size_t> seen;
  const auto addRun = [&] {
    if (first >= 0)
      selection.select(rows_.index(first, 0), rows_.index(last, rows_.columnCount() - 1));
  };
  for (const std::size_t position : rows_.controller().selection()) {
    const int row = rows_.rowOfArranged(position);
    if (row < 0) continue;
    seen.push_back(position);
    if (row != last + 1 || first < 0) {
      addRun();
      first = row;
    }
    last = row;
  }
  addRun();
  // What the filter hides is not selected any more.
  if (!rows_.isFiltering() && seen.size() < rows_.controller().selectedCount())
    rows_.controller().setSelection(seen);
  restoring_ = true;
  selectionModel()->select(selection, QItemSelectionModel::ClearAndSelect);
  restoring_ = false;
  if (!selection.isEmpty()) {
    const int shown = selection.first().top();
    selectionModel()->setCurrentIndex(rows_.index(shown, 1), QItemSelectionModel::NoUpdate);
    TableGeometry place = geometry();
    place.selectedRow = static_cast<std::size_t>(shown);
    TextSorter::scrollToCenter(&place);
    // The column whose header was clicked stays in sight.
    verticalScrollBar()->setValue(static_cast<int>(place.visibleOrigin.y));
  }
  Q_EMIT tracksSelected();
}

TableGeometry ReviewTableView::geometry() const {
  TableGeometry geometry;
  geometry.rows = static_cast<std::size_t>(rows_.rowCount());
  geometry.rowHeight = verticalHeader()->defaultSectionSize();
  geometry.width = horizontalHeader()->length();
  geometry.visibleSize = {static_cast<double>(viewport()->width()),
                          static_cast<double>(viewport()->height())};
  geometry.visibleOrigin = {static_cast<double>(horizontalScrollBar()->value()),
                            static_cast<double>(verticalScrollBar()->value())};
  return geometry;
}

void ReviewTableView::selectInMiddle(int row) {
  if (row < 0) return;
  auto& tables = process().state<ResultsTableReferences>();
  const bool upper = table_ == ReviewTable::upper;
  TableGeometry& shown = upper ? tables.maxTableView : tables.minTableView;
  shown = geometry();
  TextSorter::selectInTable(static_cast<std::size_t>(row), upper);
  if (!shown.selectedRow) return;
  selectionModel()->setCurrentIndex(
      rows_.index(row, 1), QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
  horizontalScrollBar()->setValue(static_cast<int>(shown.visibleOrigin.x));
  verticalScrollBar()->setValue(static_cast<int>(shown.visibleOrigin.y));
}

void ReviewTableView::reloadFlags() {
  if (rows_.rowCount() == 0) return;
  const int first = std::max(rowAt(0), 0);
  const int last = rowAt(viewport()->height() - 1);
  rows_.flagsChanged(first, last < 0 ? rows_.rowCount() - 1 : last);
}

void ReviewTableView::toggleTicks() {
  std::vector<int> positions = selectedPositions();
  if (positions.empty() && currentIndex().isValid()) positions.push_back(currentIndex().row());
  if (!positions.empty()) rows_.setTicks(positions, !rows_.track(positions.front()).tCheckbox);
}

void ReviewTableView::keyPressEvent(QKeyEvent* event) {
  const bool plain = event->modifiers() == Qt::NoModifier;
  if (plain && event->key() == Qt::Key_Space) {
    toggleTicks();
  } else if (plain && event->key() == Qt::Key_K) {
    if (const auto row = commandRow()) Q_EMIT makeOnlyKeeperRequested(rows_.contentRow(*row));
  } else {
    QTableView::keyPressEvent(event);
  }
}

void ReviewTableView::contextMenuEvent(QContextMenuEvent* event) {
  QPoint global = event->globalPos();
  if (event->reason() == QContextMenuEvent::Keyboard) {
    const auto row = commandRow();
    const int y = row ? rowViewportPosition(*row) + rowHeight(*row) : 0;
    global = viewport()->mapToGlobal(QPoint(40, std::clamp(y, 0, viewport()->height())));
  }
  if (selectionModel()->hasSelection()) Q_EMIT contextMenuRequested(global);
}

}  // namespace kestrel
