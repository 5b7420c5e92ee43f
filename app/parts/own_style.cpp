#include "app/parts/own_style.h"

#include <QPainter>
#include <QPainterPath>
#include <QStyleOption>
#include <algorithm>

#include "ui/qt/look.h"

namespace kestrel {
namespace {

constexpr double boxCorner = 4;
constexpr double fieldCorner = 5;

/// The largest square in the middle of a rectangle, on whole pixels.
QRectF squareIn(const QRect& rect) {
  const int side = std::min(rect.width(), rect.height());
  return QRectF(rect.x() + (rect.width() - side) / 2, rect.y() + (rect.height() - side) / 2, side,
                side)
      .adjusted(0.5, 0.5, -0.5, -0.5);
}

void drawBox(const QStyleOption& option, QPainter& painter, bool isRound) {
  const auto color = [&](std::string_view name) { return lookColor(name, option.palette); };
  const bool enabled = option.state & QStyle::State_Enabled;
  const bool partly = option.state & QStyle::State_NoChange;
  const bool on = (option.state & QStyle::State_On) || partly;
  const QRectF box = squareIn(option.rect);
  const double corner = isRound ? box.width() / 2 : boxCorner;
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  if (!enabled) painter.setOpacity(0.5);
  painter.setPen(
      QPen(color(on || option.state & QStyle::State_HasFocus ? "accent" : "frame"), 1.2));
  painter.setBrush(color(on && !isRound ? "accent" : "tableBackground"));
  painter.drawRoundedRect(box, corner, corner);
  if (on && isRound) {
    painter.setPen(Qt::NoPen);
    painter.setBrush(color("accent"));
    painter.drawEllipse(box.center(), box.width() * 0.28, box.width() * 0.28);
  } else if (on) {
    painter.setPen(QPen(color("accentText"), 1.8, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    const auto at = [&box](double x, double y) {
      return QPointF(box.x() + box.width() * x, box.y() + box.height() * y);
    };
    QPainterPath mark(at(0.25, partly ? 0.5 : 0.52));
    if (!partly) mark.lineTo(at(0.43, 0.7));
    mark.lineTo(at(0.76, partly ? 0.5 : 0.32));
    painter.setBrush(Qt::NoBrush);
    painter.drawPath(mark);
  }
  painter.restore();
}

}  // namespace

void OwnStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option,
                             QPainter* painter, const QWidget* widget) const {
  switch (element) {
    case PE_IndicatorCheckBox:
    case PE_IndicatorItemViewItemCheck:
      return drawBox(*option, *painter, false);
    case PE_IndicatorRadioButton:
      return drawBox(*option, *painter, true);
    case PE_FrameLineEdit: {
      painter->save();
      painter->setRenderHint(QPainter::Antialiasing);
      const bool focus = option->state & State_HasFocus;
      painter->setPen(
          QPen(lookColor(focus ? "accent" : "frame", option->palette), focus ? 1.5 : 1));
      painter->drawRoundedRect(QRectF(option->rect).adjusted(0.5, 0.5, -0.5, -0.5), fieldCorner,
                               fieldCorner);
      return painter->restore();
    }
    default:
      return QProxyStyle::drawPrimitive(element, option, painter, widget);
  }
}

void OwnStyle::drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                           const QWidget* widget) const {
  if (element != CE_HeaderSection)
    return QProxyStyle::drawControl(element, option, painter, widget);
  // Titles on the list's own ground, over one line: as the table of duplicates has them.
  painter->fillRect(option->rect, lookColor("tableBackground", option->palette));
  painter->fillRect(QRect(option->rect.left(), option->rect.bottom(), option->rect.width(), 1),
                    lookColor("line", option->palette));
}

void OwnStyle::drawComplexControl(ComplexControl control, const QStyleOptionComplex* option,
                                  QPainter* painter, const QWidget* widget) const {
  const auto* button = qstyleoption_cast<const QStyleOptionToolButton*>(option);
  if (control != CC_ToolButton || !button || button->arrowType == Qt::NoArrow)
    return QProxyStyle::drawComplexControl(control, option, painter, widget);
  // What unfolds says by its arrow that it is open, and is no button that is held down.
  QStyleOptionToolButton plain = *button;
  plain.state &= ~State_On;
  QProxyStyle::drawComplexControl(control, &plain, painter, widget);
}

int OwnStyle::styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                        QStyleHintReturn* result) const {
  // Words say what buttons do.
  if (hint == SH_DialogButtonBox_ButtonsHaveIcons) return 0;
  return QProxyStyle::styleHint(hint, option, widget, result);
}

}  // namespace kestrel
