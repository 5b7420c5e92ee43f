/// Ctrl-C: the first asks a running search to stop, the second ends the program at once.
#pragma once

#include <atomic>
#include <csignal>
#include <pthread.h>
#include <thread>

namespace kestrel {

/// While it lives, it waits for the interrupt signal. Make it before any other thread, so that all
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

}  // namespace kestrel
