#include "ui/qt/result_row_painter.h"

#include <QGuiApplication>
#include <QHeaderView>
#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>
#include <algorithm>

#include "ui/qt/look.h"
#include "ui/qt/review_table_view.h"
#include "ui/qt/table_painting.h"
#include "ui/table_columns.h"

namespace kestrel {
namespace {

constexpr int cellSpace = 8;
constexpr int spaceAfterNumbers = 16;
constexpr int coverSide = 32;
constexpr int pressRoom = 6;  // around the mark

}  // namespace

ResultRowPainter::ResultRowPainter(ReviewTableView* table)
    : QStyledItemDelegate(table), table_(table) {}

void ResultRowPainter::paintCover(QPainter& painter, const QRect& place,
                                  const QModelIndex& index) const {
  const double ratio = painter.device()->devicePixelRatioF();
  const QPixmap cover =
      table_->covers()->cover(table_->rows().track(index.row()), qRound(place.width() * ratio));
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  QPainterPath frame;
  frame.addRoundedRect(place, 4, 4);
  if (cover.isNull()) {
    painter.fillPath(frame, lookColor("badgeGround", QGuiApplication::palette()));
    paintNote(painter, place);
  } else {
    painter.setClipPath(frame);
    painter.drawPixmap(place, cover);
  }
  painter.restore();
}

void ResultRowPainter::paintText(QPainter& painter, QRect place, const QStyleOptionViewItem& option,
                                 const QModelIndex& index) const {
  const QString text = index.data(Qt::DisplayRole).toString();
  if (text.isEmpty()) return;
  const auto wanted = index.data(Qt::TextAlignmentRole).value<Qt::Alignment>();
  const bool rightToLeft = option.direction == Qt::RightToLeft;
  const int after = wanted.testFlag(Qt::AlignRight) ? spaceAfterNumbers : cellSpace;
  place.adjust(rightToLeft ? after : cellSpace, 0, rightToLeft ? -cellSpace : -after, 0);
  painter.setPen(index.data(Qt::ForegroundRole).value<QColor>());
  painter.setFont(option.font);
  const auto aligned = QStyle::visualAlignment(option.direction, wanted);
  painter.drawText(place, static_cast<int>(aligned) | Qt::TextSingleLine,
                   option.fontMetrics.elidedText(text, Qt::ElideRight, place.width()));
}

void ResultRowPainter::paint(QPainter* painter, const QStyleOptionViewItem& option,
                             const QModelIndex& index) const {
  const ResultTableModel& rows = table_->rows();
  // The view draws headings over the whole width.
  if (!index.isValid() || rows.isHeading(index.row())) return;
  const QPalette palette = QGuiApplication::palette();
  const bool rightToLeft = option.direction == Qt::RightToLeft;
  const bool selected = option.state.testFlag(QStyle::State_Selected);
  const Rect bounds{{double(option.rect.x()), double(option.rect.y())},
                    {double(option.rect.width()), double(option.rect.height())}};
  painter->save();
  painter->setClipRect(option.rect, Qt::IntersectClip);
  if (const auto drawing =
          MyNSTableRowView::drawSelection(selected, SelectionHighlightStyle::regular, bounds))
    painter->fillRect(option.rect, toQt(drawing->fill, palette));
  else if (const QVariant ground = index.data(ResultTableModel::RowBackgroundRole);
           ground.isValid())
    painter->fillRect(option.rect, ground.value<QColor>());
  if (table_->isCurrentRow(index.row()) &&
      table_->horizontalHeader()->visualIndex(index.column()) == 0)
    paintCurrentRow(*painter, option.rect, rightToLeft, palette);

  const TableColumn& column = tableColumns()[static_cast<std::size_t>(index.column())];
  if (column.content == ColumnContent::checkBox) {
    paintKeepMark(*painter, option.rect, rows.keepMark(index.row()), rightToLeft, palette);
  } else if (column.content == ColumnContent::availability) {
    paintFileSymbol(*painter, option.rect, rows.fileSymbol(index.row()),
                    index.data(Qt::ForegroundRole).value<QColor>());
  } else {
    QRect place = option.rect;
    if (table_->covers() && column.key == TrackKey::tName) {
      const int left =
          rightToLeft ? place.right() + 1 - cellSpace - coverSide : place.left() + cellSpace;
      paintCover(*painter,
                 QRect(left, place.center().y() - coverSide / 2 + 1, coverSide, coverSide), index);
      constexpr int taken = coverSide + 4;
      place.adjust(rightToLeft ? 0 : taken, 0, rightToLeft ? -taken : 0, 0);
    }
    paintText(*painter, place, option, index);
  }
  painter->restore();
}

bool ResultRowPainter::editorEvent(QEvent* event, QAbstractItemModel* model,
                                   const QStyleOptionViewItem& option, const QModelIndex& index) {
  if (!index.isValid() || !index.flags().testFlag(Qt::ItemIsUserCheckable)) return false;
  // Space is the view's affair. A press counts when the button is released on the mark.
  const bool release = event->type() == QEvent::MouseButtonRelease;
  if (!release && event->type() != QEvent::MouseButtonDblClick) return false;
  const auto* mouse = static_cast<const QMouseEvent*>(event);
  const QRect place = keepMarkPlace(option.rect, option.direction == Qt::RightToLeft)
                          .adjusted(-pressRoom, -pressRoom, pressRoom, pressRoom);
  if (mouse->button() != Qt::LeftButton || !place.contains(mouse->position().toPoint()))
    return false;
  if (!release) return true;
  const bool ticked = index.data(Qt::CheckStateRole).toInt() == Qt::Checked;
  return model->setData(index, ticked ? Qt::Unchecked : Qt::Checked, Qt::CheckStateRole);
}

}  // namespace kestrel
