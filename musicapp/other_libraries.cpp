#include "musicapp/other_libraries.h"

#include <utility>

#include "musicapp/applications.h"
#include "platform/log.h"

namespace kestrel {

std::vector<OtherLibrary> otherLibraries(const LibraryIdentity& own, ApplicationServices services,
                                         std::chrono::milliseconds patience) {
  using Time = std::chrono::steady_clock;
  const auto isStopped = [cancelled = std::move(services.watch.cancelled)] {
    return cancelled && cancelled();
  };
  services.readsFiles = false;
  services.maps = {};
  std::vector<OtherLibrary> libraries;
  for (const Application& application : applications())
    for (const std::string& address : application.found(services)) {
      if (isStopped()) return libraries;
      const auto end = Time::now() + patience;
      services.watch = {{}, [&] { return isStopped() || Time::now() > end; }};
      try {
        const auto opened = application.open(address, services);
        MediaLibrary& library = opened->library();
        const LibraryIdentity identity = library.identity();
        if (plainUri(identity.uri) != plainUri(own.uri) &&
            !(own.isServer() && identity.id == own.id))
          libraries.push_back({address, library.allMediaItems(), library.allPlaylists()});
      } catch (const std::exception& error) {
        services.log.line("passed over " + address + ": " + error.what());
      }
    }
  return libraries;
}

}  // namespace kestrel
