#include "library/snapshot.h"

#include <string>
#include <utility>

#include "platform/files.h"
#include "platform/log.h"

namespace kestrel {
namespace {

/// Whether a file item's file is there now: a file-system call for each item, and for each folder
/// that is missing as a whole.
class Reachability {
 public:
  /// `withoutFiles`: that of any item with a location is.
  Reachability(const FileService& files, bool withoutFiles)
      : files_(files), withoutFiles_(withoutFiles) {}

  FileAvailability of(const MediaItem& item) {
    switch (item.locationType) {
      case LocationType::remote:
        return FileAvailability::cloud;
      case LocationType::file:
        break;
      default:
        return FileAvailability::missing;
    }
    if (item.locationFolder.isNull())
      return item.isUnlocated ? FileAvailability::reachable : FileAvailability::missing;
    if (withoutFiles_ || item.isSeen) return FileAvailability::reachable;
    // Neighbours mostly share a folder, and where it is not there, none of its files is.
    if (item.locationFolder.sameAs(missingFolder_)) return FileAvailability::missing;
    path_.assign(item.locationFolder.view());
    path_.append(1, '/').append(item.locationName.view());
    if (files_.reachable(path_.c_str())) return FileAvailability::reachable;
    path_.resize(item.locationFolder.view().size());
    const bool isRoot = path_.empty();
    if (!isRoot && !files_.reachable(path_.c_str())) missingFolder_ = item.locationFolder;
    return FileAvailability::missing;
  }

 private:
  const FileService& files_;
  bool withoutFiles_;
  std::string path_;  // one buffer for all items
  Text missingFolder_;
};

}  // namespace

std::shared_ptr<const TrackStore> takeSnapshot(std::shared_ptr<const MediaItems> items,
                                               const FileService& files, Log& log, bool checkbox,
                                               const TrackStore* earlier,
                                               FunctionRef<void()> advanced, bool withoutFiles) {
  log.line("--> Note: Any \"synchronousReadWriteURLForMediaItem\" errors below imply dead tracks");
  auto store = std::make_shared<TrackStore>(std::make_shared<const DateFormatter>());
  store->hold(items);
  store->reserve(items->size());
  Reachability reachability(files, withoutFiles);
  items->forEach([&](const MediaItem& item) {
    advanced();
    if (item.locationType == LocationType::unknown || item.mediaKind != MediaKind::song) return;
    store->put(item, reachability.of(item), checkbox);
  });
  if (earlier) store->carryOver(*earlier);
  return store;
}

}  // namespace kestrel
