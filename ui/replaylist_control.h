/// The replaylist window: finds the playlists that hold non-keepers, shows them, and says on the
/// user's confirmation which of their entries are to become which tracks.
///
/// Operations of the class ReplaylistControl over its containers, which are kept in the process.
/// The controller starts no survey or confirmation while another is at work.
#pragma once

#include <cstdint>
#include <exception>
#include <memory>
#include <optional>
#include <vector>

#include "musicapp/media_library.h"
#include "replaylist/survey.h"
#include "ui/models/alert.h"
#include "ui/models/array_controller.h"
#include "ui/models/outline_model.h"
#include "ui/models/styled_text.h"
#include "ui/models/view_models.h"
#include "ui/tracks_panel.h"

namespace kestrel {

/// The parts of the replaylist window and of its tracks panel.
struct ReplaylistWindowReferences {
  Window replaylistWindow;
  StyledLabel header;
  OutlineModel<ReplaylistRecord> outline;
  StatusText progressStatus;
  ProgressBar progressSpinner;
  Button okButton, cancelButton;
  AlertPanel alert;

  Window tracksPanel;
  StatusText tracksPanelTitle;
  StyledLabel tracksPanelKeeperTitle;
  ArrayController<TracksPanelRow> knkArrayController;

  ReplaylistWindowReferences() {
    // A spinner has no end to count to; it is seen by its turning.
    progressSpinner.setIndeterminate(true);
    progressSpinner.setHidden(false);
  }
};

/// Empty at first; one survey or confirmation at a time may use it.
struct ReplaylistState {
  SurveyReport report;   ///< of the last survey; none while one is at work
  PlaylistSurvey found;  ///< by the last survey that found something: what the outline shows
  /// The keepers at the last confirmation.
  std::shared_ptr<const KeeperTable> confirmed = std::make_shared<const KeeperTable>();
  std::vector<std::uint64_t> allNonKeeperTrackIDs;  ///< of these
  std::exception_ptr failure;  ///< why the last background task broke off, if it did
  ReplaylistWindowReferences window;
  std::shared_ptr<MediaLibrary> storedLib;
};

}  // namespace kestrel

namespace kestrel::ReplaylistControl {

ReplaylistState& state();

/// Surveys the upper results table (`useBig`) or the lower one: its selected rows, or all when none
/// is selected. Returns at once; the work is done on the background queue, and the window told of
/// it. To be called on the main thread: the rows are taken before it returns, so that the tables
/// may change meanwhile.
///
/// Ends with an alert when a group has more than one keeper, with "No results." when no playlist
/// holds a non-keeper, else with the filled outline. `report()` then also tells what is left out.
void beginReplaylist(bool useBig);
/// The same for rows that the caller takes from the result, whole groups of them, which are
/// prepared first (`preparedRows`). What that leaves out is in the report as well, and no group
/// with several keepers ends the survey.
void beginReplaylist(std::vector<SurveyRow> rows);
const SurveyReport& report();

/// The user has confirmed: disables the outline and the buttons, and returns what is to be replaced
/// in the playlists selected in the outline, in the order of selecting (`replacementsIn`). On the
/// main thread.
std::vector<PlaylistReplacements> clickedOK();

/// The non-keepers that have a keeper, each once.
std::vector<std::uint64_t> returnAllNonKeepersSet();

/// Reveals the first selected playlist in the music application, on the background queue. Without a
/// selection it does nothing.
void doubleClickedAction();

/// Empty while a survey is at work.
const KeeperTable& dbidDictionary();
const std::vector<std::uint64_t>& allNonKeeperTrackIDs();
/// The outline's top level: folders, then playlists.
const std::vector<ReplaylistRow>& storedPlaylistArray();
const SharedRecords<ReplaylistRecord>& formattedPlaylists();
/// Emptied by every survey.
const SharedRecords<ReplaylistRecord>& storedJustFolders();
/// The affected playlists, then the parent folders of such, that are in a folder.
const SharedRecords<ReplaylistRecord>& childPlaylists();

/// The library, opened on the first successful call and then kept; nullptr when it cannot be
/// opened, and the next call tries again.
std::shared_ptr<MediaLibrary> storedLib();

}  // namespace kestrel::ReplaylistControl
