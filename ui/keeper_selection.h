/// The keeper of one set of tracks by the user's settings, and the keeper flags of many.
#pragma once

#include <span>
#include <string_view>

#include "library/result_track.h"

namespace kestrel::TextSorter {

/// The keeper among `candidates` (in table order, one or more) by the rule that `opt` numbers, with
/// the settings "alwaysUnCheck" and "filterFolderLoc"; nullptr when nobody is kept.
const ResultTrack* filterThisDupeGroup(std::span<const ResultTrack* const> candidates,
                                       std::string_view opt);

/// Whether the file of one of the tracks is missing.
bool anyDead(std::span<const ResultTrack* const> tracks) noexcept;

/// Sets every track's keeper flag, `tCheckbox`.
void setAllEntries(std::span<ResultTrack* const> tracks, bool keeperVal) noexcept;

}  // namespace kestrel::TextSorter
