/// Asking the music application about one track: operations of the class TextSorter. Each waits for
/// the application's answer on the calling thread.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace kestrel::TextSorter {

/// The track's cloud status with each word capitalised, such as "Matched"; nothing when the
/// application gives none. Takes the ID in hexadecimal form.
std::optional<std::string> cloudStatusByTrackPid(std::string_view hexpid);

/// The path of the track's file; nothing when the application gives none.
std::optional<std::string> locationByTrackPid(std::string_view hexpid);

}  // namespace kestrel::TextSorter
