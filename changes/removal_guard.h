/// Which tracks may leave the library: when a removal is planned, and again when it is applied,
/// perhaps much later and from a file that anyone may have written.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <unordered_map>
#include <unordered_set>

#include "changes/plan.h"
#include "changes/trash_check.h"
#include "library/result_track.h"

namespace kestrel {

struct RemovalOptions {
  bool files = true;  ///< that the files of tracks which leave go to the trash
  /// Where a playlist lists the kept copy already, its entry goes, instead of listing it again.
  bool dropRepeats = false;
  GuardOptions guard{false, false, false};
};

/// A plan of kind remove from the rows of a search, for each track that is not kept in any row. A
/// track stays when
/// - it is itself a keeper in another row, or its group has none,
/// - the file of its keeper is missing, no regular file or without a playing time,
/// - its file would go and the only other copy is in the cloud, unless the options take that for
/// one,
/// - another track has its persistent ID,
/// - an ordinary playlist still lists it: `choices` names those in which it is replaced.
/// Of the tracks that leave, files go as in `planTrash`; what speaks against a file alone keeps the
/// file, not the track. A row is a keeper when its `tCheckbox` equals `keeperValue`. `reasons` says
/// by non-keeper why its keeper was picked. The caller fills in `library` and `made`.
Plan planRemoval(std::span<const ResultTrack* const> rows, bool keeperValue, MediaLibrary& library,
                 const FileService& files, std::span<const ReplaylistChoice> choices,
                 const std::unordered_map<std::uint64_t, std::string>& reasons,
                 const RemovalOptions& options = {});

/// Holds back those tracks of a plan that can leave no more: they or their keepers are not in the
/// library, have an ID in common, or the keeper is not as it has to be. What was to go in their
/// place in playlists does not.
void holdBackUnsafe(Plan& plan, MediaLibrary& library, const FileService& files,
                    const GuardOptions& options);

/// Those of `tracks` that an ordinary playlist lists even when it is changed by its plan, with the
/// first such playlist. Playlists are `library`'s, which must outlive what is returned.
std::unordered_map<std::uint64_t, const Playlist*> stillListed(
    std::span<const Playlist> library, std::span<const PlannedPlaylist* const> planned,
    const std::unordered_set<std::uint64_t>& tracks);

/// Why a track stays that `playlist` lists.
Message listedBy(const Playlist& playlist);

/// Holds back the files of a plan that a track has which stays.
void holdBackFilesInUse(Plan& plan, const FileService& files);

}  // namespace kestrel
