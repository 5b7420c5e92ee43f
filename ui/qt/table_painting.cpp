#include "ui/qt/table_painting.h"

#include <QApplication>
#include <QPainter>
#include <QStyleOptionHeader>
#include <utility>

#include "resources/colors.h"
#include "ui/custom_views.h"
#include "ui/qt/result_table_model.h"

namespace kestrel {
namespace {

QColor named(std::string_view name, const QPalette& palette) {
  const auto rgb = namedColor(name, isDark(palette) ? Appearance::dark : Appearance::light);
  return rgb ? QColor(QRgb(*rgb)) : QColor();
}

}  // namespace

bool isDark(const QPalette& palette) {
  return palette.color(QPalette::WindowText).lightness() >
         palette.color(QPalette::Window).lightness();
}

QColor toQt(const Color& color, const QPalette& palette) {
  if (const auto* asset = std::get_if<AssetColor>(&color)) return named(asset->name, palette);
  if (const auto* fixed = std::get_if<FixedColor>(&color))
    return QColor::fromRgbF(static_cast<float>(fixed->red), static_cast<float>(fixed->green),
                            static_cast<float>(fixed->blue));
  switch (std::get<SystemColor>(color)) {
    case SystemColor::label:
      return named("labelText", palette);
    case SystemColor::gray:
      return named("grayText", palette);
    case SystemColor::blue:
      return palette.color(QPalette::Link);
    case SystemColor::unemphasizedSelectedTextBackground:
      return palette.color(QPalette::AlternateBase);
  }
  return {};
}

QColor backgroundOf(const Color& text, const QPalette& palette) {
  // The fixed colours are pale ones, made for dark rows.
  if (isDark(palette)) return {};
  if (text == Color(colors::lightBlue)) return named("lightBlueGround", palette);
  if (text == Color(colors::lightRed)) return named("lightRedGround", palette);
  return {};
}

QPalette tablePalette(const QPalette& desktop) {
  QPalette palette = desktop;
  palette.setColor(QPalette::Base, named("tableBackground", desktop));
  palette.setColor(QPalette::Text, named("labelText", desktop));
  return palette;
}

void TitleHeader::paintSection(QPainter* painter, const QRect& rect, int section) const {
  if (!rect.isValid()) return;
  QStyleOptionHeaderV2 option;
  initStyleOption(&option);
  option.rect = rect;
  initStyleOptionForIndex(&option, section);
  const QString title = std::exchange(option.text, QString());
  painter->save();
  style()->drawControl(QStyle::CE_Header, &option, painter, this);
  painter->restore();

  // The place that the style leaves beside the sort arrow; only the height is the cell's affair.
  const QRect ordinary = style()->subElementRect(QStyle::SE_HeaderLabel, &option, this);
  const QFontMetrics metrics = painter->fontMetrics();
  const Rect place = KSTableHeaderCell::titleRect(
      {{double(ordinary.x()), double(ordinary.y())},
       {double(ordinary.width()), double(metrics.height())}},
      {{double(rect.x()), double(rect.y())}, {double(rect.width()), double(rect.height())}},
      metrics.height());
  const QRectF titleRect(place.origin.x, place.origin.y, place.size.width, place.size.height);
  painter->setPen(option.palette.color(QPalette::ButtonText));
  const auto alignment = QStyle::visualAlignment(layoutDirection(), option.textAlignment);
  painter->drawText(titleRect, int(alignment & Qt::AlignHorizontal_Mask) | Qt::TextSingleLine,
                    metrics.elidedText(title, textElideMode(), ordinary.width()));
}

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
  painter->fillRect(cell, toQt(drawing->fill, palette));
  // Filled and not drawn with a pen, which leaves traces in the neighbouring rows where a point is
  // more than a pixel.
  const QColor stroke = toQt(drawing->stroke, palette);
  painter->fillRect(QRect(cell.left(), cell.top(), cell.width(), 1), stroke);
  painter->fillRect(QRect(cell.left(), cell.bottom(), cell.width(), 1), stroke);
  const QHeaderView* header = table_->horizontalHeader();
  if (header->visualIndex(index.column()) == 0)
    painter->fillRect(QRect(cell.left(), cell.top(), 1, cell.height()), stroke);
}

void ResultRowPainter::paintTextBackground(QPainter* painter, const QStyleOptionViewItem& option,
                                           const QColor& color) {
  const QStyle* style = option.widget ? option.widget->style() : QApplication::style();
  const int margin = style->pixelMetric(QStyle::PM_FocusFrameHMargin, &option, option.widget) + 1;
  const QRect place = style->subElementRect(QStyle::SE_ItemViewItemText, &option, option.widget)
                          .adjusted(margin, 0, -margin, 0);
  const QString text =
      option.fontMetrics.elidedText(option.text, option.textElideMode, place.width());
  const auto alignment = QStyle::visualAlignment(option.direction, option.displayAlignment);
  const QRect words =
      style->itemTextRect(option.fontMetrics, place, static_cast<int>(alignment), true, text);
  painter->setRenderHint(QPainter::Antialiasing);
  painter->setPen(Qt::NoPen);
  painter->setBrush(color);
  const double radius = words.height() / 4.0;
  painter->drawRoundedRect(
      words.adjusted(-margin, 0, margin, 0).intersected(option.rect.adjusted(1, 1, -1, -1)), radius,
      radius);
}

void ResultRowPainter::paint(QPainter* painter, const QStyleOptionViewItem& given,
                             const QModelIndex& index) const {
  QStyleOptionViewItem option = given;
  initStyleOption(&option, index);
  painter->save();
  paintBackground(painter, given, index);
  const auto ground = index.data(ResultTableModel::TextBackgroundRole).value<QColor>();
  if (ground.isValid() && !option.text.isEmpty()) paintTextBackground(painter, option, ground);
  painter->restore();

  // The text keeps its colour in a selected row: the colour says what the row is.
  const bool selected = option.state.testFlag(QStyle::State_Selected);
  const BackgroundStyle style = KSTableCellView::setBackgroundStyle(
      selected ? BackgroundStyle::emphasized : BackgroundStyle::normal);
  option.state.setFlag(QStyle::State_Selected, style == BackgroundStyle::emphasized);
  option.state.setFlag(QStyle::State_HasFocus, false);
  option.backgroundBrush = Qt::NoBrush;
  const QWidget* widget = option.widget;
  const QStyle* drawing = widget ? widget->style() : QApplication::style();
  drawing->drawControl(QStyle::CE_ItemViewItem, &option, painter, widget);
  if (!option.features.testFlag(QStyleOptionViewItem::HasCheckIndicator)) return;
  // On some grounds an empty box is hardly seen.
  painter->save();
  painter->setPen(given.palette.color(QPalette::Text));
  painter->drawRect(drawing->subElementRect(QStyle::SE_ItemViewItemCheckIndicator, &option, widget)
                        .adjusted(0, 0, -1, -1));
  painter->restore();
}

}  // namespace kestrel
