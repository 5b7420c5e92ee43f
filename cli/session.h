/// One run of the command line: the process with its collaborators, and an opened library.
#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <string>

#include "cli/interrupt.h"
#include "cli/terminal_progress.h"
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

/// What is posted to the main queue runs at once, so results are there when an operation returns.
class Session {
 public:
  /// `verbose`: the log goes to standard error instead of nowhere.
  explicit Session(bool verbose);

  /// Reads the library, which the operations then use. Throws LibraryError.
  std::shared_ptr<MediaLibrary> open(const std::string& path);
  /// Whether the user asked to stop. Cheap enough to be asked for every line of output.
  [[nodiscard]] bool interrupted() const;
  /// Says on standard error that the user stopped the program, and returns the exit status.
  int stopped();

  [[nodiscard]] Log& log() { return *log_; }

  SystemFiles files;
  InMemoryPreferences preferences;
  SessionRandom random;
  SystemClock clock;

 private:
  const std::atomic<std::int64_t>& cancel_;
  Interrupt interrupt_;
  InlineQueue mainQueue_;
  std::unique_ptr<Log> log_;

 public:
  Process process;
  TerminalProgress progress;
};

}  // namespace kestrel
