/// A line of text in a window that says what is going on. Changed by tasks of the main queue only.
#pragma once

#include <string>
#include <utility>

#include "foundation/message.h"
#include "ui/models/observers.h"

namespace kestrel {

class StatusText {
 public:
  /// In English; windows show `message()` in the user's language.
  [[nodiscard]] std::string text() const { return text_.english(); }
  [[nodiscard]] const Message& message() const noexcept { return text_; }
  void setText(Message text) {
    if (text == text_) return;
    text_ = std::move(text);
    observers.notify();
  }

  Observers observers;

 private:
  Message text_;
};

}  // namespace kestrel
