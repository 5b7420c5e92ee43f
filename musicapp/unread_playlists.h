/// Implemented beside MediaLibrary by libraries whose playlists are files that may be broken.
#pragma once

#include <string>
#include <vector>

namespace kestrel {

class UnreadPlaylists {
 public:
  UnreadPlaylists() = default;
  UnreadPlaylists(const UnreadPlaylists&) = delete;
  UnreadPlaylists& operator=(const UnreadPlaylists&) = delete;
  virtual ~UnreadPlaylists() = default;
  /// The files of playlists that are there and could not be read, of which the library's `notes`
  /// say why.
  virtual std::vector<std::string> unreadPlaylists() = 0;
};

}  // namespace kestrel
