#include "cli/terminal_progress.h"

#include <cstdio>
#include <iostream>
#include <unistd.h>
#include <utility>

#include "foundation/printable_text.h"

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

TerminalProgress::TerminalProgress() : terminal_(isatty(STDERR_FILENO) == 1) {}

void TerminalProgress::show(const std::string& text) {
  if (!terminal_) return;
  wipeLine();
  std::cerr << printable(text) << std::flush;
  drawn_ = true;
}

void TerminalProgress::count(std::string text, std::size_t total) {
  text_ = std::move(text);
  done_ = 0;
  total_ = total;
}

void TerminalProgress::advance() {
  if (!terminal_) return;
  ++done_;
  const auto now = std::chrono::steady_clock::now();
  if (now < nextDraw_) return;
  nextDraw_ = now + interval;
  show(text_ + ' ' + std::to_string(done_ * 100 / total_) + " %");
}

void TerminalProgress::clear() {
  if (!drawn_) return;
  wipeLine();
  drawn_ = false;
}

}  // namespace kestrel
