/// The clean-up window: finds the playlists that list a track more than once and shows them, under
/// their folders, with the entries to delete. Deleting them is the application controller's, once
/// the user has confirmed.
///
/// Operations of the class RemDupesController over the containers that it keeps in the process. The
/// controller starts no scan while another, or a survey, is running.
#pragma once

#include <cstdint>
#include <exception>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "cleanup/repeats.h"
#include "foundation/property_list.h"
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

/// Empty at first. `lastScan` is always what the last scan has found; the other containers keep
/// what they hold when a scan finds nothing, deliberately: so does the outline.
struct RemDupesState {
  std::shared_ptr<const std::vector<RemDupesRow>> storedPlaylistArray =
      std::make_shared<const std::vector<RemDupesRow>>();
  SharedRecords<RemDupesRecord> storedJustFolders;  ///< emptied by every scan
  SharedRecords<RemDupesRecord> childPlaylists;
  PropertyList storedXML;  ///< for the application controller; not used here
  RepeatScan lastScan;
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
/// Folders that are shown because they hold an affected playlist.
const SharedRecords<RemDupesRecord>& storedJustFolders();
/// The affected playlists that are in a folder.
const SharedRecords<RemDupesRecord>& childPlaylists();
PropertyList& storedXML();

/// The rows inside the folder with this hexadecimal ID, recursively.
std::vector<RemDupesRow> getFolders(std::string_view hexpid);
/// Adds nothing, deliberately: no folder above the parents of affected playlists is shown. A climb
/// would need the parents' parents, which these records do not name under the key it looks at.
void containerIDsLoop(const SharedRecords<RemDupesRecord>& found,
                      const SharedRecords<RemDupesRecord>& pool);

/// Reveals the first selected playlist in the music application, on the background queue. Without a
/// selection it does nothing.
void doubleClickedAction();

/// The file's property list; nothing when it cannot be read or is none. XML only: this is the form
/// in which music libraries come.
std::optional<PropertyList> returnContentsOfFile(const std::string& path);

/// The hexadecimal form; "0" for a missing number.
std::string decToHex(std::optional<std::uint64_t> number);
std::vector<std::string> batchDecToHex(std::span<const std::uint64_t> numbers);

}  // namespace kestrel::RemDupesController
