/// A window, as far as the logic behind it cares. Changed by tasks of the main queue only.
#pragma once

#include <string>
#include <utility>

#include "ui/models/observers.h"

namespace kestrel {

class Window {
 public:
  [[nodiscard]] const std::string& title() const noexcept { return title_; }
  [[nodiscard]] bool isVisible() const noexcept { return visible_; }
  void setTitle(std::string title) {
    title_ = std::move(title);
    observers.notify();
  }
  void setVisible(bool visible) {
    if (visible == visible_) return;
    visible_ = visible;
    observers.notify();
  }

  Observers observers;

 private:
  std::string title_;
  bool visible_ = false;
};

}  // namespace kestrel
