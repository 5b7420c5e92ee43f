#include "cli/session.h"

#include <cstdio>
#include <iostream>
#include <unistd.h>
#include <utility>

#include "cli/filtered_output.h"
#include "foundation/utf8.h"
#include "library/snapshot.h"
#include "musicapp/applications.h"

namespace kestrel {
namespace {

constexpr int quit = SIGUSR1;  // wakes the waiting thread when it is not needed any more

// Often enough to be seen moving, seldom enough to cost nothing.
constexpr auto interval = std::chrono::milliseconds(100);

/// The one control sequence that the program means, past the filter of standard error.
void wipeLine() {
  std::cerr.flush();
  std::fputs("\r\033[K", stderr);
}

std::unique_ptr<Log> makeLog(bool verbose) {
  if (verbose) return std::make_unique<StreamLog>();
  return std::make_unique<NullLog>();
}

}  // namespace

Interrupt::Interrupt() {
  sigemptyset(&awaited_);
  sigaddset(&awaited_, SIGINT);
  sigaddset(&awaited_, quit);
  pthread_sigmask(SIG_BLOCK, &awaited_, &before_);
  thread_ = std::thread([this] { wait(); });
}

Interrupt::~Interrupt() {
  stopping_ = true;
  pthread_kill(thread_.native_handle(), quit);
  thread_.join();
  pthread_sigmask(SIG_SETMASK, &before_, nullptr);
}

void Interrupt::wait() {
  for (;;) {
    int signal = 0;
    if (sigwait(&awaited_, &signal) != 0 || stopping_) return;
    if (signal == quit) continue;  // another program sent it
    if (!happened_.exchange(true)) continue;
    // As the system does it: the shell sees a program that was interrupted.
    std::signal(SIGINT, SIG_DFL);
    sigset_t interrupt;
    sigemptyset(&interrupt);
    sigaddset(&interrupt, SIGINT);
    pthread_sigmask(SIG_UNBLOCK, &interrupt, nullptr);
    std::raise(SIGINT);
  }
}

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

Session::Session(bool verbose) : log_(makeLog(verbose)) {}

ApplicationServices Session::services(const std::string& path) {
  const auto tell = [this, path](std::size_t done, std::size_t total) {
    progress.show("Reading the songs of " + path + " ... " + std::to_string(done) + " of " +
                  std::to_string(total));
  };
  return {files, *log_, random, clock, nullptr, {tell, [this] { return interrupted(); }}, maps};
}

std::shared_ptr<MediaLibrary> Session::open(const std::string& path) {
  progress.show("Reading " + path + " ...");
  // Opened here rather than on first use, so that what is wrong with it reaches the user.
  auto library = openLibrary(path, services(path));
  progress.clear();
  return library;
}

std::shared_ptr<const TrackStore> Session::snapshot(MediaLibrary& library, bool checkbox) {
  const auto items = library.allMediaItems();
  progress.count("Itemizing music library...", items->size());
  auto tracks = takeSnapshot(
      items, files, *log_, checkbox, nullptr, [this] { progress.advance(); }, withoutFiles);
  progress.clear();
  return tracks;
}

int Session::stopped() {
  progress.clear();
  complain("stopped; nothing was changed");
  return 1;
}

}  // namespace kestrel
