/// Ctrl-C: the first asks a running search to stop, the second ends the program at once.
#pragma once

#include <atomic>
#include <csignal>
#include <pthread.h>
#include <thread>

namespace kestrel {

class Preferences;

/// While it lives, an interrupt signal sets "cancelGetDupes" to 1. Make it before any other
/// thread, so that all threads leave the signal to the one that waits for it here.
class Interrupt {
 public:
  explicit Interrupt(Preferences& preferences);
  ~Interrupt();
  Interrupt(const Interrupt&) = delete;
  Interrupt& operator=(const Interrupt&) = delete;

 private:
  void wait(Preferences& preferences) const;

  sigset_t before_{};
  sigset_t awaited_{};
  std::atomic<bool> stopping_{false};
  std::thread thread_;
};

}  // namespace kestrel
