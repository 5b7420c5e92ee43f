/// Counts in the background what each field that is not ticked would do to the number of groups.
#pragma once

#include <QObject>
#include <atomic>
#include <memory>

#include "app/choices/match_section.h"

class QTimer;

namespace kestrel {

class AppDelegate;

class FieldPreviews final : public QObject {
  Q_OBJECT

 public:
  /// Must not outlive the controller.
  explicit FieldPreviews(AppDelegate& delegate);

  /// What was counted, or is being counted, is no answer any more; counts anew when the controller
  /// is idle.
  void outdate();

 Q_SIGNALS:
  /// Empty while it is not known.
  void counted(const FieldPreview& preview);

 private:
  void count();
  /// Tells what is known, with how many groups the table shows, if it shows what is ticked.
  void tell();

  AppDelegate& delegate_;
  QTimer* pause_;
  std::shared_ptr<std::atomic<int>> wanted_;  ///< the number of the count that is
  bool isKnown_ = false;
  FieldPreview counted_;
};

}  // namespace kestrel
