#include "ui/qt/review_table_view.h"

#include <QAccessible>
#include <QContextMenuEvent>
#include <QGuiApplication>
#include <QHeaderView>
#include <QItemSelectionModel>
#include <QKeyEvent>
#include <QMenu>
#include <QMouseEvent>
#include <QPainter>
#include <QScrollBar>
#include <algorithm>
#include <array>
#include <unordered_map>

#include "ui/process.h"
#include "ui/qt/review_table_access.h"
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

constexpr int plainRow = 28, rowWithCover = 40;  // pixels
constexpr int markColumn = 72, markIndent = 16;
constexpr int titleRoom = 32;
constexpr int leastName = 144, leastYielding = 80;
// What column states begin with: whether the user has set widths.
constexpr char fittingState = 'F', userState = 'U';

}  // namespace

ReviewTableView::ReviewTableView(ResultTableModel& rows, const ReviewTableDelegate& delegate,
                                 ReviewTable table, SortBy sortBy)
    : rows_(rows), delegate_(delegate), table_(table), sortBy_(std::move(sortBy)) {
  makeReviewTablesAccessible();
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
  const int least = covers_ ? rowWithCover : plainRow;
  side->setDefaultSectionSize(std::max(least, fontMetrics().height() + 8));
}

void ReviewTableView::setCovers(CoverSource* covers) {
  covers_ = covers;
  applyStyle();
}

void ReviewTableView::changeEvent(QEvent* event) {
  QTableView::changeEvent(event);
  if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) applyStyle();
}

void ReviewTableView::setUpHeader() {
  auto* header = new TitleHeader(this);
  setHorizontalHeader(header);
  header->setIndent(markIndent);
  header->setMinimumHeight(32);
  header->setSectionsMovable(true);
  header->setFirstSectionMovable(false);
  header->setSectionsClickable(true);
  header->setHighlightSections(false);
  // Headings show no selection, and to know of it Qt would look at every selected row for each.
  header->setSelectionModel(new QItemSelectionModel(&rows_, header));
  header->setContextMenuPolicy(Qt::CustomContextMenu);
  header->setAccessibleName(tr("Columns"));
  resetColumns();
  connect(header, &QHeaderView::sectionClicked, this, &ReviewTableView::clickHeader);
  connect(header, &QHeaderView::sectionResized, this, [this] {
    // The user's own widths stay.
    if (!restoring_ && QGuiApplication::mouseButtons() != Qt::NoButton) fitsName_ = false;
  });
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
    header->resizeSection(i, widthWithTitle(i));
  }
  fitsName_ = true;
  fitName();
  showSortIndicator();
}

int ReviewTableView::widthWithTitle(int column) const {
  // With the room around the title and for the arrow.
  const QString title = rows_.headerData(column, Qt::Horizontal, Qt::DisplayRole).toString();
  const int least = horizontalHeader()->fontMetrics().horizontalAdvance(title) + titleRoom;
  const auto width = static_cast<int>(tableColumns()[static_cast<std::size_t>(column)].width);
  return std::max(least, column == 0 ? markColumn : width);
}

void ReviewTableView::fitName() {
  if (!fitsName_) return;
  QHeaderView* header = horizontalHeader();
  const auto columns = tableColumns();
  // Names, artists and albums share what the others leave, so that none is cut while another has
  // room to spare. Where that is too little, titles of the others are cut before the last column
  // goes out of sight.
  struct Sharing {
    int column, share, least;
  };
  std::vector<Sharing> sharing;
  int room = viewport()->width(), shares = 0, least = 0;
  std::vector<int> others;
  for (int i = 0; i < static_cast<int>(columns.size()); ++i) {
    const auto key = columns[static_cast<std::size_t>(i)].key;
    if (header->isSectionHidden(i)) continue;
    if (key == TrackKey::tName)
      sharing.push_back({i, 7, leastName});
    else if (key == TrackKey::tArtist || key == TrackKey::tAlbum)
      sharing.push_back({i, 4, leastYielding});
    else
      others.push_back(i);
    if (!others.empty() && others.back() == i) {
      room -= widthWithTitle(i);
      continue;
    }
    shares += sharing.back().share;
    least += sharing.back().least;
  }
  for (const int column : others) {
    const int wished = widthWithTitle(column);
    const auto plain = static_cast<int>(columns[static_cast<std::size_t>(column)].width);
    const int spared = column == 0 ? 0 : std::clamp(least - room, 0, std::max(wished - plain, 0));
    header->resizeSection(column, wished - spared);
    room += spared;
  }
  for (const Sharing& one : sharing) {
    const int width = std::max(room * one.share / shares, one.least);
    header->resizeSection(one.column, width);
    room -= width;
    shares -= one.share;
  }
}

