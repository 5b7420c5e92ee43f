/// What the replaylist window says: its header, and the tracks panel, which shows for the selected
/// playlists every non-keeper next to the keeper that will take its place, with a caption that has
/// the value by which the keeper was chosen.
///
/// The operations of the class ReplaylistControl take the keeper rule that is in force; the
/// functions beneath take it as an argument and read no settings. A number that no rule has has
/// empty captions. Texts are English unless they are asked for in other words. A row of the panel
/// holds who stands where; its texts are made for the rows that are painted.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "foundation/message.h"
#include "library/track_record.h"
#include "library/track_store.h"
#include "ui/models/styled_text.h"

namespace kestrel {

class ShortDateTimeFormatter;

/// The window's header, 12 points throughout. The bold of "Show Tracks." begins and ends one
/// character early: users know the header by its looks.
StyledText replaylistHeader(std::int64_t rule, MessageText inWords = inEnglish);
/// "Keepers: Oldest Date Added", centred.
StyledText keepersTitle(std::int64_t rule, MessageText inWords = inEnglish);
/// "Date Added: 8/13/09, 8:05 PM"; the rules without a value to show have a remark in place of it.
/// The value is empty when the track has no such date.
StyledText attributeCaption(std::int64_t rule, const TrackRecord& track,
                            ShortDateTimeFormatter& dates, MessageText inWords = inEnglish);

struct TracksPanelRow {
  const TrackRecord* nonkeeper = nullptr;  ///< nullptr: the snapshot does not know the track
  const TrackRecord* keeper = nullptr;
  std::shared_ptr<const TrackStore> tracks;  ///< keeps the records alive
  std::uint64_t playlist = 0;                ///< persistent ID
  std::int64_t rule = 0;                     ///< in force when the panel was filled

  /// By key path: "playlistPID", or "nonkeeper." or "keeper." and a key of the track's record or
  /// one of the panel's plain texts. Absent for unknown paths and tracks.
  [[nodiscard]] Value value(std::string_view keyPath) const;
};

/// What the panel says about one track of a row.
struct TrackTexts {
  StyledText mess;       ///< "nkMess", "kpMess": the attribute caption
  std::string nameTime;  ///< "nkNameTime", "kpNameTime": "Name - 3:05"
  std::string tkInfo;    ///< "nktkInfo", "kptkInfo": "#3 of 12"; empty without a track number
  std::string dcInfo;    ///< "nkdcInfo", "kpdcInfo": "Disc 1 of 2"; empty without a disc number

  friend bool operator==(const TrackTexts&, const TrackTexts&) = default;
};

/// All empty for nullptr.
TrackTexts trackTexts(const TrackRecord* track, std::int64_t rule, ShortDateTimeFormatter& dates,
                      MessageText inWords = inEnglish);

/// By the non-keepers' artist, album, disc and track number, ascending, empty values last.
void sortPanelRows(std::vector<TracksPanelRow>& rows);

}  // namespace kestrel

namespace kestrel::ReplaylistControl {

/// For the rule in force: the window's header, and the keepers' title.
StyledText configureMeTitle(MessageText inWords = inEnglish);
StyledText configureKeepersTitle(MessageText inWords = inEnglish);

/// Sets the tracks panel's titles: the plain one to this text, the keepers' to the rule in force.
/// On the main thread.
void configureTitleFilterInfoForPlaylist(Message name);

/// The track's caption for the rule in force. On the main thread.
StyledText configureFilterInfo(const TrackRecord& track);

/// The clock text of a duration in milliseconds.
std::string transformRealTime(std::int64_t milliseconds);

// All of the panel on the main thread.

/// Fills the panel from the outline's selection. Folders, and playlists without pairs, add no rows.
/// A million rows of 20,000 tracks take a fifth of a second.
void processThis();
/// Empties the panel and its titles.
void processClear();
/// Shows the panel if it is hidden, and hides it if it is shown.
void toggleTracksPanel();

TrackTexts nonkeeperTexts(const TracksPanelRow& row, MessageText inWords = inEnglish);
TrackTexts keeperTexts(const TracksPanelRow& row, MessageText inWords = inEnglish);

}  // namespace kestrel::ReplaylistControl
