/// The containers and the window of the class ReplaylistControl, kept in the process.
#pragma once

#include <cstdint>
#include <exception>
#include <memory>
#include <optional>
#include <vector>

#include "foundation/dates.h"
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

enum class SurveyOutcome : std::uint8_t {
  none,            ///< no survey has ended yet, or one is running
  severalKeepers,  ///< nothing was surveyed; the user has been alerted
  noResults,
  found,
};

/// How the last survey ended, and what the window does not say of it.
struct SurveyReport {
  SurveyOutcome outcome = SurveyOutcome::none;
  std::optional<std::int32_t> severalKeepers;  ///< the first group with more than one keeper
  std::vector<SkippedGroup> skippedGroups;
  PlaylistSurvey playlists;
};

/// Empty at first; one survey or confirmation at a time may use it.
struct ReplaylistState {
  KeeperTable dbidDictionary;  ///< emptied by every survey
  /// What the last confirmation found in `dbidDictionary`.
  std::vector<std::uint64_t> allNonKeeperTrackIDs;
  IdMap allNonKeeperTrackIDsIndex;

  std::shared_ptr<const std::vector<ReplaylistRow>> storedPlaylistArray =
      std::make_shared<const std::vector<ReplaylistRow>>();
  SharedRecords<ReplaylistRecord> formattedPlaylists;  ///< user playlists that hold non-keepers
  SharedRecords<ReplaylistRecord> storedJustFolders;   ///< emptied by every survey
  SharedRecords<ReplaylistRecord> childPlaylists;

  SurveyReport report;
  std::exception_ptr failure;  ///< why the last background task broke off, if it did
  ReplaylistWindowReferences window;
  std::unique_ptr<ShortDateTimeFormatter> dates;  ///< of the main thread; made on first use
};

namespace ReplaylistControl {

ReplaylistState& state();

/// For texts of the window, in the user's locale and zone. On the main thread.
ShortDateTimeFormatter& shortDates();

}  // namespace ReplaylistControl
}  // namespace kestrel
