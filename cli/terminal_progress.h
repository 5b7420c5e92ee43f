/// Progress on a terminal: one line on standard error that is written over and wiped at the end.
#pragma once

#include <chrono>
#include <string>

namespace kestrel {

/// Does nothing when standard error is no terminal, so that logs and pipes stay clean.
class TerminalProgress {
 public:
  TerminalProgress();
  ~TerminalProgress() { clear(); }
  TerminalProgress(const TerminalProgress&) = delete;
  TerminalProgress& operator=(const TerminalProgress&) = delete;

  /// Shows a text for work whose end cannot be told.
  void show(const std::string& text);
  /// Begins work of `total` steps, shown as a text and a percentage.
  void count(std::string text, std::size_t total);
  void advance();
  void clear();

 private:
  bool terminal_;
  bool drawn_ = false;
  std::string text_;
  std::size_t done_ = 0, total_ = 0;
  std::chrono::steady_clock::time_point nextDraw_{};
};

}  // namespace kestrel
