/// The desktop-neutral style with Kestrel's controls: boxes, radio buttons and the edges of fields
/// and buttons keep their contrast on light and dark grounds, and what is chosen has the accent.
#pragma once

#include <QProxyStyle>

namespace kestrel {

class OwnStyle final : public QProxyStyle {
  Q_OBJECT

 public:
  OwnStyle() : QProxyStyle(QStringLiteral("fusion")) {}

  void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override;
  void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                   const QWidget* widget = nullptr) const override;
  void drawComplexControl(ComplexControl control, const QStyleOptionComplex* option,
                          QPainter* painter, const QWidget* widget = nullptr) const override;
  [[nodiscard]] int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                              QStyleHintReturn* result) const override;
};

}  // namespace kestrel
