/// The lower table in a window of its own: tracks that the user has picked out of the result.
#pragma once

#include <QWidget>

#include "ui/qt/review_table_view.h"

namespace kestrel {

class AppDelegate;

class SelectionWindow final : public QWidget {
  Q_OBJECT

 public:
  SelectionWindow(QWidget* parent, AppDelegate& delegate);
  [[nodiscard]] ReviewTableView& table() const { return *table_; }

 signals:
  /// The user has ticked something here; not `done`: a running task did not allow it.
  void ticked(bool done);

 private:
  KSMinDel delegate_;
  ResultTableModel rows_;
  ReviewTableView* table_;
};

}  // namespace kestrel
