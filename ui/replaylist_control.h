/// The replaylist run: finds the playlists that hold non-keepers, shows them, and says on the
/// user's confirmation which of their entries are to become which tracks.
///
/// Operations of the class ReplaylistControl. The controller starts no survey or confirmation while
/// another runs.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "replaylist/survey.h"
#include "ui/replaylist_state.h"

namespace kestrel {

/// What is to be replaced in a playlist; at least one pair.
struct PlaylistReplacements {
  std::shared_ptr<const ReplaylistRecord> record;
  std::vector<KeeperPair> pairs;  ///< one for each track, in playlist order
};

}  // namespace kestrel

namespace kestrel::ReplaylistControl {

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

/// The user has confirmed: disables the outline and the buttons, and returns for each playlist
/// selected in the outline, in the order of selecting, what is to be replaced. A selected folder
/// takes part like a playlist, by the tracks that it holds; rebuilding it as one is out of the
/// question, which is for the caller to see to. On the main thread.
std::vector<PlaylistReplacements> clickedOK();

/// The keeper of a non-keeper, by hexadecimal ID; nothing for other tracks. Knows the non-keepers
/// of the last `clickedOK`, none before.
std::optional<std::string> processAPid(std::string_view hexpid);
/// The non-keepers that have a keeper, each once.
std::vector<std::uint64_t> returnAllNonKeepersSet();

/// Reveals the first selected playlist in the music application, on the background queue. Without a
/// selection it does nothing.
void doubleClickedAction();

const KeeperTable& dbidDictionary();
const std::vector<std::uint64_t>& allNonKeeperTrackIDs();
/// The outline's top level: folders, then playlists.
const std::vector<ReplaylistRow>& storedPlaylistArray();
const SharedRecords<ReplaylistRecord>& formattedPlaylists();
const SharedRecords<ReplaylistRecord>& storedJustFolders();
/// The affected playlists, then the parent folders of such, that are in a folder.
const SharedRecords<ReplaylistRecord>& childPlaylists();

/// The rows inside the folder with this hexadecimal ID, recursively.
std::vector<ReplaylistRow> getFolders(std::string_view hexpid);
/// Adds nothing, deliberately: the records do not have the keys by which it would climb, so that
/// only the direct parents of affected playlists take part.
void containerIDsLoop(const SharedRecords<ReplaylistRecord>& found,
                      const SharedRecords<ReplaylistRecord>& pool);

std::string decToHex(std::optional<std::uint64_t> number);
std::vector<std::string> batchDecToHex(std::span<const std::uint64_t> numbers);

}  // namespace kestrel::ReplaylistControl
