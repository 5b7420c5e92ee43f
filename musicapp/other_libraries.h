/// The other libraries that are found on this machine, read for what their playlists list.
#pragma once

#include <chrono>
#include <memory>
#include <string>
#include <vector>

#include "musicapp/library_identity.h"
#include "musicapp/music_application.h"

namespace kestrel {

/// A library as it was read.
struct OtherLibrary {
  std::string address;
  std::shared_ptr<const MediaItems> items;
  std::shared_ptr<const std::vector<Playlist>> playlists;
};

/// Reads the libraries that are where their applications keep them, but for the one at hand. One
/// that cannot be read, or not within `patience`, is passed over, and the log says so. The watch
/// of `services` may stop it all, with what was read by then. Never throws.
std::vector<OtherLibrary> otherLibraries(
    const LibraryIdentity& own, ApplicationServices services,
    std::chrono::milliseconds patience = std::chrono::seconds(3));

}  // namespace kestrel
