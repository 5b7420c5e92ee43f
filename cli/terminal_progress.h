/// Progress on a terminal: one line on standard error that is written over and wiped at the end.
#pragma once

#include <chrono>
#include <string>
#include <vector>

#include "ui/models/observers.h"

namespace kestrel {

class ProgressBar;
struct MainWindowReferences;

/// Shows the progress bars and their texts while they change. Does nothing when standard error is
/// no terminal, so that logs and pipes stay clean.
class TerminalProgress {
 public:
  explicit TerminalProgress(MainWindowReferences& window);
  ~TerminalProgress();
  TerminalProgress(const TerminalProgress&) = delete;
  TerminalProgress& operator=(const TerminalProgress&) = delete;

  /// Shows a text for work that has no progress bar.
  void show(const std::string& text);
  void clear();

 private:
  void draw(const ProgressBar& bar, const std::string& text);

  bool terminal_;
  bool drawn_ = false;
  std::chrono::steady_clock::time_point nextDraw_;
  std::vector<Observers::Subscription> subscriptions_;
};

}  // namespace kestrel
