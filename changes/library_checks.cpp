#include "changes/library_checks.h"

#include <algorithm>
#include <utility>

#include "history/fingerprint.h"

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

CommandResult carryOut(const Command& command, MusicApplication& application,
                       const std::string& about) {
  CommandResult result = application.run(command);
  requireDone(result, about);
  return result;
}

void requireDone(const CommandResult& result, const std::string& about) {
  if (!result.failed()) return;
  Message problem = result.failure->message;
  throw MessageError(about.empty()
                         ? std::move(problem)
                         : Message::tr("%1: %2").arg(inQuotes(about)).arg(std::move(problem)));
}

}  // namespace kestrel
