#include "app/history_task.h"

#include <QCoreApplication>
#include <exception>
#include <new>

#include "history/history.h"
#include "platform/log.h"
#include "ui/models/alert.h"
#include "ui/process.h"
#include "ui/qt/bindings.h"
#include "ui/qt/text.h"

namespace kestrel {
namespace {

struct Task {
  Q_DECLARE_TR_FUNCTIONS(kestrel::Task)
};

}  // namespace

std::optional<TaskFailure> failureOf(const std::function<void()>& work) {
  try {
    work();
  } catch (const HistoryError& error) {
    return TaskFailure{error.message, error.unreadable ? error.file : std::string()};
  } catch (const std::bad_alloc&) {
    return TaskFailure{
        Message::tr("There is not enough memory. Close other programs and try again."), {}};
  } catch (const std::exception& error) {
    return TaskFailure{messageOf(error), {}};
  }
  return std::nullopt;
}

void tellFailure(AppDelegate& delegate, QWidget* window, const QString& failed,
                 const TaskFailure& failure, std::function<void()> afterwards) {
  delegate.process().with.log.line(fromQt(failed) + " " + failure.problem.english());
  if (!window) return;
  const auto tellOnly = [window, failed, afterwards](const Message& problem) {
    showAlert(window, failed, toQt(problem), {Task::tr("OK")}, [afterwards](int) { afterwards(); });
  };
  if (failure.unreadableHistory.empty()) return tellOnly(failure.problem);
  showAlert(window, failed, toQt(failure.problem),
            {Task::tr("Put It Aside and Begin Anew"), Task::tr("Cancel")},
            [&delegate, file = failure.unreadableHistory, tellOnly, afterwards](int button) {
              if (button != 0) return afterwards();
              try {
                const Collaborators& with = delegate.process().with;
                with.log.line("history moved to " + History::moveAside(file, with.clock));
              } catch (const MessageError& error) {
                return tellOnly(error.message);
              }
              afterwards();
            });
}

}  // namespace kestrel
