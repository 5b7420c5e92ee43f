/// The commands of the main window that change a library, and the windows behind them.
///
/// Every change is shown before it is made, made on the worker, and written into the history, from
/// which it can be taken back. The windows expect that the background queue of the process is the
/// controller's worker, so that a survey has ended when a task that was posted after it runs.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "app/parts/scope_box.h"

class QDialog;
class QWidget;

namespace kestrel {

class AppDelegate;
struct ReplaylistWindowReferences;

/// What the main window calls, each while no task is running.
struct PlaylistCommands {
  std::function<void(ActionScope)> replaylist, trash, remove;
  std::function<void()> cleanUp, history;
  /// Audio files that are to be added to the library, by their paths.
  std::function<void(std::vector<std::string>)> addFiles;
};

/// All of them, with windows over `window`. Both must outlive the commands.
PlaylistCommands playlistCommands(AppDelegate& delegate, QWidget* window);

/// The windows themselves. They begin with their work at once, delete themselves when they are
/// closed, and while a run is going on closing asks it to stop.
QDialog* newReplaylistWindow(AppDelegate& delegate, ActionScope scope, QWidget* parent);
QDialog* newCleanUpWindow(AppDelegate& delegate, QWidget* parent);
QDialog* newTrashDialog(AppDelegate& delegate, ActionScope scope, QWidget* parent);
QDialog* newRemoveDialog(AppDelegate& delegate, ActionScope scope, QWidget* parent);
QDialog* newHistoryWindow(AppDelegate& delegate, QWidget* parent);
QDialog* newAddFilesDialog(AppDelegate& delegate, std::vector<std::string> paths, QWidget* parent);
/// The replaylist window's tracks panel: each non-keeper next to its keeper. Shown and hidden by
/// `ReplaylistControl::toggleTracksPanel`.
QWidget* newTracksPanel(AppDelegate& delegate, ReplaylistWindowReferences& window);

}  // namespace kestrel
