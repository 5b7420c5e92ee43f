/// The tracks panel: for the playlists selected in the replaylist window, every non-keeper next to
/// the keeper that will take its place.
///
/// A row holds who stands where; its texts are made for the rows that are painted.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "library/track_store.h"
#include "ui/models/styled_text.h"
#include "ui/survey_texts.h"

namespace kestrel {

class ShortDateTimeFormatter;

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

// All on the main thread.

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
