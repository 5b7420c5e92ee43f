#include "ui/qt/title_header.h"

#include <QPainter>
#include <QStyleOptionHeader>
#include <utility>

#include "ui/custom_views.h"

namespace kestrel {

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

}  // namespace kestrel
