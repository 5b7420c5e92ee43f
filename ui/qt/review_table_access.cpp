#include "ui/qt/review_table_access.h"

#include <QAccessibleWidget>
#include <QHeaderView>
#include <QPointer>
#include <QScrollBar>
#include <array>
#include <unordered_map>

#include "ui/qt/review_table_view.h"

namespace kestrel {
namespace {

/// A heading, with the copies of its group below it as far as they are unfolded, or a copy.
class RowAccess final : public QAccessibleInterface, public QAccessibleActionInterface {
 public:
  RowAccess(ReviewTableView* view, int row) : view_(view), row_(row) {}

  [[nodiscard]] bool isValid() const override { return view_ && row_ < view_->rows().rowCount(); }
  [[nodiscard]] QObject* object() const override { return nullptr; }
  [[nodiscard]] QWindow* window() const override {
    return view_ ? view_->window()->windowHandle() : nullptr;
  }
  [[nodiscard]] QAccessible::Role role() const override { return QAccessible::TreeItem; }
  [[nodiscard]] QRect rect() const override {
    if (!isValid()) return {};
    const QRect shown(0, view_->rowViewportPosition(row_), view_->viewport()->width(),
                      view_->rowHeight(row_));
    return {view_->viewport()->mapToGlobal(shown.topLeft()), shown.size()};
  }

  [[nodiscard]] QAccessibleInterface* parent() const override;
  [[nodiscard]] QAccessibleInterface* child(int index) const override;
  [[nodiscard]] int childCount() const override {
    return isValid() && isHeading() ? view_->rows().unfoldedRows(row_) : 0;
  }
  [[nodiscard]] int indexOfChild(const QAccessibleInterface* child) const override {
    const auto* row = dynamic_cast<const RowAccess*>(child);
    const int index = row ? row->row_ - row_ - 1 : -1;
    return index < childCount() ? index : -1;
  }
  [[nodiscard]] QAccessibleInterface* childAt(int, int) const override { return nullptr; }

  [[nodiscard]] QString text(QAccessible::Text what) const override;
  void setText(QAccessible::Text, const QString&) override {}
  [[nodiscard]] QAccessible::State state() const override;

  void* interface_cast(QAccessible::InterfaceType type) override {
    return type == QAccessible::ActionInterface ? static_cast<QAccessibleActionInterface*>(this)
                                                : nullptr;
  }
  [[nodiscard]] QStringList actionNames() const override {
    return {isHeading() ? pressAction() : toggleAction()};
  }
  void doAction(const QString& name) override {
    if (!isValid() || !actionNames().contains(name)) return;
    ResultTableModel& rows = view_->rows();
    if (isHeading())
      rows.setFolded(row_, !rows.isFolded(row_));
    else
      rows.setTicks(std::array{row_}, !rows.track(row_).tCheckbox);
  }
  [[nodiscard]] QStringList keyBindingsForAction(const QString&) const override { return {}; }

 private:
  [[nodiscard]] bool isHeading() const { return isValid() && view_->rows().isHeading(row_); }

  QPointer<ReviewTableView> view_;
  int row_;
};

class TableAccess final : public QAccessibleWidget {
 public:
  explicit TableAccess(ReviewTableView* view) : QAccessibleWidget(view, QAccessible::Tree) {
    // Which row a number means changes with these.
    const auto forget = [this] { forgetRows(); };
    ResultTableModel* rows = &view->rows();
    links_ = {QObject::connect(rows, &QAbstractItemModel::modelReset, view, forget),
              QObject::connect(rows, &QAbstractItemModel::rowsInserted, view, forget),
              QObject::connect(rows, &QAbstractItemModel::rowsRemoved, view, forget)};
  }
  ~TableAccess() override {
    for (const auto& link : links_) QObject::disconnect(link);
    forgetRows();
  }

  [[nodiscard]] QAccessibleInterface* rowAccess(int row) const {
    if (row < 0 || row >= view().rows().rowCount()) return nullptr;
    const auto [known, isNew] = made_.try_emplace(row, 0);
    if (isNew)
      known->second = QAccessible::registerAccessibleInterface(new RowAccess(&view(), row));
    return QAccessible::accessibleInterface(known->second);
  }

