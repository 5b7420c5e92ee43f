#include "app/tick_history.h"

#include <QAction>
#include <QCoreApplication>
#include <QUndoCommand>
#include <utility>

#include "app/controller/app_delegate.h"
#include "ui/qt/bindings.h"
#include "ui/qt/text.h"

namespace kestrel {
namespace {

constexpr int mostSteps = 1000;

/// What has happened already when it is pushed: the stack's first `redo` does nothing.
class DoneCommand : public QUndoCommand {
 public:
  using QUndoCommand::QUndoCommand;
  void redo() final {
    if (std::exchange(isDone_, true)) again();
  }

 protected:
  virtual void again() = 0;

 private:
  bool isDone_ = false;
};

class PickCommand final : public DoneCommand {
 public:
  PickCommand(AppDelegate& delegate, PickChange change, const QString& text)
      : DoneCommand(text), delegate_(delegate), change_(std::move(change)) {}
  void undo() override { delegate_.putBack(change_.before, change_.pass); }

 protected:
  void again() override { delegate_.putBack(change_.after, change_.pass); }

 private:
  AppDelegate& delegate_;
  PickChange change_;
};

class LeaveOutCommand final : public DoneCommand {
 public:
  LeaveOutCommand(AppDelegate& delegate, std::vector<TrackIDs> groups, const QString& text)
      : DoneCommand(text), delegate_(delegate), groups_(std::move(groups)) {}
  void undo() override {
    // The stack is emptied by the search that follows, which it must not be while it works.
    QMetaObject::invokeMethod(
        qApp,
        [&delegate = delegate_, groups = groups_] {
          delegate.whenIdle([&delegate, groups] { delegate.setDuplicates(groups); });
        },
        Qt::QueuedConnection);
  }

 protected:
  /// Never asked: undoing has emptied the stack.
  void again() override {}

 private:
  AppDelegate& delegate_;
  std::vector<TrackIDs> groups_;
};

}  // namespace

TickHistory::TickHistory(AppDelegate& delegate, QObject* parent)
    : QObject(parent),
      delegate_(delegate),
      undo_(stack_.createUndoAction(this, tr("&Undo"))),
      redo_(stack_.createRedoAction(this, tr("&Redo"))) {
  stack_.setUndoLimit(mostSteps);
  undo_->setShortcut(QKeySequence::Undo);
  redo_->setShortcuts(
      {QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_Z), QKeySequence(Qt::CTRL | Qt::Key_Y)});
  delegate_.picksChanged = [this](PickChange change) { add(std::move(change)); };
  delegate_.groupsLeftOut = [this](std::vector<TrackIDs> groups) {
    const auto count = static_cast<std::int64_t>(groups.size());
    stack_.push(new LeaveOutCommand(
        delegate_, std::move(groups),
        toQt(Message::tr("leaving out %Ln groups", "leaving out %Ln group", count))));
    reload();
  };
  observe(this, delegate_.observers, [this] { reload(); });
  connect(&stack_, &QUndoStack::indexChanged, this, [this] { reload(); });
}

void TickHistory::add(PickChange change) {
  const auto count = static_cast<std::int64_t>(change.after.size());
  stack_.push(new PickCommand(
      delegate_, std::move(change),
      toQt(Message::tr("the choice in %Ln groups", "the choice in %Ln group", count))));
  reload();
}

void TickHistory::reload() {
  const Activity activity = delegate_.activity();
  // Not while the stack works: its commands begin no search at once.
  if (activity == Activity::search || activity == Activity::opening) stack_.clear();
  undo_->setEnabled(!delegate_.isBusy() && stack_.canUndo());
  redo_->setEnabled(!delegate_.isBusy() && stack_.canRedo());
}

}  // namespace kestrel
