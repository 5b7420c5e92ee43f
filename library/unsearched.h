/// Songs of a library that no search of all songs looks at, and why.
#pragma once

#include <cstdint>
#include <vector>

#include "foundation/message.h"
#include "musicapp/media_library.h"

namespace kestrel {

struct UnsearchedSongs {
  std::int64_t ofUnknownType = 0;  ///< the library does not say whether files or in the cloud
  std::int64_t unlisted = 0;       ///< its own list of all songs is without them

  /// Without full stop; none where there are none.
  [[nodiscard]] std::vector<Message> sentences() const;
};
/// A library without a list of all songs lacks none.
UnsearchedSongs unsearchedSongs(const MediaItems& items, const std::vector<Playlist>& playlists);

/// What people are to know of a library that was read: its own notes, and these.
std::vector<Message> notesOn(MediaLibrary& library);

}  // namespace kestrel
