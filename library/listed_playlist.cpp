#include "library/listed_playlist.h"

#include <utility>

#include "foundation/identifiers.h"
#include "foundation/library_error.h"
#include "platform/log.h"

namespace kestrel {

std::shared_ptr<const Playlist> sharedPlaylist(const Playlists& playlists, std::size_t position) {
  return {playlists, &(*playlists)[position]};
}

Playlists freshPlaylists(const std::shared_ptr<MediaLibrary>& library, Log& log) {
  try {
    if (library) {
      library->reload();
      if (Playlists playlists = library->allPlaylists()) return playlists;
    }
  } catch (const LibraryError& error) {
    log.line(error.what());
  }
  return std::make_shared<const std::vector<Playlist>>();
}

bool isUsersOwn(const Playlist& playlist) noexcept {
  return !playlist.isMaster && playlist.distinguishedKind == 0;
}

std::string ListedPlaylist::hexpid() const { return TextSorter::decToHex(playlist_->persistentID); }

std::vector<std::string> ListedPlaylist::items() const {
  return TextSorter::batchDecToHex(playlist_->items);
}

Value ListedPlaylist::commonValue(std::string_view key) const {
  if (key == "ptype") return isFolder() ? "f" : "u";
  if (key == "playlistname") return std::string_view(playlist_->name);
  if (key == "hexpid") return hexpid();
  if (key == "decpid") return decimalText(playlist_->persistentID);
  if (key == "decParentID" && playlist_->parentID) return decimalText(*playlist_->parentID);
  return {};
}

}  // namespace kestrel
