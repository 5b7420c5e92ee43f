/// A line of text in a window that says what is going on. Changed by tasks of the main queue only.
#pragma once

#include <string>
#include <utility>

#include "models/observers.h"

namespace kestrel {

class StatusText {
 public:
  [[nodiscard]] const std::string& text() const noexcept { return text_; }
  void setText(std::string text) {
    if (text == text_) return;
    text_ = std::move(text);
    observers.notify();
  }

  Observers observers;

 private:
  std::string text_;
};

}  // namespace kestrel
