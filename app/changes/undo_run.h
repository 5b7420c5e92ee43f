/// Taking a run back, with the questions that it takes.
#pragma once

#include <QPointer>
#include <QStringList>
#include <QWidget>
#include <cstdint>
#include <functional>
#include <optional>

#include "changes/undo.h"

namespace kestrel {

class AppDelegate;
class TaskQueue;

/// What a run tells from its thread of how far it is, for a window: thousands of files a second
/// would keep it busy with nothing but their names. Told while the window is there.
std::function<void(const ApplyProgress&)> progressFor(
    TaskQueue& queue, QPointer<QWidget> window, std::function<void(const ApplyProgress&)> show);

/// Whether it can be taken back without a question.
bool canBeUndone(const UndoItem& item);
/// What was taken back, and what was not and why.
QStringList linesOf(const UndoReport& report);
/// What the user can do about that which was not.
QString whatToDo(const UndoReport& report);

/// When to ask the user before anything is done.
enum class UndoQuestion : std::uint8_t {
  always,         ///< what is taken back is not on the screen
  ifChangedSince  ///< the user has just seen the run end
};

struct UndoCallbacks {
  std::function<void()> begun = [] {};  ///< all questions are answered
  /// On the main thread, now and then, while files come back.
  std::function<void(const ApplyProgress&)> progress = {};
  std::function<bool()> cancelled = {};  ///< as of `UndoOptions`
  std::function<void(UndoReport)> done;
  std::function<void()> notDone;  ///< the user or the library did not want it
  /// `done` shows what did not come back, and why; else a sheet does.
  bool tellsItself = false;
};

/// Says over the window what came back, what did not and why, and what to do.
void showWhatStays(QWidget* window, const UndoReport& report);

/// Takes a run back, or one playlist of it (its ID before the run). What was changed since is
/// shown first, and the user asked whether to take back the rest.
void undoAsking(AppDelegate& delegate, QWidget* window, std::int64_t run,
                std::optional<std::uint64_t> playlist, UndoQuestion question,
                UndoCallbacks callbacks);

}  // namespace kestrel
