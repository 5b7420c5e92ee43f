/// Turns what the user typed into what the search takes, or says what could have been meant.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "library/playlist_catalogue.h"

namespace kestrel {

/// Every text must be a record key or "Filename". Throws UsageError that names the nearest keys.
void checkCriteria(std::span<const std::string> criteria);

/// Throws UsageError that lists the choices unless the text begins like one of them.
void checkFileType(std::string_view text);

/// The playlist to search; there is at least one. `wanted` is a `decpid`, else the exact name in
/// the library, else the name as shown; empty is the whole library or, without a master list, the
/// first playlist of the menu, as in the program with windows. Throws UsageError when no playlist
/// or several fit.
PlaylistRecord choosePlaylist(std::span<const Playlist> playlists, std::string_view wanted);

}  // namespace kestrel
