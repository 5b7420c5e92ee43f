/// Asking a music application for something whose failure only the log tells, as the class-level
/// operations do. IDs are persistent IDs in hexadecimal form. Without an application everything
/// fails. Nothing throws.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace kestrel {

class Log;
class MusicApplication;

namespace request {

/// The answer as the application gives it; nothing for tracks that it does not know.
std::optional<std::string> trackCloudStatus(MusicApplication* application, std::string_view track);
std::optional<std::string> trackLocation(MusicApplication* application, std::string_view track);

/// Logs "Error while adding: ..." when it fails.
void addFile(MusicApplication* application, Log& log, std::string_view path);

/// These log their result, and "(null)" when there is none.
void revealTrackInPlaylist(MusicApplication* application, Log& log, std::string_view playlist,
                           std::string_view track);
void revealTrack(MusicApplication* application, Log& log, std::string_view track);
void revealPlaylist(MusicApplication* application, Log& log, std::string_view playlist);

}  // namespace request
}  // namespace kestrel
