/// Turns what the user typed into what the search takes, or says what could have been meant.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "dupes/group_filter.h"
#include "musicapp/media_library.h"

namespace kestrel {

/// Every text must be a record key or "Filename". Throws UsageError that names the nearest keys.
void checkCriteria(std::span<const std::string> criteria);

/// Throws UsageError that lists the choices unless the text begins like one of them.
void checkFileType(std::string_view text);

/// The texts with commas between them.
std::string listed(std::span<const std::string_view> texts);
/// With line ends for spaces, so that no line of a help text is wider than a terminal.
std::string wrapped(std::string text);

/// The place of the playlist to search; there is at least one. `wanted` is a `decpid`, else the
/// exact name in the library, else the name as shown; empty is the whole library or, without a
/// master list, the first playlist of the menu, as in the program with windows. Throws UsageError
/// when no playlist or several fit.
std::size_t choosePlaylist(std::span<const Playlist> playlists, std::string_view wanted);

}  // namespace kestrel
