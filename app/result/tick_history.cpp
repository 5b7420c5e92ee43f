#include "app/result/tick_history.h"

#include <QAction>
#include <QUndoCommand>
#include <utility>

#include "app/controller/app_delegate.h"
#include "ui/qt/bindings.h"
#include "ui/qt/text.h"

namespace kestrel {
namespace {

constexpr int mostSteps = 1000;
/// Of all steps together; each takes a few hundred bytes.
constexpr std::size_t mostGroups = 2'000'000;

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
  PickCommand(AppDelegate& delegate, SharedPickChange change, const QString& text)
      : DoneCommand(text), delegate_(delegate), change_(std::move(change)) {}
  void undo() override { delegate_.putBack(change_, false); }

 protected:
  void again() override { delegate_.putBack(change_, true); }

 private:
  AppDelegate& delegate_;
  SharedPickChange change_;
};

class LeaveOutCommand final : public DoneCommand {
 public:
  LeaveOutCommand(AppDelegate& delegate, std::vector<TrackIDs> groups, const QString& text)
      : DoneCommand(text), delegate_(delegate), groups_(std::move(groups)) {}
  void undo() override { delegate_.setDuplicates(groups_); }

 protected:
  void again() override { delegate_.setNotDuplicates(groups_); }

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
  // The stack adds to the text what would be undone; these stay for lists of what there is.
  for (QAction* action : {undo_, redo_}) action->setIconText(action->iconText());
  undo_->setShortcut(QKeySequence::Undo);
  redo_->setShortcuts(
      {QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_Z), QKeySequence(Qt::CTRL | Qt::Key_Y)});
  delegate_.picksChanged = [this](const SharedPickChange& change) { add(change); };
  delegate_.groupsLeftOut = [this](std::vector<TrackIDs> groups) {
    const auto count = static_cast<std::int64_t>(groups.size());
    stack_.push(new LeaveOutCommand(
        delegate_, std::move(groups),
        toQt(Message::tr("leaving out %Ln groups", "leaving out %Ln group", count))));
    reload();
  };
  observe(this, delegate_.observers, [this] { reload(); });
  connect(&stack_, &QUndoStack::indexChanged, this, [this] { reload(); });
  // The stack enables its actions itself, also while what they did is still being carried out.
  connect(&stack_, &QUndoStack::canUndoChanged, this, [this] { reload(); });
  connect(&stack_, &QUndoStack::canRedoChanged, this, [this] { reload(); });
}

// The stack empties itself, and says so, when the members after it are gone.
TickHistory::~TickHistory() { stack_.disconnect(this); }

void TickHistory::add(const SharedPickChange& change) {
  const std::size_t count = change->after.size();
  // What a few clicks have done to a large library would fill the memory in time.
  groups_ += count;
  if (groups_ > mostGroups) {
    stack_.clear();
    groups_ = count;
  }
  stack_.push(new PickCommand(
      delegate_, change,
      toQt(Message::tr("the choice in %Ln groups", "the choice in %Ln group", countOf(count)))));
  reload();
}

void TickHistory::reload() {
  if (delegate_.libraryPath() != library_) {
    stack_.clear();
    groups_ = 0;
    library_ = delegate_.libraryPath();
  }
  undo_->setEnabled(!delegate_.isBusy() && stack_.canUndo());
  redo_->setEnabled(!delegate_.isBusy() && stack_.canRedo());
}

}  // namespace kestrel
