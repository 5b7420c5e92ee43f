#include "cli/terminal_progress.h"

#include <algorithm>
#include <cstdio>
#include <iostream>
#include <unistd.h>

#include "foundation/utf8.h"
#include "ui/process.h"

namespace kestrel {
namespace {

// Often enough to be seen moving, seldom enough to cost nothing.
constexpr auto interval = std::chrono::milliseconds(100);

/// The one control sequence that the program means, past the filter of standard error.
void wipeLine() {
  std::cerr.flush();
  std::fputs("\r\033[K", stderr);
}

}  // namespace

TerminalProgress::TerminalProgress(MainWindowReferences& window)
    : terminal_(isatty(STDERR_FILENO) == 1), nextDraw_(std::chrono::steady_clock::now()) {
  if (!terminal_) return;
  const auto follow = [this](ProgressBar& bar, StatusText& status) {
    subscriptions_.push_back(
        bar.observers.add([this, &bar, &status] { draw(bar, status.text()); }));
  };
  follow(window.mainLaunchProgressBar, window.mainLaunchProgressStatus);
  follow(window.mainProgressBar, window.mainProgressStatus);
  follow(window.mainProgressSpinner, window.mainProgressSpinnerStatus);
}

TerminalProgress::~TerminalProgress() { clear(); }

void TerminalProgress::show(const std::string& text) {
  if (!terminal_) return;
  wipeLine();
  std::cerr << printable(text) << std::flush;
  drawn_ = true;
}

void TerminalProgress::clear() {
  if (!drawn_) return;
  wipeLine();
  drawn_ = false;
}

void TerminalProgress::draw(const ProgressBar& bar, const std::string& text) {
  if (bar.isHidden()) return clear();
  const auto now = std::chrono::steady_clock::now();
  if (now < nextDraw_) return;
  nextDraw_ = now + interval;
  const double range = bar.maximum() - bar.minimum();
  if (bar.isIndeterminate() || range <= 0) return show(text);
  const double share = std::clamp((bar.value() - bar.minimum()) / range, 0.0, 1.0);
  show(text + ' ' + std::to_string(static_cast<int>(share * 100)) + " %");
}

}  // namespace kestrel
