/// A playlist or folder as clean-up and replaylist list it.
///
/// Both make records of their own, which read as string-keyed dictionaries. A record shares the
/// library's playlist instead of copying its entries, and makes texts when they are asked for.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "foundation/value.h"
#include "musicapp/media_library.h"

namespace kestrel {

class Log;

using Playlists = std::shared_ptr<const std::vector<Playlist>>;

/// One of the playlists, which keeps them all alive.
std::shared_ptr<const Playlist> sharedPlaylist(const Playlists& playlists, std::size_t position);

/// The playlists of a library, read anew; none without one and when it cannot be read, and the log
/// says why. A stale list is not an answer: what is done by it would hit other entries than the
/// user saw.
Playlists freshPlaylists(const std::shared_ptr<MediaLibrary>& library, Log& log);

/// Whether a playlist is one that the user made or a folder of such: neither the library itself nor
/// one that the application provides.
bool isUsersOwn(const Playlist& playlist) noexcept;

/// Immutable.
class ListedPlaylist {
 public:
  explicit ListedPlaylist(std::shared_ptr<const Playlist> playlist)
      : playlist_(std::move(playlist)) {}

  [[nodiscard]] const Playlist& playlist() const noexcept { return *playlist_; }
  [[nodiscard]] bool isFolder() const noexcept { return playlist_->kind == PlaylistKind::folder; }
  [[nodiscard]] std::string hexpid() const;
  /// The entries' persistent IDs in hexadecimal form, in order, repeats included.
  [[nodiscard]] std::vector<std::string> items() const;

 protected:
  /// The value under "ptype" ("u" or "f"), "playlistname", "hexpid", "decpid" or "decParentID"
  /// (absent at top level); absent for other keys. Texts may be borrowed.
  [[nodiscard]] Value commonValue(std::string_view key) const;

 private:
  std::shared_ptr<const Playlist> playlist_;
};

/// For trees of folders (playlist_tree.h).
inline std::uint64_t idOf(const ListedPlaylist& record) { return record.playlist().persistentID; }
inline std::optional<std::uint64_t> parentOf(const ListedPlaylist& record) {
  return record.playlist().parentID;
}

/// Calls `visit(std::string_view name, const Value&)` for each text that a record holds, as a
/// dictionary lists its keys.
template <typename Record, typename Visit>
void forEachText(const Record& record, Visit&& visit) {
  for (const std::string_view key :
       {"ptype", "playlistname", "hexpid", "decpid", "decParentID", "hexParentID"})
    if (const Value held = record.value(key); !held.isAbsent()) visit(key, held);
}

}  // namespace kestrel
