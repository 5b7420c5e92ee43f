/// A panel that opens over a window and keeps its user waiting, such as the launch progress.
/// Changed by tasks of the main queue only.
#pragma once

#include "ui/models/observers.h"

namespace kestrel {

class Window;

class Sheet {
 public:
  [[nodiscard]] bool isOpen() const noexcept { return over_ != nullptr; }
  /// The window below, which must outlive the opening; nullptr when closed.
  [[nodiscard]] const Window* over() const noexcept { return over_; }
  /// Opening an open sheet moves it to the given window.
  void open(const Window& over) { change(&over); }
  void close() { change(nullptr); }

  Observers observers;

 private:
  void change(const Window* over) {
    if (over == over_) return;
    over_ = over;
    observers.notify();
  }

  const Window* over_ = nullptr;
};

}  // namespace kestrel
