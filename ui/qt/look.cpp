#include "ui/qt/look.h"

#include <QAction>
#include <QEvent>
#include <QGuiApplication>
#include <QPainter>
#include <QScreen>
#include <QStyleOption>
#include <algorithm>
#include <utility>

#include "resources/colors.h"
#include "ui/qt/table_painting.h"

namespace kestrel {
namespace {

constexpr int buttonHeight = 4 * gridStep;
constexpr double buttonCorner = 6;

/// Colours a role of a widget's palette, and again when the appearance has changed.
class RoleColor final : public QObject {
 public:
  RoleColor(QWidget* widget, QPalette::ColorRole role, std::string_view color)
      : QObject(widget), widget_(widget), role_(role), color_(color) {
    widget->installEventFilter(this);
    apply();
  }
  bool eventFilter(QObject* watched, QEvent* event) override {
    if (event->type() == QEvent::PaletteChange) apply();
    return QObject::eventFilter(watched, event);
  }

 private:
  void apply() {
    const QColor color = lookColor(color_, QGuiApplication::palette());
    QPalette palette = widget_->palette();
    // Setting it tells the widget again.
    if (palette.color(role_) == color) return;
    palette.setColor(role_, color);
    widget_->setPalette(palette);
  }

  QWidget* widget_;
  QPalette::ColorRole role_;
  std::string_view color_;
};

}  // namespace

QColor lookColor(std::string_view name, const QPalette& palette) {
  const auto rgb = namedColor(name, isDark(palette) ? Appearance::dark : Appearance::light);
  return rgb ? QColor(QRgb(*rgb)) : QColor();
}

QFont smallFont(const QFont& font) {
  QFont small = font;
  small.setPointSizeF(font.pointSizeF() * 0.87);
  return small;
}

QFont titleFont(const QFont& font, double scale) {
  QFont title = font;
  title.setPointSizeF(font.pointSizeF() * scale);
  title.setWeight(QFont::DemiBold);
  return title;
}

void setGround(QWidget* widget, std::string_view color) {
  widget->setAutoFillBackground(true);
  new RoleColor(widget, QPalette::Window, color);
}

void setTextColor(QWidget* widget, std::string_view color) {
  new RoleColor(widget, widget->foregroundRole(), color);
}

PrimaryButton::PrimaryButton(const QString& title, QWidget* parent) : QPushButton(title, parent) {
  setAttribute(Qt::WA_Hover);
  setFont(titleFont(font()));
}

PrimaryButton::PrimaryButton(QAction* action) : PrimaryButton(action->text()) {
  const auto follow = [this, action] {
    setText(action->text());
    setToolTip(action->toolTip());
    setEnabled(action->isEnabled());
  };
  connect(action, &QAction::changed, this, follow);
  connect(this, &QPushButton::clicked, action, &QAction::trigger);
  follow();
}

QSize PrimaryButton::sizeHint() const {
  const int width = fontMetrics().horizontalAdvance(QString(text()).remove('&'));
  return {width + 4 * gridStep, std::max(buttonHeight, fontMetrics().height() + gridStep)};
}

void PrimaryButton::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  const QPalette desktop = QGuiApplication::palette();
  QColor ground = lookColor("accent", desktop);
  if (!isEnabled())
    ground = lookColor("badgeGround", desktop);
  else if (isDown())
    ground = ground.darker(120);
  else if (underMouse())
    ground = ground.lighter(isDark(desktop) ? 108 : 118);
  const QRectF box = QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5);
  painter.setPen(Qt::NoPen);
  painter.setBrush(ground);
  painter.drawRoundedRect(box, buttonCorner, buttonCorner);
  if (hasFocus()) {
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(lookColor("accentText", desktop), 1.5));
    painter.drawRoundedRect(box.adjusted(2.5, 2.5, -2.5, -2.5), buttonCorner - 2, buttonCorner - 2);
  }
  painter.setPen(lookColor(isEnabled() ? "accentText" : "grayText", desktop));
  const bool underlines = style()->styleHint(QStyle::SH_UnderlineShortcut, nullptr, this) != 0;
  painter.drawText(
      rect(), Qt::AlignCenter | (underlines ? Qt::TextShowMnemonic : Qt::TextHideMnemonic), text());
}

QSize ElidedLabel::minimumSizeHint() const {
  return {4 * gridStep, QLabel::minimumSizeHint().height()};
}

void ElidedLabel::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setPen(palette().color(foregroundRole()));
  painter.drawText(contentsRect(), Qt::AlignVCenter | Qt::TextSingleLine,
                   fontMetrics().elidedText(text(), Qt::ElideRight, contentsRect().width()));
}

DividingLine::DividingLine(Qt::Orientation orientation) {
  if (orientation == Qt::Horizontal)
    setFixedHeight(1);
  else
    setFixedWidth(1);
}

void DividingLine::paintEvent(QPaintEvent*) {
  QPainter(this).fillRect(rect(), lookColor("line", QGuiApplication::palette()));
}

void resizeWithinScreen(QWidget* window, QSize wished) {
  const QScreen* screen =
      window->parentWidget() ? window->parentWidget()->screen() : window->screen();
  // Of what is free, a frame and a title bar take something too.
  constexpr QSize frame(2 * gridStep, 5 * gridStep);
  window->resize(wished.boundedTo(screen->availableSize() - frame));
}

}  // namespace kestrel
