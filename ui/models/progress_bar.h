/// A progress bar without a window.
///
/// Holds exactly what it was told: values outside the range and a range of 0 to 0 are kept, and it
/// is for the widget to make sense of them. Changed by tasks of the main queue only.
#pragma once

#include <cstdint>

#include "platform/queues.h"
#include "ui/models/observers.h"

namespace kestrel {

class ProgressBar final : public Advanceable {
 public:
  [[nodiscard]] bool isIndeterminate() const noexcept { return indeterminate_; }
  [[nodiscard]] bool isHidden() const noexcept { return hidden_; }
  [[nodiscard]] bool isAnimating() const noexcept { return animating_; }
  [[nodiscard]] double minimum() const noexcept { return minimum_; }
  [[nodiscard]] double maximum() const noexcept { return maximum_; }
  [[nodiscard]] double value() const noexcept { return value_; }
  /// Single advances so far; setting the value does not count.
  [[nodiscard]] std::uint64_t advances() const noexcept { return advances_; }

  void setIndeterminate(bool indeterminate) { change(indeterminate_, indeterminate); }
  void setHidden(bool hidden) { change(hidden_, hidden); }
  void setMinimum(double minimum) { change(minimum_, minimum); }
  void setMaximum(double maximum) { change(maximum_, maximum); }
  void setValue(double value) { change(value_, value); }
  void startAnimation() { change(animating_, true); }
  void stopAnimation() { change(animating_, false); }
  /// Use TaskQueue::postAdvance from other threads.
  void advance(double total, std::uint64_t times = 1) override {
    advances_ += times;
    change(value_, value_ + total);
  }

  Observers observers;

 private:
  template <typename T>
  void change(T& member, T value) {
    if (member == value) return;
    member = value;
    observers.notify();
  }

  bool indeterminate_ = false;
  bool hidden_ = true;
  bool animating_ = false;
  double minimum_ = 0;
  double maximum_ = 0;
  double value_ = 0;
  std::uint64_t advances_ = 0;
};

}  // namespace kestrel
