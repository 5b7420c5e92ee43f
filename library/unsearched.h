/// Songs of a library that no search of all songs looks at, and why.
#pragma once

#include <vector>

#include "foundation/message.h"
#include "musicapp/media_library.h"

namespace kestrel {

/// Sentences without full stop, for songs of which the library does not say whether they are files
/// or in the cloud, and for those that its own list of all songs lacks; empty when there are none.
/// A library without such a list lacks none.
std::vector<Message> unsearchedSongs(const MediaItems& items,
                                     const std::vector<Playlist>& playlists);

/// What people are to know of a library that was read: its own notes, and these.
std::vector<Message> notesOn(MediaLibrary& library);

}  // namespace kestrel
