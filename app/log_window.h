/// Shows the log while the program runs.
#pragma once

#include <QWidget>

class QPlainTextEdit;

namespace kestrel {

class WindowLog;

class LogWindow final : public QWidget {
  Q_OBJECT

 public:
  LogWindow(QWidget* parent, WindowLog& log);

 private:
  void appendNew();

  WindowLog& log_;
  QPlainTextEdit* text_;
};

}  // namespace kestrel
