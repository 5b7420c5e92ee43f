#include "app/changes/playlist_windows.h"

#include <QDialog>

#include "app/controller/app_delegate.h"
#include "app/libraries/change_notice.h"

namespace kestrel {

PlaylistCommands playlistCommands(AppDelegate& delegate, QWidget* window) {
  // A command that opens what `make` makes of its argument, if it has one.
  const auto opens = [&delegate, window](auto make) {
    return [&delegate, window, make](auto... argument) {
      if (!delegate.application()) return;
      onceAsRead(delegate, window, [&delegate, window, make, argument...] {
        QDialog* dialog = make(delegate, argument..., window);
        QObject::connect(dialog, &QDialog::finished, window, [&delegate, window] {
          window->activateWindow();
          // What it has added or removed is read when it keeps the user waiting no more.
          delegate.refreshIfDue();
        });
        dialog->open();
      });
    };
  };
  return {opens(newReplaylistWindow), opens(newTrashDialog),   opens(newRemoveDialog),
          opens(newCleanUpWindow),    opens(newHistoryWindow), opens(newAddFilesDialog)};
}

}  // namespace kestrel
