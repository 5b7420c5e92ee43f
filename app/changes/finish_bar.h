/// The steps that lead from a result to a library without duplicates, along the window's bottom:
/// review the groups, repair the playlists, remove the copies.
#pragma once

#include <QPushButton>
#include <QWidget>
#include <array>
#include <atomic>
#include <functional>
#include <memory>
#include <optional>

#include "app/controller/repair_count.h"

class QTimer;

namespace kestrel {

class AppDelegate;

/// A step: its number, what it does, and how much that is.
class FinishStep final : public QPushButton {
  Q_OBJECT

 public:
  FinishStep(int number, std::function<void()> pressed);
  enum class State { ahead, next, done };
  void show(const QString& title, const QString& amount, State state);
  [[nodiscard]] QSize sizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  int number_;
  QString amount_;
  State state_ = State::ahead;
};

class FinishBar final : public QWidget {
  Q_OBJECT

 public:
  struct Commands {
    std::function<void()> review, repair, remove, trash;
  };

  FinishBar(AppDelegate& delegate, Commands commands);

 private:
  void reload();
  /// Counts anew what playlists hold, once nothing has changed for a moment.
  void recount();
  [[nodiscard]] bool removes() const;

  AppDelegate& delegate_;
  QTimer* pause_;
  std::shared_ptr<std::atomic<int>> counting_;  ///< the number of the count that is wanted
  std::optional<RepairCount> repairs_;
  WaitingCopies waiting_;  ///< of the same count
  std::array<FinishStep*, 3> steps_;
};

}  // namespace kestrel
