/// What stands in the window while a library is being read: which one, how far, and a way out.
#pragma once

#include <QWidget>

class QLabel;
class QProgressBar;
class QPushButton;

namespace kestrel {

class AppDelegate;

class ReadingPage final : public QWidget {
  Q_OBJECT

 public:
  explicit ReadingPage(AppDelegate& delegate);

 protected:
  void showEvent(QShowEvent* event) override;

 private:
  AppDelegate& delegate_;
  QLabel* title_;
  QPushButton* cancel_;
};

}  // namespace kestrel
