/// The display order of a search result: groups as runs of adjacent rows.
#pragma once

#include <span>
#include <string>
#include <vector>

#include "library/result_track.h"

namespace kestrel {

/// Orders `tracks` by the keys `tArtist`, `tAlbum` and `tTrackNum`, in this order and each only if
/// `criteria` has it, and last by the text of the group number. The sort is stable. Then numbers
/// the runs of equal group numbers from 1 as `dupeSort`.
void orderGroups(std::vector<ResultTrack>& tracks, std::span<const std::string> criteria);

}  // namespace kestrel
