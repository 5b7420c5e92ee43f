/// A window that changes the library: it shows what would change, carries that out once the user
/// wants it, with progress that can be stopped between two playlists or files, and shows what came
/// of it, with the button that takes it back.
#pragma once

#include <QDialog>

#include "app/parts/window_task.h"
#include "changes/plan.h"
#include "changes/trash_guard.h"

class QStackedWidget;

namespace kestrel {

class RunPage;

/// Makes a plan on the worker, right before it is carried out.
using PlanMaker = std::function<Plan(MusicApplication&)>;

/// Over its window, and deletes itself when it is closed.
class ChangeWindow : public QDialog {
 public:
  /// While a run is going on, asks it to stop in place of closing.
  void reject() override;

 protected:
  ChangeWindow(AppDelegate& delegate, QWidget* parent, const QString& title, QSize size);

  /// The page on which the user decides.
  void setDecision(QWidget* page);
  /// Shows the page of a run, which `title` heads while it is going on.
  void beginRun(const QString& title);
  /// Starts the run that has begun; once a page.
  void apply(Plan plan, const GuardOptions& guard = {});
  void apply(PlanMaker plan, const GuardOptions& guard = {});

  /// `runTask` for this window, which closes when the work fails.
  template <typename Result>
  void runOrClose(const QString& failed, std::function<Result()> work,
                  std::function<void(Result)> done) {
    runTask<Result>(delegate_, this, failed, std::move(work), std::move(done),
                    [this] { reject(); });
  }

  /// What a window says when it opens of a library that cannot be written.
  static QString cannotBeChanged(const Message& why);

  AppDelegate& delegate_;

 private:
  /// Looks at the library for what the user is to decide; again when nothing was changed by a run,
  /// since the library may have changed.
  virtual void look() = 0;
  /// A run has ended, or nothing was changed; the controller is idle.
  virtual void runEnded() {}

  QStackedWidget* pages_;
  RunPage* runPage_ = nullptr;
};

}  // namespace kestrel
