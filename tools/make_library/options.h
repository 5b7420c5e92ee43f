/// What a library is asked to be. The same options give the same bytes.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "tools/make_library/plist_writer.h"

namespace kestrel::make_library {

struct Options {
  std::uint32_t tracks = 10'000;
  std::uint64_t seed = 1;
  std::uint32_t duplicatePercent = 12;     ///< of the tracks, copies of another one; up to 90
  std::optional<std::uint32_t> playlists;  ///< made by the user; chosen by the size when absent
  std::string mediaFolder = "/home/listener/Music/Media";  ///< absolute, no slash at its end
  bool oneKey = false;  ///< every track has one name and one artist: the worst case of a search
  bool demo = false;    ///< only kinds of files that can be written, and songs of a few seconds
  Layout layout = Layout::tabs;
};

}  // namespace kestrel::make_library
