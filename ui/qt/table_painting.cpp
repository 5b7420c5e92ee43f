#include "ui/qt/table_painting.h"

#include <QGuiApplication>
#include <QPainter>
#include <QPainterPath>
#include <QStyleOptionHeader>
#include <algorithm>

#include "ui/custom_views.h"
#include "ui/qt/look.h"

namespace kestrel {
namespace {

constexpr int titleSpace = 8, spaceAfterNumber = 16, arrowRoom = 16;

}  // namespace

bool isDark(const QPalette& palette) {
  return palette.color(QPalette::WindowText).lightness() >
         palette.color(QPalette::Window).lightness();
}

QColor toQt(const Color& color, const QPalette& palette) {
  if (const auto* asset = std::get_if<AssetColor>(&color)) return lookColor(asset->name, palette);
  // Both are pale: each appearance has a tone of their hue that can be read.
  if (color == Color(colors::lightBlue)) return lookColor("lightBlue", palette);
  if (color == Color(colors::lightRed)) return lookColor("lightRed", palette);
  if (const auto* fixed = std::get_if<FixedColor>(&color))
    return QColor::fromRgbF(static_cast<float>(fixed->red), static_cast<float>(fixed->green),
                            static_cast<float>(fixed->blue));
  switch (std::get<SystemColor>(color)) {
    case SystemColor::label:
      return lookColor("labelText", palette);
    case SystemColor::gray:
      return lookColor("grayText", palette);
    case SystemColor::blue:
      return palette.color(QPalette::Link);
    case SystemColor::unemphasizedSelectedTextBackground:
      return palette.color(QPalette::AlternateBase);
  }
  return {};
}

QPalette tablePalette(const QPalette& desktop) {
  QPalette palette = desktop;
  palette.setColor(QPalette::Base, lookColor("tableBackground", desktop));
  palette.setColor(QPalette::Text, lookColor("labelText", desktop));
  return palette;
}

/// With the room that titles are painted in, which is more than the style's own.
QSize TitleHeader::sectionSizeFromContents(int section) const {
  if (!model()) return QHeaderView::sectionSizeFromContents(section);
  const QString title = model()->headerData(section, orientation()).toString();
  const int room =
      titleSpace + (section == 0 ? indent_ : 0) + std::max(titleSpace, spaceAfterNumber);
  return QHeaderView::sectionSizeFromContents(section).expandedTo(
      {fontMetrics().horizontalAdvance(title) + room + 2, 0});
}

void TitleHeader::paintSection(QPainter* painter, const QRect& rect, int section) const {
  if (!rect.isValid()) return;
  QStyleOptionHeaderV2 option;
  initStyleOption(&option);
  option.rect = rect;
  initStyleOptionForIndex(&option, section);
  const QPalette desktop = QGuiApplication::palette();
  painter->fillRect(rect, lookColor("tableBackground", desktop));
  painter->fillRect(QRect(rect.left(), rect.bottom(), rect.width(), 1), lookColor("line", desktop));

  // As far from the edges as the words of the cells below, which leave more room after numbers.
  const auto alignment = QStyle::visualAlignment(layoutDirection(), option.textAlignment);
  const bool atRight = alignment.testFlag(Qt::AlignRight);
  const int before = titleSpace + (section == 0 ? indent_ : 0);
  const int after = atRight != isRightToLeft() ? spaceAfterNumber : titleSpace;
  const QRect room =
      isRightToLeft() ? rect.adjusted(after, 0, -before, 0) : rect.adjusted(before, 0, -after, 0);
  const bool sorted = option.sortIndicator != QStyleOptionHeader::None;
  const QFontMetrics metrics = painter->fontMetrics();
  const QString title =
      metrics.elidedText(option.text, textElideMode(), room.width() - (sorted ? arrowRoom : 0));
  const Rect place = KSTableHeaderCell::titleRect(
      {{double(room.x()), double(room.y())}, {double(room.width()), double(metrics.height())}},
      {{double(rect.x()), double(rect.y())}, {double(rect.width()), double(rect.height())}},
      metrics.height());
  QRectF words(place.origin.x, place.origin.y, place.size.width, place.size.height);
  if (sorted && atRight) words.adjust(0, 0, -arrowRoom, 0);
  painter->save();
  painter->setRenderHint(QPainter::Antialiasing);
  painter->setPen(lookColor("grayText", desktop));
  painter->drawText(words, int(alignment & Qt::AlignHorizontal_Mask) | Qt::TextSingleLine, title);
  if (sorted) {
    const double width = metrics.horizontalAdvance(title);
    const double x = atRight                                ? words.right() + arrowRoom / 2.0
                     : alignment.testFlag(Qt::AlignHCenter) ? words.center().x() + width / 2 + 8
                                                            : words.left() + width + 8;
    const double up = option.sortIndicator == QStyleOptionHeader::SortDown ? -1 : 1;
    const QPointF middle(x, rect.center().y() + 0.5);
    painter->setPen(Qt::NoPen);
    painter->setBrush(lookColor("accent", desktop));
    painter->drawPolygon(QPolygonF(
        {middle + QPointF(-4, 2 * up), middle + QPointF(4, 2 * up), middle + QPointF(0, -3 * up)}));
  }
  painter->restore();
}

void paintCurrentRow(QPainter& painter, const QRect& row, bool rightToLeft,
                     const QPalette& palette) {
  constexpr int width = 3;
  const int left = rightToLeft ? row.right() + 1 - width : row.left();
  painter.fillRect(QRect(left, row.top(), width, row.height()), lookColor("accent", palette));
}

void paintFileSymbol(QPainter& painter, const QRect& place, FileSymbol symbol,
                     const QColor& color) {
  if (symbol == FileSymbol::none) return;
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  painter.translate(QRectF(place).center());
  painter.setPen(Qt::NoPen);
  painter.setBrush(color);
  QPainterPath path;
  path.setFillRule(Qt::WindingFill);
  switch (symbol) {
    case FileSymbol::none:
      break;
    case FileSymbol::cloud:
      path.addEllipse(QRectF(-8, -1, 7, 7));
      path.addEllipse(QRectF(-5, -5, 9, 9));
      path.addEllipse(QRectF(1, -2, 7, 8));
      path.addRect(QRectF(-5, 2, 10, 4));
      painter.drawPath(path);
      break;
    case FileSymbol::missing:
      path.addPolygon(QPolygonF({{0, -7}, {8, 6.5}, {-8, 6.5}, {0, -7}}));
      path.addRect(QRectF(-1, -2.5, 2, 5));
      path.addRect(QRectF(-1, 3.5, 2, 1.8));
      path.setFillRule(Qt::OddEvenFill);
      painter.drawPath(path);
      break;
    case FileSymbol::stream:
      painter.drawEllipse(QRectF(-7, 3, 4, 4));
      painter.setBrush(Qt::NoBrush);
      painter.setPen(QPen(color, 2, Qt::SolidLine, Qt::RoundCap));
      for (const double radius : {7.0, 12.0})
        painter.drawArc(QRectF(-5 - radius, 5 - radius, 2 * radius, 2 * radius), 0, 90 * 16);
      break;
  }
  painter.restore();
}

QIcon playIcon(bool pauses, const QPalette& palette) {
  constexpr int side = 16, ratio = 2;
  QIcon icon;
  for (const auto& [group, mode] : {std::pair(QPalette::Active, QIcon::Normal),
                                    std::pair(QPalette::Disabled, QIcon::Disabled)}) {
    QPixmap picture(side * ratio, side * ratio);
    picture.setDevicePixelRatio(ratio);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(palette.color(group, QPalette::ButtonText));
    if (pauses) {
      painter.drawRect(QRectF(4, 3, 3, 10));
      painter.drawRect(QRectF(9, 3, 3, 10));
    } else {
      painter.drawPolygon(QPolygonF({{4, 2.5}, {13, 8}, {4, 13.5}}));
    }
    painter.end();
    icon.addPixmap(picture, mode);
  }
  return icon;
}

void paintNote(QPainter& painter, const QRect& place) {
  const double unit = place.width() / 32.0;
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  painter.translate(QRectF(place).center());
  painter.scale(unit, unit);
  painter.setPen(Qt::NoPen);
  painter.setBrush(lookColor("frame", QGuiApplication::palette()));
  painter.drawEllipse(QRectF(-6, 3, 6, 4.6));
  painter.drawRect(QRectF(-1.4, -7, 1.4, 12.4));
  painter.drawPolygon(QPolygonF({{-1.4, -7}, {5, -4}, {5, -1}, {-1.4, -4}}));
  painter.restore();
}

namespace {

constexpr int markStart = 24, markSize = 16;

void paintPin(QPainter& painter, const QPointF& middle, const QColor& color) {
  painter.save();
  painter.translate(middle);
  painter.rotate(40);
  painter.setPen(Qt::NoPen);
  painter.setBrush(color);
  painter.drawRoundedRect(QRectF(-3.5, -6.5, 7, 2.2), 1, 1);
  painter.drawPolygon(QPolygonF({{-2, -5}, {2, -5}, {2.4, -0.5}, {-2.4, -0.5}}));
  painter.drawRoundedRect(QRectF(-4.2, -1.2, 8.4, 2.2), 1, 1);
  painter.drawPolygon(QPolygonF({{-0.9, 1}, {0.9, 1}, {0, 7}}));
  painter.restore();
}

}  // namespace

QRect keepMarkPlace(const QRect& cell, bool rightToLeft) {
  const int left = rightToLeft ? cell.right() + 1 - markStart - markSize : cell.left() + markStart;
  return {left, cell.center().y() - markSize / 2 + 1, markSize, markSize};
}

void paintKeepMark(QPainter& painter, const QRect& cell, const KeepMark& mark, bool rightToLeft,
                   const QPalette& palette) {
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  const QRectF place = keepMarkPlace(cell, rightToLeft);
  const QColor accent = lookColor("accent", palette);
  const QColor quiet = lookColor("grayText", palette);
  painter.setBrush(Qt::NoBrush);
  if (mark.ticked && mark.keeper) {
    painter.setPen(QPen(accent, 5));
    painter.drawEllipse(place.adjusted(2.5, 2.5, -2.5, -2.5));
  } else {
    painter.setPen(QPen(quiet, 1.5));
    painter.drawEllipse(place.adjusted(0.75, 0.75, -0.75, -0.75));
    if (mark.ticked) {
      const QRectF cross = place.adjusted(5, 5, -5, -5);
      painter.setPen(QPen(quiet, 2, Qt::SolidLine, Qt::RoundCap));
      painter.drawLine(cross.topLeft(), cross.bottomRight());
      painter.drawLine(cross.topRight(), cross.bottomLeft());
    }
  }
  const double beside = markSize / 2.0 + 12;
  if (mark.picked)
    paintPin(painter, place.center() + QPointF(rightToLeft ? -beside : beside, 0), accent);
  painter.restore();
}

}  // namespace kestrel
