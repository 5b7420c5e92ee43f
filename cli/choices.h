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

/// The `decpid` of the playlist to search. `wanted` is a `decpid`, else the exact name in the
/// library, else the name as shown; empty is the whole library, or the first playlist of a library
/// without a master list. Empty when there is no playlist at all. Throws UsageError when no
/// playlist or several fit.
std::string choosePlaylist(std::span<const Playlist> playlists, std::string_view wanted);

}  // namespace kestrel
