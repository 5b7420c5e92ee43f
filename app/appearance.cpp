#include "app/appearance.h"

#include <QApplication>
#include <QPalette>
#include <QStyle>
#include <QStyleFactory>
#include <string>

#include "platform/preferences.h"

namespace kestrel {
namespace {

constexpr std::string_view setting = "appearance";
constexpr const char* desktopStyle = "desktopStyle";

QPalette darkPalette() {
  QPalette palette(QColor(0x34, 0x38, 0x40));
  palette.setColor(QPalette::Base, QColor(0x1B, 0x1E, 0x22));
  palette.setColor(QPalette::AlternateBase, QColor(0x24, 0x28, 0x2E));
  palette.setColor(QPalette::ToolTipBase, QColor(0x3A, 0x3F, 0x47));
  palette.setColor(QPalette::ToolTipText, QColor(0xEC, 0xEF, 0xF3));
  palette.setColor(QPalette::PlaceholderText, QColor(0xA7, 0xAF, 0xBA));
  palette.setColor(QPalette::Link, QColor(0x7F, 0xB4, 0xFF));
  palette.setColor(QPalette::LinkVisited, QColor(0xC3, 0xA6, 0xFF));
  palette.setColor(QPalette::Highlight, QColor(0x2F, 0x65, 0xB8));
  palette.setColor(QPalette::HighlightedText, Qt::white);
  for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
    palette.setColor(QPalette::Disabled, role, QColor(0x8A, 0x92, 0x9D));
  return palette;
}

QPalette lightPalette() {
  QPalette palette(QColor(0xEF, 0xEF, 0xEF));
  palette.setColor(QPalette::Link, QColor(0x1A, 0x47, 0xB8));
  palette.setColor(QPalette::PlaceholderText, QColor(0x59, 0x61, 0x6B));
  return palette;
}

}  // namespace

AppearanceChoice chosenAppearance(const Preferences& preferences) {
  const std::string text = preferences.text(setting);
  if (text == "light") return AppearanceChoice::light;
  return text == "dark" ? AppearanceChoice::dark : AppearanceChoice::desktop;
}

void chooseAppearance(AppearanceChoice choice, Preferences& preferences) {
  if (choice == AppearanceChoice::desktop)
    preferences.remove(setting);
  else
    preferences.set(setting, std::string(choice == AppearanceChoice::dark ? "dark" : "light"));
  applyAppearance(preferences);
}

void applyAppearance(const Preferences& preferences) {
  const AppearanceChoice choice = chosenAppearance(preferences);
  // The application keeps the name of the desktop's style from before it was first changed.
  if (!qApp->property(desktopStyle).isValid()) {
    if (choice == AppearanceChoice::desktop) return;
    qApp->setProperty(desktopStyle, QApplication::style()->name());
  }
  if (choice == AppearanceChoice::desktop) {
    if (QStyle* style = QStyleFactory::create(qApp->property(desktopStyle).toString()))
      QApplication::setStyle(style);
    // One that sets nothing: all is the desktop's again, even when it has changed meanwhile.
    QApplication::setPalette(QPalette());
    return;
  }
  // The one style that takes every palette as it is.
  QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
  QApplication::setPalette(choice == AppearanceChoice::dark ? darkPalette() : lightPalette());
}

}  // namespace kestrel
