#include "ui/qt/playlist_widgets.h"

#include <QApplication>
#include <QHeaderView>
#include <QKeyEvent>
#include <QPainter>
#include <QStandardItemModel>
#include <QStyleOptionComboBox>
#include <QStylePainter>
#include <QStyledItemDelegate>
#include <algorithm>
#include <unordered_set>

#include "resources/artwork.h"
#include "ui/qt/bindings.h"
#include "ui/qt/table_painting.h"
#include "ui/qt/text.h"

namespace kestrel {
namespace {

/// What the artwork is drawn at before it is put onto a canvas.
constexpr int iconPoints = 16;

constexpr int recordRole = Qt::UserRole + 1;

QPixmap drawn(const QImage& image, const IconDrawing& drawing, qreal ratio) {
  QPixmap pixmap((QSizeF(drawing.canvas.width, drawing.canvas.height) * ratio).toSize());
  pixmap.setDevicePixelRatio(ratio);
  pixmap.fill(Qt::transparent);
  if (drawing.source.size.width <= 0 || drawing.source.size.height <= 0) return pixmap;
  QPainter painter(&pixmap);
  painter.setRenderHint(QPainter::SmoothPixmapTransform);
  painter.setCompositionMode(QPainter::CompositionMode_Source);
  // The toolkit cuts source rectangles off at the image's edges, so scale the whole image instead.
  const double x = drawing.canvas.width / drawing.source.size.width;
  const double y = drawing.canvas.height / drawing.source.size.height;
  const QSizeF size = image.deviceIndependentSize();
  painter.drawImage(QRectF(-drawing.source.origin.x * x, -drawing.source.origin.y * y,
                           size.width() * x, size.height() * y),
                    image);
  return pixmap;
}

std::string idOf(const QTreeWidgetItem* item) {
  return fromQt(item->data(0, recordRole).toString());
}

/// Begins each title where its icon's canvas ends, which is what indents it.
class IndentingDelegate final : public QStyledItemDelegate {
 public:
  using QStyledItemDelegate::QStyledItemDelegate;

