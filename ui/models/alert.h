/// A question or a warning, built here and shown by the program.
#pragma once

#include <optional>
#include <vector>

#include "foundation/message.h"

namespace kestrel {

struct Alert {
  Message message;
  Message informativeText;
  /// Titles; the result of showing the alert is the position of the one pressed. The first is the
  /// default button and stands rightmost.
  std::vector<Message> buttons;

  friend bool operator==(const Alert&, const Alert&) = default;
};

}  // namespace kestrel

namespace kestrel::TextSorter {

/// The buttons' order is default, other, alternate, whatever the order of the arguments: callers
/// tell the buttons by their number, so it must stay.
Alert alertWithMessage(Message message, Message defaultButton,
                       std::optional<Message> alternateButton, std::optional<Message> otherButton,
                       Message informativeText);

}  // namespace kestrel::TextSorter
