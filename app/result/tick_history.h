/// Undo and redo of what the user does to ticks and groups.
#pragma once

#include <QUndoStack>
#include <cstddef>
#include <string>

#include "app/controller/group_picks.h"

class QAction;

namespace kestrel {

class AppDelegate;

/// Follows the controller's changes. What it puts back is refused while a task runs, when its
/// actions are disabled. What was done outlives searches of the same library; with another one it
/// begins anew.
class TickHistory final : public QObject {
  Q_OBJECT

 public:
  /// `delegate` must outlive it.
  TickHistory(AppDelegate& delegate, QObject* parent);
  ~TickHistory() override;

  [[nodiscard]] QAction* undoAction() const { return undo_; }
  [[nodiscard]] QAction* redoAction() const { return redo_; }
  /// Enables the actions, or not, as the controller's state has it.
  void reload();

 private:
  void add(const SharedPickChange& change);

  AppDelegate& delegate_;
  QUndoStack stack_;
  QAction* undo_;
  QAction* redo_;
  std::string library_;     ///< of which the steps are
  std::size_t groups_ = 0;  ///< in them, at most
};

}  // namespace kestrel
