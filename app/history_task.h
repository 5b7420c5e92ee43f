/// Work for the worker with a result that comes back to a window.
///
/// The work must hold all that it needs: the window may be gone before it ends. Its result is then
/// dropped, as is its failure, which the log has.
#pragma once

#include <QPointer>
#include <QString>
#include <QWidget>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "app/app_delegate.h"

namespace kestrel {

struct TaskFailure {
  Message problem;                ///< what happened and what to do
  std::string unreadableHistory;  ///< the file, when the history itself is what failed
};

/// Runs `work`; what it throws, if it does. Not for the main thread.
std::optional<TaskFailure> failureOf(const std::function<void()>& work);

/// Shows a failure over `window` under the title `failed`; `afterwards` is called when the user has
/// read it. An unreadable history can be put aside there.
void tellFailure(AppDelegate& delegate, QWidget* window, const QString& failed,
                 const TaskFailure& failure, std::function<void()> afterwards);

/// Runs `work` when no task is running, and gives its result to `done` when tasks are allowed
/// again. What it throws is told as above.
template <typename Result>
void runTask(
    AppDelegate& delegate, QWidget* window, const QString& failed, std::function<Result()> work,
    std::function<void(Result)> done, std::function<void()> afterwards = [] {}) {
  struct Shared {
    std::optional<Result> result;
    std::optional<TaskFailure> failure;
  };
  auto shared = std::make_shared<Shared>();
  const auto guarded = [shared, work = std::move(work)] {
    shared->failure = failureOf([&] { shared->result.emplace(work()); });
  };
  const auto told = [shared, failed, owner = QPointer<QWidget>(window), &delegate,
                     done = std::move(done), afterwards = std::move(afterwards)] {
    if (shared->failure)
      tellFailure(delegate, owner, failed, *shared->failure, afterwards);
    else if (owner)
      done(std::move(*shared->result));
  };
  delegate.whenIdle([&delegate, guarded, told] { delegate.run(guarded, told); });
}

}  // namespace kestrel
