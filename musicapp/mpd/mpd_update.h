/// Having a server look at files that have come or gone.
#pragma once

#include <cstddef>
#include <functional>
#include <set>
#include <span>
#include <string>

#include "musicapp/mpd/mpd_connection.h"

namespace kestrel {

/// What the server is to look at, by paths below its music: each file, or the outermost of its
/// folders that the server does not know; where these are more than `most`, the folders that they
/// share, the deepest first, "" for all music. After every look the server writes its whole
/// database, so that one at many songs costs less than many at one. A folder for which `isAsKnown`
/// is false is not looked at as such: the server would forget songs whose files are away, as on a
/// volume that is not mounted, with what it has noted of them.
std::set<std::string> mpdPlacesToUpdate(
    MpdConnection& connection, std::span<const std::string> uris, std::size_t most,
    const std::function<bool(const std::string& folder)>& isAsKnown);

/// Has the server look at these and waits until it has, or `cancelled`, which may be empty, says
/// that nobody waits any longer; then it goes on by itself. Throws LibraryError.
void updateMpd(MpdConnection& connection, const std::set<std::string>& places,
               const std::function<bool()>& cancelled);

}  // namespace kestrel
