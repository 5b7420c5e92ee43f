#include "changes/apply_checks.h"

#include <algorithm>
#include <utility>

namespace kestrel {

LibraryImage::LibraryImage(const std::vector<Playlist>& playlists, Of entries) {
  playlists_.reserve(playlists.size());
  for (const Playlist& playlist : playlists) {
    PlaylistImage image{playlist.name, playlist.parentID, 0, playlist.kind};
    if (entries == Of::user ? isUserPlaylist(playlist) : playlist.kind != PlaylistKind::folder)
      image.entries = fingerprintOf(playlist.items);
    playlists_.try_emplace(playlist.persistentID, std::move(image));
  }
}

const PlaylistImage* LibraryImage::find(std::uint64_t playlist) const {
  const auto found = playlists_.find(playlist);
  return found == playlists_.end() ? nullptr : &found->second;
}

Message LibraryImage::differenceTo(const LibraryImage& found) const {
  for (const auto& [id, expected] : playlists_) {
    const PlaylistImage* image = found.find(id);
    if (!image) return Message::tr("the playlist %1 is gone").arg(inQuotes(expected.name));
    if (*image != expected)
      return Message::tr("the playlist %1 is not what it should be").arg(inQuotes(expected.name));
  }
  for (const auto& [id, image] : found.playlists_)
    if (!playlists_.contains(id))
      return Message::tr("there is a playlist %1 too many").arg(inQuotes(image.name));
  return {};
}

MissingTracks::MissingTracks(const Plan& plan, MediaLibrary& library) {
  for (const PlannedPlaylist& planned : plan.playlists)
    for (const Replacement& change : planned.replacements) missing_.insert(change.newTrack);
  if (!missing_.empty())
    library.allMediaItems()->forEach(
        [&](const MediaItem& item) { missing_.erase(item.persistentID); });
}

SharedIDs::SharedIDs(MediaLibrary& library) : playlists_(repeatedIDs(*library.allPlaylists())) {
  std::vector<std::uint64_t> tracks;
  library.allMediaItems()->forEach(
      [&](const MediaItem& item) { tracks.push_back(item.persistentID); });
  tracks_ = repeatedIDs(std::move(tracks));
}

bool SharedIDs::has(const Playlist& playlist) const {
  return std::binary_search(playlists_.begin(), playlists_.end(), playlist.persistentID);
}

std::optional<std::uint64_t> SharedIDs::firstAmong(std::span<const std::uint64_t> tracks) const {
  if (tracks_.empty()) return std::nullopt;
  for (const std::uint64_t track : tracks)
    if (std::binary_search(tracks_.begin(), tracks_.end(), track)) return track;
  return std::nullopt;
}

}  // namespace kestrel
