#include "changes/keepers.h"

#include <utility>

#include "platform/files.h"

namespace kestrel {

Keepers::Keepers(std::span<const ResultTrack* const> rows, bool keeperValue,
                 const FileService& files) {
  for (const ResultTrack* row : rows) {
    if (row->tCheckbox != keeperValue) continue;
    const MediaItem& item = row->record->item();
    tracks_.insert(item.persistentID);
    // The file as the library names it, be it reachable or not.
    std::string path = filePath(item);
    if (const auto id = fileID(files.status(path))) files_.insert(*id);
    // A keeper with a file, or in the cloud, is better than one whose file is missing.
    Keeper& keeper = byGroup_[row->tGroupID];
    if (row->record->availability() != FileAvailability::missing) {
      keeper.present = true;
      if (row->record->availability() == FileAvailability::reachable) keeper.path = path;
      if (keeper.path.empty() || keeper.path == path) keeper.track = item.persistentID;
    }
    paths_.insert(std::move(path));
  }
}

}  // namespace kestrel
