/// Tags in audio files that are still in memory.
#pragma once

#include <string>

#include "tools/make_library/track.h"

namespace kestrel::make_library {

/// The bytes of an audio file of the track's format with the track's names in its tags, so that
/// a program which reads the file finds what the library says.
std::string withTags(const std::string& bytes, const Track& track);

}  // namespace kestrel::make_library
