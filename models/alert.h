/// A question or a warning, built here and shown by the program.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace kestrel {

struct Alert {
  std::string message;
  std::string informativeText;
  /// Titles; the result of showing the alert is the position of the one pressed. The first is the
  /// default button and stands rightmost.
  std::vector<std::string> buttons;

  friend bool operator==(const Alert&, const Alert&) = default;
};

}  // namespace kestrel

namespace kestrel::TextSorter {

/// The buttons' order is default, other, alternate, whatever the order of the arguments: callers
/// tell the buttons by their number, so it must stay.
Alert alertWithMessage(std::string message, std::string defaultButton,
                       std::optional<std::string> alternateButton,
                       std::optional<std::string> otherButton, std::string informativeText);

}  // namespace kestrel::TextSorter