 protected:
  void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override {
    QStyledItemDelegate::initStyleOption(option, index);
    const QList<QSize> sizes = option->icon.availableSizes();
    if (!sizes.isEmpty()) option->decorationSize = option->icon.actualSize(sizes.first());
  }
};

}  // namespace

QPixmap playlistPixmap(const PopupIcon& icon, qreal ratio) {
  if (icon.name.empty()) return {};
  const QImage image = playlistIcon(toQt(icon.name), iconPoints, ratio);
  return drawn(
      image, KSPlaylistController::resizeImage({iconPoints, iconPoints}, {icon.width, icon.height}),
      ratio);
}

PlaylistPopupBox::PlaylistPopupBox(PlaylistPopup& menu, Log& log) : menu_(menu), log_(log) {
  setSizeAdjustPolicy(AdjustToMinimumContentsLengthWithIcon);
  setMinimumContentsLength(18);
  setMaxVisibleItems(30);
  setItemDelegate(new IndentingDelegate(this));
  observe(this, menu_.observers, [this] { fill(); });
  connect(this, &QComboBox::activated, this, [this](int index) {
    menu_.selectItem(static_cast<std::size_t>(index));
    Q_EMIT playlistChosen();
  });
  fill();
}

void PlaylistPopupBox::changeEvent(QEvent* event) {
  QComboBox::changeEvent(event);
  if (event->type() == QEvent::PaletteChange) fill();
}

void PlaylistPopupBox::fill() {
  const QSignalBlocker blocker(this);
  const auto& items = menu_.items();
  if (static_cast<std::size_t>(count()) != items.size() || !items.empty()) clear();
  int widest = iconPoints;
  for (std::size_t i = 0; i < items.size(); ++i) {
    const auto& item = items[i];
    if (item.isSeparator) {
      insertSeparator(static_cast<int>(i));
      continue;
    }
    widest = std::max(widest, static_cast<int>(item.icon.width));
    addItem(QIcon(playlistPixmap(item.icon, devicePixelRatioF())),
            item.representedObject ? toQt(shownName(*item.representedObject)) : toQt(item.title));
    if (!item.keyEquivalent.empty()) {
      const QString key = QStringLiteral("Ctrl+Shift+") + toQt(item.keyEquivalent).toUpper();
      setItemData(static_cast<int>(i), key, Qt::ToolTipRole);
    }
  }
  setIconSize(QSize(widest, iconPoints + 1));
  setCurrentIndex(menu_.selectedIndex() ? static_cast<int>(*menu_.selectedIndex()) : -1);
  updateGeometry();
}

void PlaylistPopupBox::paintEvent(QPaintEvent*) {
  QStylePainter painter(this);
  QStyleOptionComboBox option;
  initStyleOption(&option);
  painter.drawComplexControl(QStyle::CC_ComboBox, option);
  if (const auto selected = menu_.selectedIndex()) {
    const auto& item = menu_.items()[*selected];
    Drawn shown{item.icon,
                item.representedObject ? item.title : "(null)",
                {{double(x()), double(y())}, {double(width()), double(height())}}};
    // Painting the same again is nothing to tell the log.
    if (!drawn_ || !(*drawn_ == shown)) {
      bare_ = KSPopupButtonCell::drawTitle(shown.icon.name, {shown.icon.width, shown.icon.height},
                                           shown.title, shown.frame, log_);
      drawn_ = std::move(shown);
    }
    const QPixmap icon = playlistPixmap(item.icon, devicePixelRatioF());
    option.currentIcon = QIcon(drawn(icon.toImage(), bare_, devicePixelRatioF()));
    option.iconSize = QSizeF(bare_.canvas.width, bare_.canvas.height).toSize();
  }
  painter.drawControl(QStyle::CE_ComboBoxLabel, option);
}

PlaylistOutlineView::PlaylistOutlineView(OutlineModel<PlaylistRecord>& outline)
    : outline_(outline) {
  setHeader(new TitleHeader(this));
  setColumnCount(2);
  setHeaderLabels({tr("Playlist"), tr("Tracks")});
  header()->setStretchLastSection(false);
  header()->setSectionResizeMode(0, QHeaderView::Stretch);
  header()->setSectionResizeMode(1, QHeaderView::Fixed);
  header()->resizeSection(1, std::max(fontMetrics().horizontalAdvance(headerItem()->text(1)),
                                      fontMetrics().horizontalAdvance(QStringLiteral("999,999"))) +
                                 20);
  setStyleSheet(QStringLiteral("QTreeView::item { padding: 4px 6px 4px 0 }"));
  headerItem()->setTextAlignment(1, Qt::AlignRight | Qt::AlignVCenter);
  header()->setMinimumHeight(32);
  setUniformRowHeights(true);
  setFrameShape(QFrame::NoFrame);
  setAccessibleName(tr("Playlists"));
  observe(this, outline_.observers, [this] { fill(); });
  fill();
}

std::string PlaylistOutlineView::current() const {
  return currentItem() ? idOf(currentItem()) : std::string();
}

std::string PlaylistOutlineView::at(const QPoint& place) const {
  const QTreeWidgetItem* item = itemAt(place);
  return item ? idOf(item) : std::string();
}

void PlaylistOutlineView::choose(const QTreeWidgetItem* item) { Q_EMIT playlistChosen(idOf(item)); }

void PlaylistOutlineView::mouseReleaseEvent(QMouseEvent* event) {
  QTreeWidget::mouseReleaseEvent(event);
  // Not only what was pressed: moving the pressed mouse on makes the next row current. Beside the
  // rectangle is the arrow of a folder.
  const QModelIndex at = indexAt(event->position().toPoint());
  if (at.isValid() && visualRect(at).contains(event->position().toPoint()) &&
      at.siblingAtColumn(0) == currentIndex().siblingAtColumn(0))
    choose(currentItem());
}

void PlaylistOutlineView::keyPressEvent(QKeyEvent* event) {
  const QTreeWidgetItem* before = currentItem();
  QTreeWidget::keyPressEvent(event);
  const QTreeWidgetItem* now = currentItem();
  const bool takes = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter ||
                     event->key() == Qt::Key_Space;
  if (now && (takes || now != before)) choose(now);
}

void PlaylistOutlineView::fill() {
  if (shown_ == outline_.contentVersion() && topLevelItemCount() > 0) return;
  shown_ = outline_.contentVersion();
  std::unordered_set<std::string> expanded;
  for (QTreeWidgetItemIterator it(this); *it; ++it)
    if ((*it)->isExpanded()) expanded.insert(idOf(*it));
  clear();
  const auto add = [&](const auto& self, const std::vector<OutlineNode<PlaylistRecord>>& nodes,
                       QTreeWidgetItem* parent) -> void {
    for (const auto& node : nodes) {
      const PlaylistRecord& record = *node.record;
      auto* item = parent ? new QTreeWidgetItem(parent) : new QTreeWidgetItem(this);
      item->setText(0, toQt(record.pnom));
      item->setToolTip(0, toQt(record.pnom));
      item->setText(1, locale().toString(qlonglong(record.itemCount)));
      item->setTextAlignment(1, Qt::AlignRight | Qt::AlignVCenter);
      item->setIcon(0, QIcon(QPixmap::fromImage(playlistIcon(toQt(record.playlistIcon), iconPoints,
                                                             devicePixelRatioF()))));
      item->setData(0, recordRole, toQt(record.decpid));
      if (node.Child) self(self, *node.Child, item);
      if (expanded.contains(record.decpid)) item->setExpanded(true);
    }
  };
  add(add, outline_.content(), nullptr);
  showPlaylist(std::string(selected_));
}

bool PlaylistOutlineView::showPlaylist(const std::string& decpid) {
  selected_ = decpid;
  QTreeWidgetItem* found = nullptr;
  for (QTreeWidgetItemIterator it(this); *it && !found; ++it)
    if (idOf(*it) == decpid) found = *it;
  setCurrentItem(found);
  if (found) scrollToItem(found);
  return found;
}

}  // namespace kestrel
