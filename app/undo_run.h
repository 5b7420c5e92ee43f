/// Taking a run back, with the questions that it takes.
#pragma once

#include <QStringList>
#include <cstdint>
#include <functional>
#include <optional>

#include "changes/undo.h"

class QWidget;

namespace kestrel {

class AppDelegate;

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
  std::function<void(UndoReport)> done;
  std::function<void()> notDone;  ///< the user or the library did not want it
  /// See UndoOptions; on the worker.
  std::function<void(const ApplyProgress&)> progress = {};
  std::function<bool()> cancelled = {};
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
