/// A question or a warning, built by logic and shown by the program.
#pragma once

#include <optional>
#include <utility>
#include <vector>

#include "foundation/message.h"
#include "ui/models/view_models.h"

namespace kestrel {

struct Alert {
  Message message;
  Message informativeText;
  /// Titles; the result of showing the alert is the position of the one pressed. The first is the
  /// default button and stands rightmost.
  std::vector<Message> buttons;

  friend bool operator==(const Alert&, const Alert&) = default;
};

/// Where logic puts an alert for the program to show. Changed by tasks of the main queue only.
class AlertPanel : public ViewModel {
 public:
  /// The alert that waits for the user; nothing when there is none.
  [[nodiscard]] const std::optional<Alert>& alert() const noexcept { return alert_; }
  /// Shows an alert, in place of one that still waits.
  void show(Alert alert) {
    alert_ = std::move(alert);
    observers.notify();
  }
  /// The user has pressed a button.
  void dismiss() { change<std::optional<Alert>>(alert_, std::nullopt); }

 private:
  std::optional<Alert> alert_;
};

}  // namespace kestrel

namespace kestrel::TextSorter {

/// The buttons' order is default, other, alternate, whatever the order of the arguments: callers
/// tell the buttons by their number, so it must stay.
inline Alert alertWithMessage(Message message, Message defaultButton,
                              std::optional<Message> alternateButton,
                              std::optional<Message> otherButton, Message informativeText) {
  Alert alert{std::move(message), std::move(informativeText), {std::move(defaultButton)}};
  for (std::optional<Message>* title : {&otherButton, &alternateButton})
    if (*title) alert.buttons.push_back(**std::move(title));
  return alert;
}

}  // namespace kestrel::TextSorter
