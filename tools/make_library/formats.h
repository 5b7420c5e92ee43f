/// The sorts of media files that a library holds, and how common each is.
#pragma once

#include <cstdint>
#include <string_view>

#include "tools/make_library/catalogue.h"

namespace kestrel::make_library {

struct Format {
  std::string_view kind, extension;
  std::uint32_t bitRate = 0;  ///< kbit/s: the usual one, 0 where it differs from file to file
  std::uint32_t share = 0;    ///< how common it is among the sound or the video files
  bool inDemo = false;        ///< has no file, or one that this program can write
  bool purchased = false;
  bool isProtected = false;
  bool cloud = false;  ///< the file is not on this computer
};

bool isVideo(Media media);

/// With `demo`, only the formats of the demo library.
const Format& pickFormat(Media media, bool demo, Random& random);

/// What a song of one's own becomes in the cloud.
const Format& matchedFormat();

}  // namespace kestrel::make_library
