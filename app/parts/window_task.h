/// Work for the worker with a result that comes back to a window.
///
/// The work must hold all that it needs: the window may be gone before it ends. Its result is then
/// told to nobody but `always`; its failure is dropped, and in the log.
#pragma once

#include <QPointer>
#include <QString>
#include <QWidget>
#include <functional>
#include <memory>
#include <optional>
#include <utility>

#include "app/controller/app_delegate.h"

namespace kestrel {

/// Shows a failure over `window` under the title `failed`; `afterwards` is called when the user has
/// read it. An unreadable history can be put aside there.
void tellFailure(AppDelegate& delegate, QWidget* window, const QString& failed,
                 const TaskFailure& failure, std::function<void()> afterwards);

/// Runs `work` when no task is running, and gives its result to `done` when tasks are allowed
/// again. What it throws is told as above. `always` has the result first, and whether or not the
/// window is still there. Work that has to wait until another library is open is not begun.
template <typename Result>
void runTask(
    AppDelegate& delegate, QWidget* window, const QString& failed, std::function<Result()> work,
    std::function<void(Result)> done, std::function<void()> afterwards = [] {},
    std::function<void(const Result&)> always = {}) {
  const auto result = std::make_shared<std::optional<Result>>();
  const QPointer<QWidget> owner = window;
  delegate.whenIdleHere(
      [=, &delegate] {
        delegate.run([=] { result->emplace(work()); },
                     [=] {
                       if (always) always(**result);
                       if (owner) done(std::move(**result));
                     },
                     [=, &delegate](const TaskFailure& failure) {
                       tellFailure(delegate, owner, failed, failure, afterwards);
                     });
      },
      [owner, afterwards] {
        if (owner) afterwards();
      });
}

}  // namespace kestrel
