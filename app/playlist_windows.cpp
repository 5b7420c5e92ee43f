#include "app/playlist_windows.h"

#include <QDialog>
#include <utility>

#include "app/add_files_dialog.h"
#include "app/app_delegate.h"
#include "app/cleanup_window.h"
#include "app/history_window.h"
#include "app/replaylist_window.h"
#include "app/trash_dialog.h"

namespace kestrel {

PlaylistCommands playlistCommands(AppDelegate& delegate, QWidget* window) {
  // The windows delete themselves when they are closed.
  const auto show = [&delegate, window](QDialog* dialog) {
    QObject::connect(dialog, &QDialog::finished, window, [&delegate, window] {
      window->activateWindow();
      // What it has added or removed is read when it no longer keeps the user waiting.
      delegate.refreshIfDue();
    });
    dialog->open();
  };
  PlaylistCommands commands;
  commands.replaylist = [&delegate, window, show](ActionScope scope) {
    if (delegate.application()) show(new ReplaylistWindow(delegate, std::move(scope), window));
  };
  commands.cleanUp = [&delegate, window, show] {
    if (delegate.application()) show(new CleanUpWindow(delegate, window));
  };
  commands.trash = [&delegate, window, show](ActionScope scope) {
    if (delegate.application()) show(new TrashDialog(delegate, std::move(scope), window));
  };
  commands.history = [&delegate, window, show] {
    if (delegate.application()) show(new HistoryWindow(delegate, window));
  };
  commands.addFiles = [&delegate, window, show](std::vector<std::string> paths) {
    if (delegate.application()) show(new AddFilesDialog(delegate, std::move(paths), window));
  };
  return commands;
}

}  // namespace kestrel
