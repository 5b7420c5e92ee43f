/// Which files of a search's non-keepers may go to the trash.
///
/// A search works on tracks, and two tracks may be one file: listed twice, linked, or reached by a
/// path in another case. The guard sees to it that no file goes that something else still needs.
#pragma once

#include <span>

#include "library/result_track.h"
#include "replaylist/plan.h"

namespace kestrel {

class FileService;

/// A plan of kind trash from the rows of a search: one file for each non-keeper, each path once, to
/// be moved or held back with the reason. Held back are
/// - files that a keeper of any group has too, by path or as the same file on the disk,
/// - tracks that are themselves keepers in another row,
/// - whole groups without a keeper, or whose keeper's file is missing: the last copy must not go,
/// - files that another track of the library outside the search has too, by path,
/// - missing files, cloud tracks, and what is no regular file.
/// The caller fills in `library` and `made`. A row is a keeper when its `tCheckbox` equals
/// `keeperValue`.
Plan planTrash(std::span<const ResultTrack* const> rows, bool keeperValue, FileService& files);

/// Bytes that moving the plan's files frees; hard links to one file count once.
std::uint64_t bytesToFree(const Plan& plan);

}  // namespace kestrel
