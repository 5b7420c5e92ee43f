#include "app/playlist_windows.h"

#include <QDialog>
#include <utility>

#include "app/controller/app_delegate.h"

namespace kestrel {

PlaylistCommands playlistCommands(AppDelegate& delegate, QWidget* window) {
  // A command that opens what `make` makes of its argument, if it has one.
  const auto opens = [&delegate, window](auto make) {
    return [&delegate, window, make](auto... argument) {
      if (!delegate.application()) return;
      QDialog* dialog = make(delegate, std::move(argument)..., window);
      QObject::connect(dialog, &QDialog::finished, window, [&delegate, window] {
        window->activateWindow();
        // What it has added or removed is read when it keeps the user waiting no more.
        delegate.refreshIfDue();
      });
      dialog->open();
    };
  };
  return {opens(newReplaylistWindow), opens(newTrashDialog),   opens(newRemoveDialog),
          opens(newCleanUpWindow),    opens(newHistoryWindow), opens(newAddFilesDialog)};
}

}  // namespace kestrel
