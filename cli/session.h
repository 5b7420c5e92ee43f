/// One run of the command line: its collaborators, what the user sees meanwhile, and Ctrl-C.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "cli/interrupt.h"
#include "cli/terminal_progress.h"
#include "library/track_store.h"
#include "platform/clock.h"
#include "platform/files.h"
#include "platform/log.h"
#include "platform/preferences.h"
#include "platform/queues.h"
#include "platform/random.h"
#include "ui/process.h"

namespace kestrel {

class MediaLibrary;

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

  /// Reads the library. Throws LibraryError.
  std::shared_ptr<MediaLibrary> open(const std::string& path);
  /// The library's songs, looked for on the disk. `checkbox` is their records' `tCheckbox`.
  std::shared_ptr<const TrackStore> snapshot(MediaLibrary& library, bool checkbox = true);
  /// Whether the user asked to stop. Cheap enough to be asked for every line of output.
  [[nodiscard]] bool interrupted() const { return interrupt_.happened(); }
  /// Says on standard error that the user stopped the program, and returns the exit status.
  int stopped();

  [[nodiscard]] Log& log() { return *log_; }

 private:
  Interrupt interrupt_;  // before anything that may start a thread
  std::unique_ptr<Log> log_;
  InMemoryPreferences preferences_;
  InlineQueue mainQueue_;

 public:
  SystemFiles files;
  SessionRandom random;
  SystemClock clock;
  TerminalProgress progress;
  /// For the commands that work on the rows of a window.
  Process process;
};

}  // namespace kestrel