  // At the first level stand the headings, or all rows where there are none.
  [[nodiscard]] int childCount() const override {
    const ResultTableModel& rows = view().rows();
    return rows.isGrouped() ? rows.groupCount() : rows.rowCount();
  }
  [[nodiscard]] QAccessibleInterface* child(int index) const override {
    if (index < 0 || index >= childCount()) return nullptr;
    return rowAccess(view().rows().isGrouped() ? view().rows().headingAt(index) : index);
  }
  [[nodiscard]] int indexOfChild(const QAccessibleInterface* child) const override {
    for (const auto& [row, id] : made_)
      if (QAccessible::accessibleInterface(id) == child)
        return view().rows().isGrouped() ? view().rows().groupPlace(row) : row;
    return -1;
  }
  [[nodiscard]] QAccessibleInterface* childAt(int x, int y) const override {
    const QPoint at = view().viewport()->mapFromGlobal(QPoint(x, y));
    return view().viewport()->rect().contains(at) ? rowAccess(view().rowAt(at.y())) : nullptr;
  }
  [[nodiscard]] QAccessibleInterface* focusChild() const override {
    const QModelIndex current = view().currentIndex();
    return view().hasFocus() && current.isValid() ? rowAccess(current.row()) : nullptr;
  }

 private:
  [[nodiscard]] ReviewTableView& view() const { return *static_cast<ReviewTableView*>(object()); }
  void forgetRows() {
    for (const auto& [row, id] : made_) QAccessible::deleteAccessibleInterface(id);
    made_.clear();
  }

  mutable std::unordered_map<int, QAccessible::Id> made_;  ///< by row, as they are asked for
  std::array<QMetaObject::Connection, 3> links_;
};

TableAccess* accessOf(ReviewTableView* view) {
  return static_cast<TableAccess*>(QAccessible::queryAccessibleInterface(view));
}

QAccessibleInterface* RowAccess::parent() const {
  if (!view_) return nullptr;
  TableAccess* table = accessOf(view_);
  const int heading = isValid() ? view_->rows().headingOf(row_) : -1;
  if (heading >= 0 && heading != row_) return table->rowAccess(heading);
  return table;
}

QAccessibleInterface* RowAccess::child(int index) const {
  if (index < 0 || index >= childCount()) return nullptr;
  return accessOf(view_)->rowAccess(row_ + 1 + index);
}

QString RowAccess::text(QAccessible::Text what) const {
  if (!isValid()) return {};
  const ResultTableModel& rows = view_->rows();
  if (what == QAccessible::Description)
    return isHeading() ? QString()
                       : rows.index(row_, 0).data(Qt::AccessibleDescriptionRole).toString();
  if (what != QAccessible::Name) return {};
  if (isHeading()) return rows.index(row_, 0).data(Qt::AccessibleTextRole).toString();
  QStringList words{rows.index(row_, 0).data(Qt::AccessibleTextRole).toString()};
  const QHeaderView* header = view_->horizontalHeader();
  for (int visual = 1; visual < header->count(); ++visual) {
    const int column = header->logicalIndex(visual);
    const QString cell = rows.index(row_, column).data(Qt::DisplayRole).toString();
    if (!header->isSectionHidden(column) && !cell.isEmpty()) words << cell;
  }
  return words.join(QStringLiteral(", ")).replace(QLatin1Char('\n'), QStringLiteral(", "));
}

QAccessible::State RowAccess::state() const {
  QAccessible::State state;
  if (!isValid()) {
    state.invalid = true;
    return state;
  }
  const ResultTableModel& rows = view_->rows();
  state.focusable = state.selectable = state.multiSelectable = true;
  state.selected = view_->selectionModel()->isSelected(rows.index(row_, 1));
  state.focused = view_->isCurrentRow(row_);
  state.active = state.focused;
  const int top = view_->rowViewportPosition(row_);
  state.offscreen = top + view_->rowHeight(row_) <= 0 || top >= view_->viewport()->height();
  if (isHeading()) {
    state.expandable = true;
    state.expanded = !rows.isFolded(row_);
    state.collapsed = rows.isFolded(row_);
  } else {
    state.checkable = true;
    state.checked = rows.track(row_).tCheckbox;
  }
  return state;
}

QAccessibleInterface* newTableAccess(const QString&, QObject* object) {
  auto* view = qobject_cast<ReviewTableView*>(object);
  return view ? new TableAccess(view) : nullptr;
}

}  // namespace

void makeReviewTablesAccessible() { QAccessible::installFactory(newTableAccess); }

}  // namespace kestrel
