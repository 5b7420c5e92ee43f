/// The playlists of a library: the ones every library has, and those its owner made.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "tools/make_library/catalogue.h"
#include "tools/make_library/plan.h"

namespace kestrel::make_library {

enum class PlaylistKind : std::uint8_t { regular, smart, genius, folder };

struct Playlist {
  std::string name, description;
  PlaylistKind kind = PlaylistKind::regular;
  std::uint64_t persistentId = 0;
  std::uint64_t parent = 0;         ///< persistent ID of the folder it is in; 0: none
  std::uint32_t distinguished = 0;  ///< number of a list that every library has; 0: none
  std::string_view flag;            ///< key that is true in it
  bool master = false;
  bool allItems = true;
  std::uint32_t geniusTrack = 0;         ///< Track ID
  std::string smartInfo, smartCriteria;  ///< bytes without a meaning
  std::vector<std::uint32_t> trackIds;   ///< in playlist order, with repeats
};

/// How many Track IDs that no track has are listed, in all playlists together.
inline constexpr std::uint32_t kUnknownTrackIds = 5;

/// How many playlists the owner of a library of this size has made.
std::uint32_t usualPlaylistCount(std::uint32_t tracks);

/// Hands over the playlists in document order, a folder before what it holds, one at a time: the
/// lists of all tracks of a large library take much memory.
void makePlaylists(const Options& options, const Catalogue& catalogue, const Plan& plan,
                   const std::function<void(const Playlist&)>& use);

}  // namespace kestrel::make_library
