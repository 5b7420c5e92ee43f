/// The search for dupes: from the tracks of a playlist to the rows that a table shows.
#pragma once

#include <memory>
#include <span>
#include <string>
#include <vector>

#include "dupes/grouping.h"
#include "library/result_track.h"

namespace kestrel {

class Log;

struct DupeRows {
  /// The members of all groups in display order, numbered by `dupeSort`.
  std::vector<ResultTrack> rows;
  bool cancelled = false;  ///< there are no rows then
  /// By group number, the member that was met first: from its playing time others were measured.
  std::vector<const TrackRecord*> seeds{};
};

/// Groups the tracks of `items` (persistent IDs in playlist order; those that are no songs of
/// `store` are passed over) by the values under the key texts `criteria` and orders the groups.
/// `checkBox` is what the rows' "checkBox" is. `cancelled` as in `groupTracks`.
DupeRows findDupes(const std::shared_ptr<const TrackStore>& store,
                   std::span<const std::uint64_t> items, std::span<const std::string> criteria,
                   const GroupingOptions& options, bool checkBox, Log& log,
                   FunctionRef<bool()> cancelled);

/// Orders `tracks` by the keys `tArtist`, `tAlbum` and `tTrackNum`, in this order and each only if
/// `criteria` has it, and last by the text of the group number. The sort is stable. Then numbers
/// the runs of equal group numbers from 1 as `dupeSort`.
void orderGroups(std::vector<ResultTrack>& tracks, std::span<const std::string> criteria);

}  // namespace kestrel