void ReviewTableView::resizeEvent(QResizeEvent* event) {
  QTableView::resizeEvent(event);
  fitName();
}

QByteArray ReviewTableView::columnState() const {
  return QByteArray(1, fitsName_ ? fittingState : userState) + horizontalHeader()->saveState();
}

void ReviewTableView::restoreColumnState(const QByteArray& state) {
  QHeaderView* header = horizontalHeader();
  if (state.isEmpty()) return;
  // The columns of an earlier version were laid out for another table.
  if (state[0] != fittingState && state[0] != userState) return;
  restoring_ = true;
  const bool restored = header->restoreState(state.mid(1));
  restoring_ = false;
  if (!restored) return;
  // Of a version with other columns: nothing fits any more.
  if (header->count() != rows_.columnCount() || header->visualIndex(0) != 0) resetColumns();
  header->setSectionHidden(0, false);
  fitsName_ = state[0] == fittingState;
  fitName();
  showSortIndicator();
}

void ReviewTableView::setColumnShown(int column, bool shown) {
  if (column <= 0) return;
  horizontalHeader()->setSectionHidden(column, !shown);
  fitName();
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
  sortBy_(identifier);
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
  const QPoint at = event->position().toPoint();
  const int row = rowAt(at.y());
  const int fromStart = isRightToLeft() ? viewport()->width() - 1 - at.x() : at.x();
  if (event->button() == Qt::LeftButton && fromStart < foldPlace && rows_.isHeading(row)) {
    pressRefused_ = true;
    return fold(row, !rows_.isFolded(row));
  }
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

std::vector<std::pair<int, int>> ReviewTableView::selectedSpans() const {
  std::vector<std::pair<int, int>> spans;
  for (const QItemSelectionRange& range : selectionModel()->selection())
    spans.emplace_back(range.top(), range.bottom());
  return spans;
}

std::vector<std::uint32_t> ReviewTableView::selectedRows() const {
  const auto& controller = rows_.controller();
  const auto arranged = std::as_const(controller).arrangedRows();
  const ResultTrack* content = controller.content().data();
  std::vector<std::uint32_t> rows;
  rows.reserve(selectedCount_);
  for (const std::size_t position : rows_.arrangedRows(selectedSpans()))
    rows.push_back(
        static_cast<std::uint32_t>(&arranged[static_cast<std::ptrdiff_t>(position)] - content));
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
  // The table's own would speak of cells, of which assistive technology sees none.
  QAbstractItemView::selectionChanged(selected, gone);
  if (restoring_) return;
  const std::vector<std::size_t> positions = rows_.arrangedRows(selectedSpans());
  selectedCount_ = positions.size();
  rows_.controller().setSelection(positions);
  Q_EMIT tracksSelected();
}

void ReviewTableView::currentChanged(const QModelIndex& current, const QModelIndex& previous) {
  QAbstractItemView::currentChanged(current, previous);
  if (!QAccessible::isActive() || !hasFocus() || !current.isValid()) return;
  if (QAccessibleInterface* row = QAccessible::queryAccessibleInterface(this)->focusChild()) {
    QAccessibleEvent event(row, QAccessible::Focus);
    QAccessible::updateAccessibility(&event);
  }
}

void ReviewTableView::restoreSelection() {
  std::vector<int> places;
  std::vector<std::size_t> seen;
  for (const std::size_t position : rows_.controller().selection()) {
    const int row = rows_.rowOrHeadingOfArranged(position);
    if (row < 0) continue;
    seen.push_back(position);
    places.push_back(row);
  }
  // Groups may stand in another order than their tracks.
  if (!std::is_sorted(places.begin(), places.end())) std::sort(places.begin(), places.end());
  QItemSelection selection;
  for (std::size_t i = 0; i < places.size();) {
    const int first = places[i];
    int last = first;
    for (; i < places.size() && places[i] <= last + 1; ++i) last = places[i];
    selection.append({rows_.index(first, 0), rows_.index(last, rows_.columnCount() - 1)});
  }
  // What the filter hides is not selected any more.
  if (!rows_.isFiltering() && seen.size() < rows_.controller().selectedCount())
    rows_.controller().setSelection(seen);
  restoring_ = true;
  selectionModel()->select(selection, QItemSelectionModel::ClearAndSelect);
  restoring_ = false;
  selectedCount_ = rows_.controller().selectedCount();
  if (!selection.isEmpty()) {
    const int shown = selection.first().top();
    selectionModel()->setCurrentIndex(rows_.index(shown, shownColumn()),
                                      QItemSelectionModel::NoUpdate);
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
  // How far it can be scrolled is reckoned later otherwise.
  executeDelayedItemsLayout();
  updateGeometries();
  auto& tables = process().state<ResultsTableReferences>();
  const bool upper = table_ == ReviewTable::upper;
  TableGeometry& shown = upper ? tables.maxTableView : tables.minTableView;
  shown = geometry();
  TextSorter::selectInTable(static_cast<std::size_t>(row), upper);
  if (!shown.selectedRow) return;
  selectionModel()->setCurrentIndex(
      rows_.index(row, shownColumn()),
      QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
  horizontalScrollBar()->setValue(static_cast<int>(shown.visibleOrigin.x));
  verticalScrollBar()->setValue(static_cast<int>(shown.visibleOrigin.y));
}

void ReviewTableView::reloadFlags() {
  if (rows_.rowCount() == 0) return;
  const int first = std::max(rowAt(0), 0);
  const int last = rowAt(viewport()->height() - 1);
  rows_.flagsChanged(first, last < 0 ? rows_.rowCount() - 1 : last);
}

bool ReviewTableView::isCurrentRow(int row) const {
  return hasFocus() && currentIndex().isValid() && currentIndex().row() == row;
}

int ReviewTableView::shownColumn() const {
  for (int column = 1; column < rows_.columnCount(); ++column)
    if (!horizontalHeader()->isSectionHidden(column)) return column;
  return 0;
}

bool ReviewTableView::isAtHeading() const {
  const auto spans = selectedSpans();
  return currentIndex().isValid() && rows_.isHeading(currentIndex().row()) &&
         (spans.empty() || (spans.size() == 1 && spans.front().first == spans.front().second));
}

void ReviewTableView::toggleTicks() {
  if (selectedCount_ > 1) return tickOnePerGroup();
  const auto row = commandRow();
  const int at = row ? *row : currentIndex().isValid() ? currentIndex().row() : -1;
  if (at >= 0 && !rows_.isHeading(at)) rows_.setTicks(std::array{at}, !rows_.track(at).tCheckbox);
}

void ReviewTableView::tickOnePerGroup() {
  std::vector<std::uint32_t> ones;
  std::unordered_map<std::int32_t, std::size_t> met;
  const auto content = rows_.controller().content();
  for (const std::uint32_t row : selectedRows()) {
    const auto [one, isNew] = met.try_emplace(content[row].tGroupID, ones.size());
    if (isNew)
      ones.push_back(row);
    else if (content[row].tCheckbox && !content[ones[one->second]].tCheckbox)
      ones[one->second] = row;
  }
  Q_EMIT tickOnePerGroupRequested(ones);
}

void ReviewTableView::fold(int row, bool folded) {
  const int heading = rows_.headingOf(row);
  if (heading < 0 || rows_.isFolded(heading) == folded) return;
  const int current = currentIndex().row();
  const bool inside = current > heading && rows_.headingOf(current) == heading;
  if (folded && inside)
    selectionModel()->setCurrentIndex(
        rows_.index(heading, shownColumn()),
        QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
  rows_.setFolded(heading, folded);
  viewport()->update();
}

bool ReviewTableView::foldByKey(bool left) {
  const int row = currentIndex().isValid() ? currentIndex().row() : -1;
  const int heading = rows_.headingOf(row);
  if (heading < 0) return false;
  if (row != heading) {
    if (left) fold(row, true);
    return left;
  }
  if (rows_.isFolded(heading) != left) {
    fold(heading, left);
  } else if (!left) {
    selectionModel()->setCurrentIndex(
        rows_.index(heading + 1, shownColumn()),
        QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
  }
  return true;
}

void ReviewTableView::keyPressEvent(QKeyEvent* event) {
  const bool plain = !(event->modifiers() & ~Qt::KeypadModifier);
  const int key = event->key();
  const bool isLeft = key == (isRightToLeft() ? Qt::Key_Right : Qt::Key_Left);
  const bool folds = key == Qt::Key_Space || key == Qt::Key_Return || key == Qt::Key_Enter;
  if (plain && folds && isAtHeading()) {
    fold(currentIndex().row(), !rows_.isFolded(currentIndex().row()));
  } else if (plain && key == Qt::Key_Space) {
    toggleTicks();
  } else if (plain && key == Qt::Key_K) {
    if (const auto row = commandRow(); row && !rows_.isHeading(*row))
      Q_EMIT makeOnlyKeeperRequested(rows_.contentRow(*row));
  } else if (plain && key == Qt::Key_P) {
    if (const auto row = commandRow()) Q_EMIT playRequested(rows_.contentRow(*row));
  } else if (plain && (key == Qt::Key_Left || key == Qt::Key_Right) && foldByKey(isLeft)) {
    event->accept();
  } else {
    QTableView::keyPressEvent(event);
  }
}

void ReviewTableView::mouseDoubleClickEvent(QMouseEvent* event) {
  const int row = rowAt(event->position().toPoint().y());
  if (event->button() == Qt::LeftButton && rows_.isHeading(row)) {
    fold(row, !rows_.isFolded(row));
    return;
  }
  QTableView::mouseDoubleClickEvent(event);
  const int column = columnAt(event->position().toPoint().x());
  if (event->button() == Qt::LeftButton && row >= 0 && column > 0)
    Q_EMIT playRequested(rows_.contentRow(row));
}

void ReviewTableView::scrollContentsBy(int dx, int dy) {
  QTableView::scrollContentsBy(dx, dy);
  // Headings do not move sideways.
  if (dx != 0 && rows_.isGrouped()) viewport()->update();
}

void ReviewTableView::paintEvent(QPaintEvent* event) {
  QTableView::paintEvent(event);
  if (!rows_.isGrouped() || rows_.rowCount() == 0) return;
  QPainter painter(viewport());
  const QRect seen = event->rect();
  const int last = rowAt(seen.bottom());
  const int end = last < 0 ? rows_.rowCount() - 1 : last;
  for (int row = std::max(rowAt(seen.top()), 0); row <= end; ++row) {
    if (!rows_.isHeading(row)) continue;
    const QRect place(0, rowViewportPosition(row), viewport()->width(), rowHeight(row));
    paintGroupHeading(painter, place, rows_.heading(row), rows_.isFolded(row),
                      selectionModel()->isSelected(rows_.index(row, shownColumn())),
                      isCurrentRow(row), isRightToLeft(), font(), QGuiApplication::palette());
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
