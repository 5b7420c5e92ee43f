/// The log in a window, while the program runs.
#pragma once

#include <QWidget>
#include <deque>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

#include "platform/log.h"
#include "ui/models/observers.h"

class QPlainTextEdit;

namespace kestrel {

class TaskQueue;

/// The latest lines, kept in memory until a window takes them.
class WindowLog final : public Log {
 public:
  static constexpr std::size_t kept = 2000;

  /// `mainQueue` must outlive it.
  explicit WindowLog(TaskQueue& mainQueue) : mainQueue_(mainQueue) {}

  void line(std::string_view text) noexcept override;
  void detail(std::string_view) noexcept override {}

  /// The lines that came since the last call, oldest first. On the main thread.
  [[nodiscard]] std::vector<std::string> takeNew();

  /// New lines have come; told once until they are taken.
  Observers observers;

 private:
  TaskQueue& mainQueue_;
  std::mutex mutex_;
  std::deque<std::string> lines_;
  bool told_ = false;
};

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
