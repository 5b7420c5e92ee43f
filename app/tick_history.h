/// Undo and redo of what the user does to ticks and groups.
#pragma once

#include <QUndoStack>

class QAction;

namespace kestrel {

class AppDelegate;
struct PickChange;

/// Follows the controller's changes. What it puts back is refused while a task runs, when its
/// actions are disabled. A new search has other groups: it begins anew then.
class TickHistory final : public QObject {
  Q_OBJECT

 public:
  /// `delegate` must outlive it.
  TickHistory(AppDelegate& delegate, QObject* parent);

  [[nodiscard]] QAction* undoAction() const { return undo_; }
  [[nodiscard]] QAction* redoAction() const { return redo_; }
  /// Enables the actions, or not, as the controller's state has it.
  void reload();

 private:
  void add(PickChange change);

  AppDelegate& delegate_;
  QUndoStack stack_;
  QAction* undo_;
  QAction* redo_;
};

}  // namespace kestrel
