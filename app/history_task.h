/// Work for the worker with a result that comes back to a window.
///
/// The work must hold all that it needs: the window may be gone before it ends. Its result is then
/// dropped, as is its failure, which the log has.
#pragma once

#include <QPointer>
#include <QString>
#include <QWidget>
#include <exception>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "app/app_delegate.h"
#include "library/process.h"
#include "models/alert.h"
#include "platform/log.h"
#include "ui/qt/bindings.h"
#include "ui/qt/text.h"

namespace kestrel {

/// Runs `work` when no task is running, and gives its result to `done` when tasks are allowed
/// again. What it throws is shown over `window` under the title `failed`; `afterwards` follows
/// when the user has read it.
template <typename Result>
void runTask(
    AppDelegate& delegate, QWidget* window, const QString& failed, std::function<Result()> work,
    std::function<void(Result)> done, std::function<void()> afterwards = [] {}) {
  struct Shared {
    std::optional<Result> result;
    std::string problem;
  };
  auto shared = std::make_shared<Shared>();
  const auto guarded = [shared, work = std::move(work)] {
    try {
      shared->result.emplace(work());
    } catch (const std::bad_alloc&) {
      shared->problem =
          fromQt(QObject::tr("There is not enough memory. Close other programs and "
                             "try again."));
    } catch (const std::exception& error) {
      shared->problem = error.what();
    }
  };
  const auto told = [shared, failed, owner = QPointer<QWidget>(window), &delegate,
                     done = std::move(done), afterwards = std::move(afterwards)] {
    if (!shared->result) delegate.process().with.log.line(fromQt(failed) + " " + shared->problem);
    if (!owner) return;
    if (shared->result)
      done(std::move(*shared->result));
    else
      showAlert(owner, {fromQt(failed), shared->problem, {fromQt(QObject::tr("OK"))}},
                [afterwards](int) { afterwards(); });
  };
  delegate.whenIdle([&delegate, guarded, told] { delegate.run(guarded, told); });
}

}  // namespace kestrel
