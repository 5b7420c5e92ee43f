/// The search for dupes.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "library/result_track.h"

namespace kestrel::TextSorter {

/// Groups the tracks of the chosen playlist (setting "selectedPlaylistPid") by the values under
/// the key texts `criteria`, adds the members of all groups in display order to the upper table,
/// and returns how many they are, in decimal. Takes a snapshot first if there is none.
///
/// Runs on the calling thread; what the user sees is posted to the main queue. The rows of an
/// earlier search are the caller's to remove. Setting "cancelGetDupes" to 1 stops the search while
/// it reads tracks: the result is "0", nothing is added, and the progress bar is left running for
/// whoever cancelled. The setting is not set back.
std::string getDupeGroupsWithCriteria(std::span<const std::string> criteria);
/// The same of the playlist with this decimal ID, whatever is chosen.
std::string getDupeGroupsWithCriteria(std::span<const std::string> criteria,
                                      std::string_view playlist);

/// Brings tracks into display order by the criteria of the last search and numbers their groups;
/// see orderGroups. Returns its argument.
std::vector<ResultTrack>& establishDupeSort(std::vector<ResultTrack>& tracks);

}  // namespace kestrel::TextSorter
