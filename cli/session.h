/// One run of the command line: its collaborators, what the user sees meanwhile, and Ctrl-C.
#pragma once

#include <atomic>
#include <chrono>
#include <csignal>
#include <cstdint>
#include <memory>
#include <pthread.h>
#include <string>
#include <thread>

#include "library/track_store.h"
#include "musicapp/music_application.h"
#include "platform/clock.h"
#include "platform/files.h"
#include "platform/log.h"
#include "platform/random.h"

namespace kestrel {

/// Ctrl-C: the first asks a running search to stop, the second ends the program at once. While it
/// lives, it waits for the interrupt signal. Make it before any other thread, so that all
/// threads leave the signal to the one that waits for it here.
class Interrupt {
 public:
  Interrupt();
  ~Interrupt();
  Interrupt(const Interrupt&) = delete;
  Interrupt& operator=(const Interrupt&) = delete;

  [[nodiscard]] bool happened() const noexcept { return happened_.load(std::memory_order_relaxed); }

 private:
  void wait();

  sigset_t before_{};
  sigset_t awaited_{};
  std::atomic<bool> stopping_{false}, happened_{false};
  std::thread thread_;
};

/// Progress on a terminal: one line on standard error that is written over and wiped at the end.
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

/// The random choices of a run: different each time, unless a seed is given.
class SessionRandom final : public Random {
 public:
  void seed(std::uint64_t number) { random_ = std::make_unique<SeededRandom>(number); }
  std::uint32_t below(std::uint32_t limit) override { return random_->below(limit); }

 private:
  std::unique_ptr<Random> random_ = std::make_unique<SystemRandom>();
};

class Session {
 public:
  /// `verbose`: the log goes to standard error instead of nowhere.
  explicit Session(bool verbose);

  /// For opening the library at `path`, with what it tells of its progress.
  ApplicationServices services(const std::string& path);
  /// Reads the library. Throws LibraryError.
  std::shared_ptr<MediaLibrary> open(const std::string& path);
  /// The library's songs, looked for on the disk unless `withoutFiles`. `checkbox` is their
  /// records' `tCheckbox`.
  std::shared_ptr<const TrackStore> snapshot(MediaLibrary& library, bool checkbox = true);
  /// Whether the user asked to stop. Cheap enough to be asked for every line of output.
  [[nodiscard]] bool interrupted() const { return interrupt_.happened(); }
  /// Says on standard error that the user stopped the program, and returns the exit status.
  int stopped();

  [[nodiscard]] Log& log() { return *log_; }

 private:
  Interrupt interrupt_;  // before anything that may start a thread
  std::unique_ptr<Log> log_;

 public:
  PathMaps maps;              ///< of the libraries that are opened
  bool withoutFiles = false;  ///< files count as there in snapshots
  SystemFiles files;
  SessionRandom random;
  SystemClock clock;
  TerminalProgress progress;
};

}  // namespace kestrel
