/// The replaylist window: finds the playlists that hold non-keepers, shows them, and says on the
/// user's confirmation which of their entries are to become which tracks.
///
/// Operations of the class ReplaylistControl over its containers, which are kept in the process;
/// also those by which a scripted application's playlists are replaced. The controller starts no
/// survey or confirmation while another is at work.
#pragma once

#include <cstdint>
#include <exception>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "foundation/dates.h"
#include "foundation/identifiers.h"
#include "foundation/property_list.h"
#include "musicapp/scripted/stored_document.h"
#include "platform/clock.h"
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
  std::unique_ptr<ShortDateTimeFormatter> dates;  ///< of the main thread; made on first use
};

/// What replacing the entries of a scripted application's playlists keeps. One run at a time may
/// use it; applications that can change entries where they are need none of it.
struct PlaylistDocumentState {
  StoredDocument storedXML;
  std::shared_ptr<MediaLibrary> storedLib;
  bool applicationAnswersWhenDone = false;  ///< see script::ReplacingServices
};

}  // namespace kestrel

namespace kestrel::ReplaylistControl {

ReplaylistState& state();

/// For texts of the window, in the user's locale and zone. On the main thread.
ShortDateTimeFormatter& shortDates();

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

/// The keeper of a non-keeper, by hexadecimal ID; nothing for other tracks. Knows the non-keepers
/// of the last `clickedOK`, none before.
std::optional<std::string> processAPid(std::string_view hexpid);
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

/// The rows inside the folder with this hexadecimal ID, recursively.
std::vector<ReplaylistRow> getFolders(std::string_view hexpid);
/// Adds nothing: the records do not have the keys by which it would climb, so that only the direct
/// parents of affected playlists take part.
inline void containerIDsLoop(const SharedRecords<ReplaylistRecord>&,
                             const SharedRecords<ReplaylistRecord>&) {}

/// The hexadecimal form; "0" for a missing number.
inline std::string decToHex(std::optional<std::uint64_t> number) {
  return TextSorter::decToHex(number.value_or(0));
}
using TextSorter::batchDecToHex;

// Replacing entries by playlist documents.

/// The stored library document, empty until the controller fills it; shared by all callers.
StoredDocument& storedXML();

/// Fills `storedXML` from the library document at `path`, unless it was filled from that file and
/// the file is still the same. Throws LibraryError, and leaves the stored document as it was, when
/// the file cannot be read.
void refreshStoredXML(const std::string& path);

/// The library, opened on the first successful call and then kept; nullptr when it cannot be
/// opened, and the next call tries again.
std::shared_ptr<MediaLibrary> storedLib();

/// "<application support>/Kestrel/", with the slash. Not created here.
std::string appSupportFolder();

/// The property list in a file; nothing when it is missing or does not parse. Only the XML format
/// is known here.
std::optional<PropertyList> returnContentsOfFile(const std::string& path);

/// Nothing when the file system does not tell.
std::optional<Moment> modDateOfFile(const std::string& path);

/// See script::replaceByDocument.
void buildXMLWith(std::span<const std::string> trackIDs, const std::string& name,
                  const std::string& oldPid);

/// See script::importAndReplace.
void addtohook(const std::string& path, const std::string& name, const std::string& oldPid);

}  // namespace kestrel::ReplaylistControl
