#include "app/libraries/library_button.h"

#include <QGuiApplication>
#include <QPainter>
#include <QPainterPath>

#include "resources/artwork.h"
#include "ui/qt/look.h"

namespace kestrel {
namespace {

constexpr int tileSize = 36;
constexpr int drawingSize = 22;

}  // namespace

LibraryButton::LibraryButton(QWidget* parent) : QPushButton(parent) {
  setAttribute(Qt::WA_Hover);
  setAutoDefault(false);
  setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
}

void LibraryButton::show(const QString& name, const QString& details, const QString& icon) {
  name_ = name;
  details_ = details;
  icon_ = icon;
  setAccessibleName(name);
  setAccessibleDescription(details);
  update();
}

QSize LibraryButton::sizeHint() const { return {30 * gridStep, 6 * gridStep}; }
QSize LibraryButton::minimumSizeHint() const { return {20 * gridStep, 6 * gridStep}; }

void LibraryButton::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  const QPalette desktop = QGuiApplication::palette();
  const auto color = [&](std::string_view name) { return lookColor(name, desktop); };
  painter.setPen(Qt::NoPen);
  if (isDown() || underMouse() || hasFocus()) {
    if (hasFocus()) painter.setPen(QPen(color("accent"), 1.5));
    painter.setBrush(color(isDown() ? "badgeGround" : "paneGround"));
    painter.drawRoundedRect(QRectF(rect()).adjusted(1, 1, -1, -1), gridStep, gridStep);
    painter.setPen(Qt::NoPen);
  }
  const QRect tile(6, (height() - tileSize) / 2, tileSize, tileSize);
  painter.setBrush(color("accentGround"));
  painter.drawRoundedRect(tile, gridStep, gridStep);
  const int inset = (tileSize - drawingSize) / 2;
  painter.drawPixmap(tile.topLeft() + QPoint(inset, inset),
                     iconPixmap(icon_, color("accent"), drawingSize, devicePixelRatioF()));

  const int left = tile.right() + 11;
  const int arrow = 2 * gridStep;
  const int half = height() / 2;
  const QRect upper(left, 5, width() - left - arrow, half - 4);
  painter.setFont(titleFont(font()));
  painter.setPen(color(isEnabled() ? "labelText" : "grayText"));
  const QString name = painter.fontMetrics().elidedText(name_, Qt::ElideMiddle, upper.width());
  painter.drawText(upper, Qt::AlignVCenter | Qt::TextSingleLine, name);
  // The arrow follows the name.
  const double x = left + painter.fontMetrics().horizontalAdvance(name) + 6;
  const double y = upper.center().y() + 1;
  QPainterPath down(QPointF(x, y - 2));
  down.lineTo(x + 4, y + 2);
  down.lineTo(x + 8, y - 2);
  painter.setBrush(Qt::NoBrush);
  painter.setPen(QPen(color("grayText"), 1.5, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
  painter.drawPath(down);

  painter.setFont(smallFont(font()));
  painter.setPen(color("grayText"));
  const QRect lower(left, half, width() - left - gridStep, half - 5);
  painter.drawText(lower, Qt::AlignVCenter | Qt::TextSingleLine,
                   painter.fontMetrics().elidedText(details_, Qt::ElideRight, lower.width()));
}

}  // namespace kestrel
