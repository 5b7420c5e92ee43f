#include "app/parts/window_task.h"

#include <QCoreApplication>

#include "history/history.h"
#include "platform/log.h"
#include "ui/process.h"
#include "ui/qt/bindings.h"
#include "ui/qt/text.h"

namespace kestrel {
namespace {

struct Task {
  Q_DECLARE_TR_FUNCTIONS(kestrel::Task)
};

}  // namespace

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
