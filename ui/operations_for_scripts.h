/// Operations of the class TextSorter that no window and no command needs: they are kept for
/// scripts that drive the program by its operations. Each delegates to what the program itself
/// runs.
#pragma once

#include <span>
#include <string_view>
#include <vector>

#include "foundation/property_list.h"
#include "library/result_track.h"

namespace kestrel::TextSorter {

/// Brings tracks into display order by the criteria of the last search and numbers their groups;
/// see orderGroups. Returns its argument.
std::vector<ResultTrack>& establishDupeSort(std::vector<ResultTrack>& tracks);

/// The keeper among `candidates` (in table order, one or more) by the rule that `opt` numbers, with
/// the settings "alwaysUnCheck" and "filterFolderLoc"; nullptr when none is kept.
const ResultTrack* filterThisDupeGroup(std::span<const ResultTrack* const> candidates,
                                       std::string_view opt);

/// Whether the file of one of the tracks is missing.
bool anyDead(std::span<const ResultTrack* const> tracks) noexcept;

/// Sets every track's keeper flag, `tCheckbox`.
void setAllEntries(std::span<ResultTrack* const> tracks, bool keeperVal) noexcept;

/// Adds a media file to the application's library. A failure is only logged.
void addtohook(std::string_view path);

/// The first of the playlist dictionaries (as library documents have them) whose "Playlist
/// Persistent ID" is `pid`. Callers ask only for one that is there; else std::out_of_range.
const PropertyList& returnPlaylistRowIn(std::span<const PropertyList> playlists,
                                        std::string_view pid);

}  // namespace kestrel::TextSorter
