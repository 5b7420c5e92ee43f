/// The libraries that are found on this machine, and what can be said of one before it is opened.
#pragma once

#include <chrono>
#include <cstddef>
#include <functional>
#include <optional>
#include <string>

#include "foundation/message.h"
#include "musicapp/music_application.h"

namespace kestrel {

struct FoundLibrary {
  std::string address;
  const Application* application = nullptr;
  std::optional<std::size_t> tracks;     ///< nothing where counting takes too long
  std::optional<std::size_t> playlists;  ///< those that people see; likewise
  Message obstacle;                      ///< why it cannot be changed now; empty when it can
};

/// Reads the library to see what there is to say of it, for as long as `patience`; what `services`
/// asks to be stopped by stops it too. Never throws LibraryError: that is the obstacle.
FoundLibrary lookAtLibrary(const std::string& address, const Application& application,
                           ApplicationServices services, std::chrono::milliseconds patience);

}  // namespace kestrel
