/// The time, and waiting for it to pass.
#pragma once

#include <chrono>
#include <thread>

namespace kestrel {

/// A moment in universal time.
using Moment = std::chrono::sys_time<std::chrono::nanoseconds>;

class Clock {
 public:
  virtual ~Clock() = default;
  [[nodiscard]] virtual Moment now() const = 0;
  /// Blocks the calling thread; zero and less return at once.
  virtual void sleepFor(std::chrono::nanoseconds duration) = 0;
};

class SystemClock final : public Clock {
 public:
  [[nodiscard]] Moment now() const override { return std::chrono::system_clock::now(); }
  void sleepFor(std::chrono::nanoseconds duration) override {
    std::this_thread::sleep_for(duration);
  }
};

/// Stands still but for the sleeps, which it counts and does not wait for. For tests, one thread.
class ManualClock final : public Clock {
 public:
  explicit ManualClock(Moment now = {}) : now_(now) {}
  [[nodiscard]] Moment now() const override { return now_; }
  void sleepFor(std::chrono::nanoseconds duration) override {
    ++sleeps_;
    now_ += duration;
  }
  void set(Moment now) { now_ = now; }
  [[nodiscard]] int sleeps() const { return sleeps_; }

 private:
  Moment now_;
  int sleeps_ = 0;
};

}  // namespace kestrel
