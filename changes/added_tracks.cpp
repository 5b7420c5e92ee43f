#include "changes/added_tracks.h"

#include <algorithm>
#include <unordered_set>

#include "changes/plan.h"
#include "history/fingerprint.h"

namespace kestrel {

std::uint64_t fingerprintOf(const MediaItem& item) noexcept {
  Fingerprint fingerprint;
  for (const Text& text :
       {item.title, item.artist, item.albumArtist, item.album, item.composer, item.genre,
        item.grouping, item.comments, item.locationFolder, item.locationName})
    fingerprint.add(text.view());
  for (const std::int64_t number :
       std::initializer_list<std::int64_t>{item.rating, item.playCount, item.skipCount, item.year,
                                           item.trackNumber, item.discNumber})
    fingerprint.add(static_cast<std::uint64_t>(number));
  return fingerprint.value();
}

AddedTracks::AddedTracks(std::span<const FileChange> changes, MediaLibrary& library) {
  std::unordered_set<std::uint64_t> wanted;
  for (const FileChange& change : changes)
    if (change.track != 0) wanted.insert(change.track);
  if (wanted.empty()) return;
  library.allMediaItems()->forEach([&](const MediaItem& item) {
    if (wanted.contains(item.persistentID))
      found_.try_emplace(item.persistentID, Found{fingerprintOf(item), {}, 0});
  });
  const auto playlists = library.allPlaylists();
  for (const Playlist& playlist : *playlists) {
    if (!isUserPlaylist(playlist)) continue;
    std::unordered_set<std::uint64_t> counted;
    for (const std::uint64_t track : playlist.items) {
      const auto found = found_.find(track);
      if (found == found_.end() || !counted.insert(track).second) continue;
      if (found->second.playlists++ == 0) found->second.playlist = playlist.name;
    }
  }
}

Message AddedTracks::difference(const FileChange& change) const {
  const auto found = found_.find(change.track);
  if (found == found_.end()) return Message::tr("it is no longer in the library");
  const Found& track = found->second;
  if (track.playlists == 1)
    return Message::tr("the playlist %1 lists it").arg(inQuotes(track.playlist));
  if (track.playlists > 1)
    return Message::tr("the playlist %1 and %Ln others list it",
                       "the playlist %1 and %Ln other list it",
                       static_cast<std::int64_t>(track.playlists) - 1)
        .arg(inQuotes(track.playlist));
  if (track.fingerprint != change.fingerprint)
    return Message::tr("its track was changed, or played, since");
  return {};
}

}  // namespace kestrel
