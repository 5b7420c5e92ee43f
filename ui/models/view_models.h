/// The simple parts of windows, without a window: what logic sets, and widgets show.
///
/// All are changed by tasks of the main queue only.
#pragma once

#include <cstdint>
#include <string>
#include <utility>

#include "foundation/message.h"
#include "platform/queues.h"
#include "ui/models/observers.h"

namespace kestrel {

/// What can be observed and tells its changes.
class ViewModel {
 public:
  Observers observers;

 protected:
  template <typename T>
  void change(T& member, T value) {
    if (member == value) return;
    member = std::move(value);
    observers.notify();
  }
};

/// A window, as far as the logic behind it cares.
class Window : public ViewModel {
 public:
  [[nodiscard]] bool isVisible() const noexcept { return visible_; }
  void setVisible(bool visible) { change(visible_, visible); }

 private:
  bool visible_ = false;
};

/// A panel that opens over a window and keeps its user waiting, such as the launch progress.
class Sheet : public ViewModel {
 public:
  [[nodiscard]] bool isOpen() const noexcept { return over_ != nullptr; }
  /// The window below, which must outlive the opening; nullptr when closed.
  [[nodiscard]] const Window* over() const noexcept { return over_; }
  /// Opening an open sheet moves it to the given window.
  void open(const Window& over) { change(over_, &over); }
  void close() { change<const Window*>(over_, nullptr); }

 private:
  const Window* over_ = nullptr;
};

/// A button that can be dimmed.
class Button : public ViewModel {
 public:
  [[nodiscard]] bool isEnabled() const noexcept { return enabled_; }
  void setEnabled(bool enabled) { change(enabled_, enabled); }

 private:
  bool enabled_ = true;
};

/// A line of text in a window that says what is going on.
class StatusText : public ViewModel {
 public:
  /// In English; windows show `message()` in the user's language.
  [[nodiscard]] std::string text() const { return text_.english(); }
  [[nodiscard]] const Message& message() const noexcept { return text_; }
  void setText(Message text) { change(text_, std::move(text)); }

 private:
  Message text_;
};

/// A line of text that makes room for something else at times.
class StatusLabel : public StatusText {
 public:
  [[nodiscard]] bool isHidden() const noexcept { return hidden_; }
  void setHidden(bool hidden) { change(hidden_, hidden); }

 private:
  bool hidden_ = false;
};

/// A progress bar. Holds exactly what it was told: values outside the range and a range of 0 to 0
/// are kept, and it is for the widget to make sense of them.
class ProgressBar final : public ViewModel, public Advanceable {
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

 private:
  bool indeterminate_ = false;
  bool hidden_ = true;
  bool animating_ = false;
  double minimum_ = 0;
  double maximum_ = 0;
  double value_ = 0;
  std::uint64_t advances_ = 0;
};

}  // namespace kestrel
