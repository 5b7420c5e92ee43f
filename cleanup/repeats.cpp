#include "cleanup/repeats.h"

#include "foundation/identifiers.h"
#include "foundation/number_table.h"

namespace kestrel {
namespace {

/// Uses `seen` for its own, whatever it holds.
std::vector<std::uint64_t> repeatsAmong(std::span<const std::uint64_t> items, IdMap& seen) {
  std::vector<std::uint64_t> positions;
  seen.reset(items.size());
  for (std::size_t i = 0; i < items.size(); ++i)
    if (!seen.insert(items[i], 0)) positions.push_back(i + 1);
  return positions;
}

}  // namespace

Value RemDupesRecord::value(std::string_view key) const {
  if (key == "hexParentID") return TextSorter::decToHex(playlist().parentID.value_or(0));
  return commonValue(key);
}

RepeatScan findRepeats(const Playlists& playlists) {
  RepeatScan scan;
  SharedRecords<RemDupesRecord> folders;
  IdMap seen;
  for (std::size_t i = 0; i < playlists->size(); ++i) {
    const Playlist& playlist = (*playlists)[i];
    if (!isUsersOwn(playlist)) continue;
    if (playlist.kind == PlaylistKind::folder) {
      folders.push_back(std::make_shared<const RemDupesRecord>(sharedPlaylist(playlists, i)));
    } else if (playlist.kind == PlaylistKind::regular) {
      auto repeats = repeatsAmong(playlist.items, seen);
      if (repeats.empty()) continue;
      scan.affected.push_back(
          std::make_shared<const RemDupesRecord>(sharedPlaylist(playlists, i), std::move(repeats)));
    }
  }
  scan.arrange(folders, NestedFolders::leftOut);
  return scan;
}

std::vector<std::uint64_t> RemDupesController::figureIndexesToDelete(
    std::span<const std::uint64_t> items) {
  IdMap seen;
  return repeatsAmong(items, seen);
}

}  // namespace kestrel
