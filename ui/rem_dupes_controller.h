/// The clean-up window: finds the playlists that list a track more than once and shows them, under
/// their folders, with the entries to delete. Deleting them is the application controller's, once
/// the user has confirmed.
///
/// Operations of the class RemDupesController over the containers that it keeps in the process. The
/// controller starts no scan while another, or a survey, is running.
#pragma once

#include <exception>
#include <vector>

#include "cleanup/repeats.h"
#include "ui/models/outline_model.h"
#include "ui/models/view_models.h"

namespace kestrel {

/// The parts of the window. The outline is `remdupesTreeController` and `remdupesOutlineView` in
/// one. It has no context menu.
struct RemDupesWindowReferences {
  Window remdupesWindow;
  OutlineModel<RemDupesRecord> remdupesTreeController;
  StatusText remdupesProgressStatus;
  ProgressBar remdupesProgressSpinner;
  Button remdupesOkButton, remdupesCancelButton;

  RemDupesWindowReferences() {
    // A spinner has no end to count to; it is seen by its turning.
    remdupesProgressSpinner.setIndeterminate(true);
    remdupesProgressSpinner.setHidden(false);
  }
};

/// Empty at first. The outline keeps what it shows when a scan finds nothing.
struct RemDupesState {
  RepeatScan lastScan;         ///< what the last scan has found
  RepeatScan found;            ///< what the last scan that found something has
  std::exception_ptr failure;  ///< why the last background task broke off, if it did
  RemDupesWindowReferences window;
};

}  // namespace kestrel

namespace kestrel::RemDupesController {

/// The containers and the window, kept in the process.
RemDupesState& state();

/// Starts a scan of the library's playlists, read anew, on the background queue and returns. The
/// status text says "Fetching playlists..." meanwhile, then nothing, or "No results.". A library
/// that cannot be read has no playlists.
void beginRemDupes();

/// The outline's top level: folders, then playlists.
const std::vector<RemDupesRow>& storedPlaylistArray();
/// Folders that are shown because they hold an affected playlist. Emptied by every scan.
const SharedRecords<RemDupesRecord>& storedJustFolders();
/// The affected playlists that are in a folder.
const SharedRecords<RemDupesRecord>& childPlaylists();

/// Reveals the first selected playlist in the music application, on the background queue. Without a
/// selection it does nothing.
void doubleClickedAction();

}  // namespace kestrel::RemDupesController
