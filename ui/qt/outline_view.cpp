#include "ui/qt/outline_view.h"

#include <QHeaderView>
#include <QPainter>
#include <QTimer>

#include "resources/artwork.h"
#include "ui/qt/lines_delegate.h"
#include "ui/qt/table_painting.h"

namespace kestrel {
namespace {

constexpr int outlineIconPoints = 16;

}  // namespace

OutlineView::OutlineView(const QStringList& headers) {
  setHeader(new TitleHeader(this));
  setItemDelegate(new LinesDelegate(this));
  setColumnCount(static_cast<int>(headers.size()));
  setHeaderLabels(headers);
  for (int column = 1; column < columnCount(); ++column) {
    headerItem()->setTextAlignment(column, Qt::AlignRight | Qt::AlignVCenter);
    header()->setSectionResizeMode(column, QHeaderView::ResizeToContents);
  }
  header()->setStretchLastSection(false);
  header()->setSectionResizeMode(0, QHeaderView::Stretch);
  setSelectionMode(ExtendedSelection);
  setUniformRowHeights(true);
  setAlternatingRowColors(true);
  setAllColumnsShowFocus(true);
  connect(this, &QTreeWidget::itemChanged, this, &OutlineView::tellChecks);
  connect(this, &QTreeWidget::itemSelectionChanged, this, [this] {
    if (!filling_) Q_EMIT highlightChanged();
  });
}

void OutlineView::addItem(QTreeWidgetItem* item, const Row& row) {
  item->setText(0, row.warning.isEmpty() ? row.name : QStringLiteral("⚠ ") + row.name);
  item->setToolTip(0, row.warning.isEmpty() ? row.name : row.warning);
  if (!row.warning.isEmpty())
    item->setData(0, Qt::AccessibleTextRole, tr("%1, warning: %2").arg(row.name, row.warning));
  const auto picture =
      QPixmap::fromImage(playlistIcon(row.icon, outlineIconPoints, devicePixelRatioF()));
  QIcon icon(picture);
  // In its own colours it would vanish on the highlight.
  QPixmap selected = picture;
  QPainter painter(&selected);
  painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
  painter.fillRect(selected.rect(), palette().color(QPalette::HighlightedText));
  painter.end();
  icon.addPixmap(selected, QIcon::Selected);
  item->setIcon(0, icon);
  setNumbers(item, row.numbers);
  auto flags = Qt::ItemIsEnabled | Qt::ItemIsSelectable;
  if (row.checkable || row.isFolder) flags |= Qt::ItemIsUserCheckable;
  if (row.isFolder) flags |= Qt::ItemIsAutoTristate;
  item->setFlags(flags);
  if (row.checkable && !row.isFolder)
    item->setCheckState(0, row.checked ? Qt::Checked : Qt::Unchecked);
}

void OutlineView::setNumbers(QTreeWidgetItem* item, const QStringList& numbers) {
  for (qsizetype i = 0; i < numbers.size(); ++i) {
    const int column = static_cast<int>(i) + 1;
    item->setText(column, numbers[i]);
    item->setTextAlignment(column, Qt::AlignRight | Qt::AlignVCenter);
  }
}

void OutlineView::tellChecks() {
  // Checking a folder changes all that it holds, one after the other: told once.
  if (filling_ || telling_) return;
  telling_ = true;
  QTimer::singleShot(0, this, [this] {
    telling_ = false;
    Q_EMIT checksChanged();
  });
}

std::vector<IndexPath> OutlineView::pathsWhere(
    const std::function<bool(const QTreeWidgetItem*)>& test) const {
  std::vector<IndexPath> paths;
  IndexPath path;
  const auto walk = [&](const auto& self, const QTreeWidgetItem* parent) -> void {
    for (int i = 0; i < parent->childCount(); ++i) {
      path.push_back(static_cast<std::size_t>(i));
      if (test(parent->child(i))) paths.push_back(path);
      self(self, parent->child(i));
      path.pop_back();
    }
  };
  walk(walk, invisibleRootItem());
  return paths;
}

std::vector<IndexPath> OutlineView::checkedPaths() const {
  return pathsWhere([](const QTreeWidgetItem* item) {
    return !item->flags().testFlag(Qt::ItemIsAutoTristate) && item->checkState(0) == Qt::Checked;
  });
}

std::vector<IndexPath> OutlineView::highlightedPaths() const {
  return pathsWhere([](const QTreeWidgetItem* item) { return item->isSelected(); });
}

void OutlineView::setAllChecked(bool checked) {
  for (QTreeWidgetItemIterator it(this); *it; ++it)
    if (const auto flags = (*it)->flags();
        flags.testFlag(Qt::ItemIsUserCheckable) && !flags.testFlag(Qt::ItemIsAutoTristate))
      (*it)->setCheckState(0, checked ? Qt::Checked : Qt::Unchecked);
}

void OutlineView::highlightFirstPlaylist() {
  for (QTreeWidgetItemIterator it(this); *it; ++it) {
    if ((*it)->childCount() > 0) continue;
    setCurrentItem(*it);
    setFocus();
    return;
  }
}

}  // namespace kestrel
