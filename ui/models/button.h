/// A button that can be dimmed. Changed by tasks of the main queue only.
#pragma once

#include "ui/models/observers.h"

namespace kestrel {

class Button {
 public:
  [[nodiscard]] bool isEnabled() const noexcept { return enabled_; }
  void setEnabled(bool enabled) {
    if (enabled == enabled_) return;
    enabled_ = enabled;
    observers.notify();
  }

  Observers observers;

 private:
  bool enabled_ = true;
};

}  // namespace kestrel
