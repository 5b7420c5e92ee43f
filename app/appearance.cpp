#include "app/appearance.h"

#include <QApplication>
#include <QEvent>
#include <QPalette>
#include <QPointer>
#include <QStyle>
#include <QStyleFactory>
#include <string>

#include "app/parts/own_style.h"
#include "platform/preferences.h"
#include "resources/colors.h"
#include "ui/qt/look.h"
#include "ui/qt/table_painting.h"

namespace kestrel {
namespace {

constexpr std::string_view setting = "appearance";
constexpr const char* desktopStyle = "desktopStyle";

/// Kestrel's own colours, for the one style that takes every palette as it is.
QPalette ownPalette(Appearance appearance) {
  const auto color = [appearance](std::string_view name) {
    return QColor(QRgb(namedColor(name, appearance).value_or(0)));
  };
  QPalette palette(color("buttonGround"), color("paneGround"));
  palette.setColor(QPalette::Base, color("tableBackground"));
  palette.setColor(QPalette::AlternateBase, color("mycolor_darkStripe"));
  palette.setColor(QPalette::ToolTipBase, color("badgeGround"));
  palette.setColor(QPalette::ToolTipText, color("labelText"));
  palette.setColor(QPalette::PlaceholderText, color("grayText"));
  palette.setColor(QPalette::Link, color("accent"));
  palette.setColor(QPalette::LinkVisited, color("accent"));
  palette.setColor(QPalette::Highlight, color("accent"));
  palette.setColor(QPalette::HighlightedText, color("accentText"));
  for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
    palette.setColor(role, color("labelText"));
    palette.setColor(QPalette::Disabled, role, color("disabledText"));
  }
  return palette;
}

/// Lists show what is selected as the tables do.
QPalette listPalette(const QPalette& palette) {
  QPalette list = palette;
  list.setColor(QPalette::Highlight, lookColor("mycolor_selectedText", palette));
  list.setColor(QPalette::HighlightedText, lookColor("labelText", palette));
  return list;
}

/// Kestrel's form of the one style that takes every palette as it is.
void useOwnStyle() {
  if (!qobject_cast<OwnStyle*>(QApplication::style())) QApplication::setStyle(new OwnStyle);
}

void useOwnPalette(Appearance appearance) {
  const QPalette palette = ownPalette(appearance);
  QApplication::setPalette(palette);
  QApplication::setPalette(listPalette(palette), "QAbstractItemView");
}

/// The desktop may turn dark while the program runs. What it wants then is only seen by those who
/// want nothing themselves.
class DesktopFollower final : public QObject {
 public:
  using QObject::QObject;
  void follow() {
    QApplication::setPalette(QPalette());
    QApplication::setPalette(QPalette(), "QAbstractItemView");
    // Other styles have colours of their own.
    if (QApplication::style()->name() == QLatin1String("fusion") ||
        qobject_cast<OwnStyle*>(QApplication::style())) {
      useOwnStyle();
      useOwnPalette(isDark(QApplication::palette()) ? Appearance::dark : Appearance::light);
    }
  }
  bool eventFilter(QObject* watched, QEvent* event) override {
    if (event->type() == QEvent::ThemeChange && isFollowing && !isTold_) {
      // Each window is told.
      isTold_ = true;
      QMetaObject::invokeMethod(
          this,
          [this] {
            isTold_ = false;
            if (isFollowing) follow();
          },
          Qt::QueuedConnection);
    }
    return QObject::eventFilter(watched, event);
  }
  bool isFollowing = false;

 private:
  bool isTold_ = false;
};

DesktopFollower& desktopFollower() {
  static QPointer<DesktopFollower> follower;
  if (!follower) {
    follower = new DesktopFollower(qApp);
    qApp->installEventFilter(follower);
  }
  return *follower;
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
  desktopFollower().isFollowing = choice == AppearanceChoice::desktop;
  // The application keeps the name of the desktop's style from before it was first changed.
  const QVariant wanted = qApp->property(desktopStyle);
  if (choice == AppearanceChoice::desktop) {
    if (wanted.isValid())
      if (QStyle* style = QStyleFactory::create(wanted.toString())) QApplication::setStyle(style);
    desktopFollower().follow();
    return;
  }
  if (!wanted.isValid()) qApp->setProperty(desktopStyle, QApplication::style()->name());
  useOwnStyle();
  useOwnPalette(choice == AppearanceChoice::dark ? Appearance::dark : Appearance::light);
}

}  // namespace kestrel
