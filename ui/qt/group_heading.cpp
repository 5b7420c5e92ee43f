#include "ui/qt/group_heading.h"

#include <QFontMetrics>
#include <QPainter>
#include <QPainterPath>
#include <QStringList>
#include <algorithm>

#include "ui/qt/look.h"
#include "ui/qt/table_painting.h"

namespace kestrel {
namespace {

constexpr int betweenParts = 10;
constexpr int sizeWidth = 88;  // so that the numbers of copies stand below each other

/// Hands out places from the start of a row, or from its end, mirrored where people read so.
class Places {
 public:
  Places(const QRect& row, bool mirrored) : row_(row), left_(row), mirrored_(mirrored) {}
  [[nodiscard]] int room() const { return left_.width(); }
  QRect fromStart(int width, int space = betweenParts) {
    const QRect place(left_.left(), left_.top(), std::max(std::min(width, room()), 0),
                      left_.height());
    left_.setLeft(std::min(place.right() + 1 + space, left_.right() + 1));
    return shown(place);
  }
  QRect fromEnd(int width, int space = betweenParts) {
    const int taken = std::max(std::min(width, room()), 0);
    const QRect place(left_.right() + 1 - taken, left_.top(), taken, left_.height());
    left_.setRight(std::max(place.left() - 1 - space, left_.left() - 1));
    return shown(place);
  }

 private:
  [[nodiscard]] QRect shown(QRect place) const {
    if (mirrored_) place.moveLeft(row_.left() + row_.right() - place.right());
    return place;
  }
  QRect row_, left_;
  bool mirrored_;
};

void paintTriangle(QPainter& painter, const QRect& place, bool folded, bool mirrored) {
  const QPointF middle = QRectF(place).center();
  QPolygonF triangle =
      folded ? QPolygonF({{-2, -4}, {3, 0}, {-2, 4}}) : QPolygonF({{-4, -2}, {4, -2}, {0, 3}});
  if (folded && mirrored)
    for (QPointF& point : triangle) point.rx() = -point.x();
  triangle.translate(middle);
  painter.drawPolygon(triangle);
}

void paintBadge(QPainter& painter, const QRect& place, const GroupBadge& badge,
                const QPalette& palette) {
  const bool doubt = badge.tone == GroupBadge::Tone::doubt;
  const int height = painter.fontMetrics().height() + 4;
  const QRectF box(place.left(), place.center().y() - height / 2.0 + 0.5, place.width(), height);
  painter.setPen(Qt::NoPen);
  painter.setBrush(lookColor(doubt ? "warningGround" : "badgeGround", palette));
  painter.drawRoundedRect(box, height / 2.0, height / 2.0);
  painter.setPen(lookColor(doubt                                     ? "warningText"
                           : badge.tone == GroupBadge::Tone::missing ? "mycolor_darkred"
                                                                     : "grayText",
                           palette));
  const QString text = painter.fontMetrics().elidedText(badge.text, Qt::ElideRight,
                                                        static_cast<int>(box.width()) - 12);
  painter.drawText(box, Qt::AlignCenter | Qt::TextSingleLine, text);
}

}  // namespace

QString GroupHeading::spoken() const {
  QStringList parts;
  for (const QString& part : {title, artist, copies, freed})
    if (!part.isEmpty()) parts << part;
  for (const GroupBadge& badge : badges) parts << badge.text;
  return parts.join(QStringLiteral(", "));
}

void paintGroupHeading(QPainter& painter, const QRect& row, const GroupHeading& heading,
                       bool folded, bool selected, bool isCurrent, bool rightToLeft,
                       const QFont& font, const QPalette& palette) {
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  painter.fillRect(row,
                   lookColor(selected ? "mycolor_selectedText" : "mycolor_darkStripe", palette));
  painter.fillRect(QRect(row.left(), row.top(), row.width(), 1), lookColor("line", palette));
  if (isCurrent) paintCurrentRow(painter, row, rightToLeft, palette);

  QFont strong = font;
  strong.setWeight(QFont::DemiBold);
  QFont small = font;
  if (font.pointSizeF() > 0) small.setPointSizeF(font.pointSizeF() * 0.87);
  const QFontMetrics titles(strong), texts(font), smalls(small);
  const auto alignment = QStyle::visualAlignment(rightToLeft ? Qt::RightToLeft : Qt::LeftToRight,
                                                 Qt::AlignLeft | Qt::AlignVCenter);
  const auto trailing = QStyle::visualAlignment(rightToLeft ? Qt::RightToLeft : Qt::LeftToRight,
                                                Qt::AlignRight | Qt::AlignVCenter);
  const auto write = [&](const QRect& place, const QString& text, const QFont& letters,
                         std::string_view color, Qt::Alignment aligned) {
    painter.setFont(letters);
    painter.setPen(lookColor(color, palette));
    painter.drawText(place, int(aligned) | Qt::TextSingleLine,
                     painter.fontMetrics().elidedText(text, Qt::ElideRight, place.width()));
  };

  Places places(row, rightToLeft);
  const QRect fold = places.fromStart(foldPlace, 0);
  painter.setPen(Qt::NoPen);
  painter.setBrush(lookColor("grayText", palette));
  paintTriangle(painter, fold, folded, rightToLeft);

  places.fromEnd(12, 0);
  if (places.room() > 320)
    write(places.fromEnd(std::max(sizeWidth, texts.horizontalAdvance(heading.freed))),
          heading.freed, font, "grayText", trailing);
  write(places.fromEnd(texts.horizontalAdvance(heading.copies) + 2), heading.copies, font,
        "grayText", trailing);

  // Badges may not push the title out; they say what is wrong with the group, so that the artist
  // gives way to them first.
  painter.setFont(small);
  int wanted = 0;
  for (const GroupBadge& badge : heading.badges)
    wanted += smalls.horizontalAdvance(badge.text) + 16 + betweenParts;
  const int forBadges = std::min(wanted, places.room() / 2);
  const int forWords = places.room() - forBadges;
  const int title = std::min(titles.horizontalAdvance(heading.title) + 2, forWords);
  write(places.fromStart(title), heading.title, strong, "labelText", alignment);
  const int artist =
      std::min(texts.horizontalAdvance(heading.artist) + 2, forWords - title - betweenParts);
  if (!heading.artist.isEmpty() && artist > 40)
    write(places.fromStart(artist), heading.artist, font, "grayText", alignment);
  painter.setFont(small);
  for (const GroupBadge& badge : heading.badges) {
    if (places.room() < 40) break;
    paintBadge(painter, places.fromStart(smalls.horizontalAdvance(badge.text) + 16), badge,
               palette);
  }
  painter.restore();
}

}  // namespace kestrel
