/// Which files of a search's non-keepers may go to the trash, and which of its tracks may leave the
/// library.
///
/// A search works on tracks, and two tracks may be one file: listed twice, linked, or reached by a
/// path in another spelling. Nothing may go that something else still needs: that is seen to when a
/// plan is made, and again when it is applied, perhaps much later and from a file that anyone may
/// have written.
#pragma once

#include <cstdint>
#include <optional>
#include <span>

#include "changes/plan.h"
#include "changes/trash_guard.h"
#include "library/result_track.h"

namespace kestrel {

/// A plan of kind trash from the rows of a search: one file for each non-keeper, each path once, to
/// be moved or held back with the reason. Held back are
/// - files that a keeper of any group has too, by path or as the same file on the disk,
/// - tracks that are themselves keepers in another row,
/// - whole groups without a keeper, or whose keeper's file is missing: the last copy must not go,
/// - files that something else of the library has too, be it a song outside the search or an item
///   of another media kind, and those that another row holds back,
/// - missing files, cloud tracks, and what is no regular file,
/// - Kestrel's own files and the library's own file; what lies outside the media folder
///   (TrashPlaces) or is no audio, unless `options` say otherwise,
/// - where `options` want it, what does not sound as the kept copy does, as its row says,
/// - files whose kept copy is no regular file with a playing time, or in the cloud only where
///   `options` do not take that for a copy.
/// Files are compared by what they are on the disk, so that it does not matter how their paths are
/// spelled. `library` is that of today. Not each of a million is asked of the disk, only those
/// that have a file's name, whatever the case of its letters, or its size. A second path under
/// another name and with a wrong size in the library is not noticed; when it is a hard link, which
/// has the bytes as well, nothing is lost by that.
/// What would go is opened, and its kept copy, each once. With `only`, the plan is for the files of
/// these rows, and no others are opened.
/// The caller fills in `library` and `made` of the plan. A row is a keeper when its `tCheckbox`
/// equals `keeperValue`.
Plan planTrash(std::span<const ResultTrack* const> rows, bool keeperValue, MediaLibrary& library,
               const FileService& files, const GuardOptions& options = {},
               std::optional<std::span<const ResultTrack* const>> only = {});

/// Bytes that moving the plan's files frees; hard links to one file count once.
std::uint64_t bytesToFree(const Plan& plan);

struct RemovalOptions {
  bool files = true;  ///< that the files of tracks which leave go to the trash
  /// Where a playlist lists the kept copy already, its entry goes, instead of listing it again.
  bool dropRepeats = false;
  GuardOptions guard{false, false, false};
  /// What the kept tracks are given of those that leave (carrying.h). `planRemoval` leaves that to
  /// `planCarrying`.
  TrackValueSet carry = {};
};

/// A plan of kind remove from the rows of a search, for each track that is not kept in any row. A
/// track stays when
/// - it is itself a keeper in another row, or its group has none,
/// - the file of its keeper is missing, no regular file or without a playing time,
/// - its file would go and the only other copy is in the cloud, unless the options take that for
/// one,
/// - another track has its persistent ID,
/// - where the options want it, it does not sound as its keeper does, as its row says,
/// - an ordinary playlist still lists it: `choices` names those in which it is replaced.
/// Of the tracks that leave, files go as in `planTrash`; what speaks against a file alone keeps the
/// file, not the track. A row is a keeper when its `tCheckbox` equals `keeperValue`. `reasons` says
/// by non-keeper why its keeper was picked. The caller fills in `library` and `made`.
Plan planRemoval(std::span<const ResultTrack* const> rows, bool keeperValue, MediaLibrary& library,
                 const FileService& files, std::span<const ReplaylistChoice> choices,
                 const KeeperReasons& reasons, const RemovalOptions& options = {});

/// Holds back those tracks of a plan that can leave no more: they or their keepers are not in the
/// library, have an ID in common, or the keeper is not as it has to be. What was to go in their
/// place in playlists does not.
void holdBackUnsafe(Plan& plan, MediaLibrary& library, const FileService& files,
                    const GuardOptions& options);

/// Holds back those tracks of a plan that an ordinary playlist lists, even when the `changed` ones
/// have been changed by the plan. Playlists are `library`'s.
void holdBackListed(Plan& plan, std::span<const Playlist> library,
                    std::span<const PlannedPlaylist* const> changed);

/// Holds back the files of a plan that a track has which stays.
void holdBackFilesInUse(Plan& plan, const FileService& files);

}  // namespace kestrel
