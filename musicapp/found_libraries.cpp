#include "musicapp/found_libraries.h"

#include <algorithm>
#include <utility>

#include "foundation/library_error.h"

namespace kestrel {

FoundLibrary lookAtLibrary(const std::string& address, const Application& application,
                           ApplicationServices services, std::chrono::milliseconds patience) {
  FoundLibrary found{address, &application, {}, {}, {}};
  const auto end = std::chrono::steady_clock::now() + patience;
  const auto isLate = [end] { return std::chrono::steady_clock::now() > end; };
  services.watch.cancelled = [stopped = services.watch.cancelled, isLate] {
    return isLate() || (stopped && stopped());
  };
  services.readsFiles = false;
  try {
    const auto opened = application.open(address, services);
    std::size_t songs = 0;
    opened->library().allMediaItems()->forEach([&songs](const MediaItem& item) {
      songs += item.mediaKind == MediaKind::song && item.locationType != LocationType::unknown;
    });
    found.tracks = songs;
    const auto playlists = opened->library().allPlaylists();
    found.playlists = static_cast<std::size_t>(
        std::count_if(playlists->begin(), playlists->end(), [](const Playlist& playlist) {
          return !playlist.isMaster && playlist.isVisible && playlist.distinguishedKind == 0 &&
                 playlist.kind != PlaylistKind::folder;
        }));
    if (opened->capabilities().changesPlaylists)
      static_cast<void>(opened->beginBatch());
    else
      found.obstacle = Message::tr("its playlists cannot be changed");
  } catch (const LibraryError& error) {
    found.obstacle = isLate() ? Message::tr("reading it takes longer") : error.message;
  }
  return found;
}

}  // namespace kestrel
