/// The smallest audio files of every format that has tags: their headers say that there is sound.
#pragma once

#include <initializer_list>
#include <string>
#include <string_view>
#include <utility>

namespace kestrel::testing {

/// Half a second or so; by the ending of such files, such as "flac". Throws std::invalid_argument
/// for another one.
std::string sampleAudio(std::string_view ending);

/// Gives a file tags by the names that all formats share.
void tag(const std::string& path,
         std::initializer_list<std::pair<const char*, std::string>> properties);

}  // namespace kestrel::testing
