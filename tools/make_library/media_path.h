/// Where a track's file lies, and the URL of that place.
#pragma once

#include <string>
#include <string_view>

#include "tools/make_library/track.h"

namespace kestrel::make_library {

/// Artist, album and numbered title below `mediaFolder`, as music applications keep them. No two
/// entries of one song share a path.
std::string mediaPath(std::string_view mediaFolder, const Track& track, const Entry& entry);

/// The file URL of an absolute path, percent-encoded.
std::string fileUrl(std::string_view path);

/// UTF-8 text with every accented letter as a letter and its accents, as some file systems keep
/// names.
std::string decomposed(std::string_view text);

}  // namespace kestrel::make_library
