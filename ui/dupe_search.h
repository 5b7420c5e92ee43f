/// The search for dupes and the keeper pass over its result: the operations of the class TextSorter
/// that read the settings for them, post progress and fill the upper table.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "dupes/group_filter.h"
#include "dupes/grouping.h"
#include "foundation/function_ref.h"
#include "library/result_track.h"
#include "musicapp/load_watch.h"

namespace kestrel {

class Preferences;

/// What the user's settings ask of the keeper pass. Of rules that ask for more than a track, with
/// what the library says now.
FilterSettings filterSettings(const Preferences& preferences);

/// What rules ask of the library at hand beyond a track itself; the same until it is read again.
/// nullptr without a library or tracks. From any thread.
std::shared_ptr<const KeeperFacts> keeperFacts();

/// Has the files of these rows read for the chosen rules that look into files, as far as they have
/// not been since tracks were read; returns at once where no rule does. False when the watch
/// cancelled it: such rules then have no opinion about the rest until this is called again. On a
/// worker, before `filterArray`.
bool readFilesForRules(std::span<const ResultTrack> rows, const LoadWatch& watch);

/// What they ask of the grouping, beside the criteria.
GroupingOptions groupingOptions(const Preferences& preferences);

}  // namespace kestrel

namespace kestrel::TextSorter {

/// Groups the tracks of the chosen playlist (setting "selectedPlaylistPid") by the values under
/// the key texts `criteria`, adds the members of all groups in display order to the upper table,
/// and returns how many they are, in decimal. Takes a snapshot first if there is none.
///
/// Runs on the calling thread; what the user sees is posted to the main queue. The rows of an
/// earlier search are the caller's to remove. Setting "cancelGetDupes" to 1 stops the search while
/// it reads tracks: the result is "0", nothing is added, and the progress bar is left running,
/// for the one who cancelled to end. The setting is not set back.
std::string getDupeGroupsWithCriteria(std::span<const std::string> criteria);
/// The same of the playlist with this decimal ID, whatever is chosen.
std::string getDupeGroupsWithCriteria(std::span<const std::string> criteria,
                                      std::string_view playlist);

/// Sets the keeper flag of every member of the given groups (`tGroupID` texts, in this order) among
/// the arranged rows of the upper table, in place, with progress on the second progress bar.
/// Settings: "keeperMode", "filterMatrixButton", "keeperChain", "alwaysUnCheck", "filterFolderLoc",
/// "useFileType", "thisFileType", "useBitType", "thisBitType". Returns true. On the caller's
/// thread; no search may run meanwhile.
///
/// Tells the decision for each group; what it points to is valid until the rows of the table
/// change.
bool filterArray(
    std::span<const std::string> groupNumbers,
    FunctionRef<void(std::string_view groupNumber, const GroupDecision&)> decided =
        [](std::string_view, const GroupDecision&) {});

}  // namespace kestrel::TextSorter
