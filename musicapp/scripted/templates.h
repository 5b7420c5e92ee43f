/// The fixed texts of the scripts by which a running music application is asked for something.
///
/// They address the application in three ways, as "Music", as "iTunes" and by its identifier. This
/// is deliberate, as are all their words: each is known to work with the application as it stands.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>

namespace kestrel::script {

/// In the comments what fills the placeholders, in order; IDs are in hexadecimal form.
enum class Template : std::uint8_t {
  AddFileToMusic,            ///< path of a media file
  TrackCloudStatus,          ///< track ID
  TrackLocation,             ///< track ID
  RevealTrackInPlaylist,     ///< playlist ID, track ID
  RevealTrack,               ///< track ID
  RevealPlaylist,            ///< playlist ID
  ImportPlaylistFile,        ///< path of a playlist document
  DeleteSameNamedPlaylists,  ///< name, ID of the playlist that stays
  DeletePlaylistByPid,       ///< playlist ID
};

/// The text with its placeholders filled. Arguments go in as they stand: one that holds a quotation
/// mark makes a text that does not compile, which is deliberate and reported by whoever runs it.
/// Throws std::invalid_argument unless there is one argument for each placeholder.
std::string scriptText(Template command, std::initializer_list<std::string_view> arguments);

}  // namespace kestrel::script
