#include "replaylist/survey.h"

#include <algorithm>

#include "foundation/identifiers.h"

namespace kestrel {

std::vector<KeeperPair> keeperPairs(std::span<const std::uint64_t> items,
                                    const KeeperTable& keepers, IdMap& seen) {
  std::vector<KeeperPair> pairs;
  seen.reset(0);
  // Entries lie all over the table; without looking ahead this would mostly wait for memory.
  constexpr std::size_t ahead = 16;
  for (std::size_t i = 0; i < items.size(); ++i) {
    if (i + ahead < items.size()) keepers.prefetch(items[i + ahead]);
    if (const auto keeper = keepers.keeperOf(items[i]); keeper && seen.insert(items[i], 0))
      pairs.push_back({items[i], *keeper});
  }
  return pairs;
}

Value ReplaylistRecord::value(std::string_view key) const {
  if (key != "hexParentID") return commonValue(key);
  const auto& parent = playlist().parentID;
  return parent ? Value(TextSorter::decToHex(*parent)) : Value();
}

PlaylistSurvey surveyPlaylists(const Playlists& playlists, const KeeperTable& keepers,
                               const std::shared_ptr<const TrackStore>& tracks) {
  PlaylistSurvey survey;
  SharedRecords<ReplaylistRecord> folders;
  IdMap seen;
  for (std::size_t i = 0; i < playlists->size(); ++i) {
    const Playlist& playlist = (*playlists)[i];
    if (!isUsersOwn(playlist)) continue;
    if (playlist.kind == PlaylistKind::folder) {
      folders.push_back(std::make_shared<const ReplaylistRecord>(sharedPlaylist(playlists, i)));
      continue;
    }
    if (playlist.kind != PlaylistKind::regular) continue;
    const auto first = std::find_if(playlist.items.begin(), playlist.items.end(),
                                    [&](std::uint64_t item) { return keepers.isNonKeeper(item); });
    if (first == playlist.items.end()) continue;
    survey.affected.push_back(std::make_shared<const ReplaylistRecord>(
        sharedPlaylist(playlists, i),
        keeperPairs(std::span(first, playlist.items.end()), keepers, seen), tracks));
  }
  survey.arrange(folders, NestedFolders::listed);
  return survey;
}

}  // namespace kestrel
