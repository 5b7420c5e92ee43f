#include "ui/qt/result_row_painter.h"

#include <QApplication>
#include <QGuiApplication>
#include <QHeaderView>
#include <QPainter>
#include <QTableView>

#include "ui/custom_views.h"
#include "ui/qt/palette.h"
#include "ui/qt/result_table_model.h"

namespace kestrel {

void ResultRowPainter::paintBackground(QPainter* painter, const QStyleOptionViewItem& option,
                                       const QModelIndex& index) const {
  const auto row = index.data(ResultTableModel::RowBackgroundRole).value<QColor>();
  if (row.isValid()) painter->fillRect(option.rect, row);

  const bool selected = option.state.testFlag(QStyle::State_Selected);
  const QRect& cell = option.rect;
  const Rect bounds{{double(cell.x()), double(cell.y())},
                    {double(cell.width()), double(cell.height())}};
  const auto drawing =
      MyNSTableRowView::drawSelection(selected, SelectionHighlightStyle::regular, bounds);
  if (!drawing) return;
  const QPalette palette = QGuiApplication::palette();
  // A row whose text needs a ground of its own keeps it: the text would not be readable else.
  const QColor text = index.data(Qt::ForegroundRole).value<QColor>();
  const QColor fill = toQt(drawing->fill, palette);
  if (qAbs(text.lightness() - fill.lightness()) > 60) painter->fillRect(cell, fill);
  painter->setPen(toQt(drawing->stroke, palette));
  painter->drawLine(cell.topLeft(), cell.topRight());
  painter->drawLine(cell.bottomLeft(), cell.bottomRight());
  const QHeaderView* header = table_->horizontalHeader();
  if (header->visualIndex(index.column()) == 0)
    painter->drawLine(cell.topLeft(), cell.bottomLeft());
}

void ResultRowPainter::paint(QPainter* painter, const QStyleOptionViewItem& given,
                             const QModelIndex& index) const {
  painter->save();
  paintBackground(painter, given, index);
  painter->restore();

  QStyleOptionViewItem option = given;
  initStyleOption(&option, index);
  // The text keeps its colour in a selected row: the colour says what the row is.
  static_assert(KSTableCellView::setBackgroundStyle(BackgroundStyle::emphasized) ==
                BackgroundStyle::normal);
  option.state &= ~(QStyle::State_Selected | QStyle::State_HasFocus);
  option.backgroundBrush = Qt::NoBrush;
  const QWidget* widget = option.widget;
  const QStyle* style = widget ? widget->style() : QApplication::style();
  style->drawControl(QStyle::CE_ItemViewItem, &option, painter, widget);
  if (!option.features.testFlag(QStyleOptionViewItem::HasCheckIndicator)) return;
  // On some grounds an empty box is hardly seen.
  painter->save();
  painter->setPen(option.palette.color(QPalette::Text));
  painter->drawRect(style->subElementRect(QStyle::SE_ItemViewItemCheckIndicator, &option, widget)
                        .adjusted(0, 0, -1, -1));
  painter->restore();
}

}  // namespace kestrel
