/// How windows look beside what the desktop's style draws: the named colours, the grid, and the
/// controls that the style has no form for.
#pragma once

#include <QColor>
#include <QLabel>
#include <QPushButton>
#include <QWidget>
#include <string_view>

namespace kestrel {

/// Distances are multiples of this many pixels.
inline constexpr int gridStep = 8;

/// A colour of resources/colors.h as the palette wants it, light or dark. Invalid for a name that
/// is not in the table.
QColor lookColor(std::string_view name, const QPalette& palette);

/// Smaller letters, for what stands below or beside something that matters more.
QFont smallFont(const QFont& font);
/// Bold letters, as titles have them.
QFont titleFont(const QFont& font, double scale = 1);

/// Gives a widget's background a named colour, now and when the appearance changes.
void setGround(QWidget* widget, std::string_view color);
/// The same of its text.
void setTextColor(QWidget* widget, std::string_view color);

/// The one button of a window that goes on: filled with the accent. Return presses it as it does
/// any button.
class PrimaryButton final : public QPushButton {
  Q_OBJECT

 public:
  explicit PrimaryButton(const QString& title, QWidget* parent = nullptr);
  /// Follows the action's title, tool tip and state, and triggers it.
  explicit PrimaryButton(QAction* action);
  [[nodiscard]] QSize sizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;
};

/// One line of text that is cut at its end where there is no room for all of it.
class ElidedLabel final : public QLabel {
 public:
  explicit ElidedLabel(const QString& text) : QLabel(text) { setTextFormat(Qt::PlainText); }
  [[nodiscard]] QSize minimumSizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;
};

/// A thin line between parts of a window.
class DividingLine final : public QWidget {
 public:
  explicit DividingLine(Qt::Orientation orientation);

 protected:
  void paintEvent(QPaintEvent* event) override;
};

/// A window's first size: as wished, but no larger than what the screen has free.
void resizeWithinScreen(QWidget* window, QSize wished);

}  // namespace kestrel
