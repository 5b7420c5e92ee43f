/// The Playlists section of a library document.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "foundation/plist_scanner.h"
#include "musicapp/document/document_index.h"
#include "musicapp/media_library.h"

namespace kestrel {

/// Reads the array of playlists that `scanner` has just begun. Their `items` are still the Track
/// IDs of the document, as 64-bit patterns, since tracks and playlists may stand in any order.
/// Playlists without a persistent ID get one derived from position and name. Notes their ends and
/// the largest Playlist ID in `index`. Throws PlistError.
std::vector<Playlist> readPlaylists(PlistScanner& scanner, DocumentIndex& index);

}  // namespace kestrel
