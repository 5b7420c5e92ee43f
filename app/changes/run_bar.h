/// What was changed last, and the button that takes it back: stays until the user has seen enough
/// of it.
#pragma once

#include <QWidget>
#include <functional>

class QLabel;
class QPushButton;

namespace kestrel {

class AppDelegate;

class RunBar final : public QWidget {
  Q_OBJECT

 public:
  RunBar(AppDelegate& delegate, std::function<void()> showHistory);

 private:
  void reload();
  void undo();

  AppDelegate& delegate_;
  QLabel* text_;
  QPushButton* undo_;
  bool undoing_ = false;
};

}  // namespace kestrel
