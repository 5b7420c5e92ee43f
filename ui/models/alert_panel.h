/// Where logic puts an alert for the program to show. Changed by tasks of the main queue only.
#pragma once

#include <optional>
#include <utility>

#include "ui/models/alert.h"
#include "ui/models/observers.h"

namespace kestrel {

class AlertPanel {
 public:
  /// The alert that waits for the user; nothing when there is none.
  [[nodiscard]] const std::optional<Alert>& alert() const noexcept { return alert_; }
  /// Shows an alert, in place of one that still waits.
  void show(Alert alert) {
    alert_ = std::move(alert);
    observers.notify();
  }
  /// The user has pressed a button.
  void dismiss() {
    if (!alert_) return;
    alert_.reset();
    observers.notify();
  }

  Observers observers;

 private:
  std::optional<Alert> alert_;
};

}  // namespace kestrel
