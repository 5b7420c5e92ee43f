/// The snapshot of a library: a record for each of its songs.
#pragma once

#include <memory>

#include "foundation/function_ref.h"
#include "library/track_store.h"

namespace kestrel {

class FileService;
class Log;

/// Builds a record for every item that is a song and has a location of a known sort, in library
/// order; of two items with one persistent ID the later one counts. `checkbox` is what the records'
/// `tCheckbox` is at first. Records of `earlier` (nullptr: none) whose songs have left the library
/// are taken over. Asks `files` once for each file item, and calls `advanced` for every item, songs
/// or not. `withoutFiles`: files count as there wherever they are; `files` is not asked.
std::shared_ptr<const TrackStore> takeSnapshot(std::shared_ptr<const MediaItems> items,
                                               const FileService& files, Log& log, bool checkbox,
                                               const TrackStore* earlier,
                                               FunctionRef<void()> advanced,
                                               bool withoutFiles = false);

}  // namespace kestrel
