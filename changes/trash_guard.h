/// Which files of a search's non-keepers may go to the trash.
///
/// A search works on tracks, and two tracks may be one file: listed twice, linked, or reached by a
/// path in another spelling. The guard sees to it that no file goes that something else still
/// needs.
#pragma once

#include <optional>
#include <span>

#include "changes/plan.h"
#include "changes/trash_check.h"
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
/// - Kestrel's own files and the library's document; what lies outside the media folder
///   (trash_places.h) or is no audio, unless `options` say otherwise,
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

}  // namespace kestrel
