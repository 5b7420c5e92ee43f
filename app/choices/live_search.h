/// Searches again when what counts as a duplicate has changed: at once where a search takes next to
/// no time, else when the user has paused. A search that is running for what was chosen before is
/// stopped.
#pragma once

#include <QObject>

class QTimer;

namespace kestrel {

class AppDelegate;

class LiveSearch final : public QObject {
  Q_OBJECT

 public:
  /// Must not outlive the controller.
  explicit LiveSearch(AppDelegate& delegate);

  /// The criteria or their options have changed. Nothing is searched before the user has searched
  /// once, nor with criteria that match nothing.
  void criteriaChanged();

 private:
  void search();

  AppDelegate& delegate_;
  QTimer* pause_;
  bool isWaiting_ = false;  ///< for the running task to end
};

}  // namespace kestrel
