/// A line of text in a window that makes room for something else at times. Changed by tasks of the
/// main queue only.
#pragma once

#include "ui/models/observers.h"
#include "ui/models/status_text.h"

namespace kestrel {

class StatusLabel : public StatusText {
 public:
  [[nodiscard]] bool isHidden() const noexcept { return hidden_; }
  void setHidden(bool hidden) {
    if (hidden == hidden_) return;
    hidden_ = hidden;
    observers.notify();
  }

 private:
  bool hidden_ = false;
};

}  // namespace kestrel
