#include "ui/qt/palette.h"

#include "resources/colors.h"

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

}  // namespace kestrel
