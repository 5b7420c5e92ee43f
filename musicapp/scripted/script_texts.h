/// The texts of the scripts by which a running music application is asked for something, and
/// sending them.
///
/// Nine texts are fixed templates. They address the application in three ways, as "Music", as
/// "iTunes" and by its identifier: each is known to work with the application in just these words.
/// The commands beyond them have texts of their own, which carry any name: what must not stand
/// within quotation marks is spelled out beside them. Stateless; callable from any thread.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>

#include "musicapp/command.h"
#include "musicapp/scripted/script_runner.h"

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
/// mark makes a text that does not compile, which running it reports. Throws
/// std::invalid_argument unless there is one argument for each placeholder.
std::string scriptText(Template command, std::initializer_list<std::string_view> arguments);

// The texts of command values; parsing one gives the value back. Length and time are linear in the
// number of tracks.

std::string scriptText(const command::AddFile& command);
std::string scriptText(const command::TrackCloudStatus& command);
std::string scriptText(const command::TrackLocation& command);
std::string scriptText(const command::RevealTrack& command);
std::string scriptText(const command::RevealPlaylist& command);
std::string scriptText(const command::DeleteSameNamedPlaylists& command);
std::string scriptText(const command::DeletePlaylist& command);
/// Deletes the highest position first, whatever the order given, and each one once: deleting moves
/// up what comes after it.
std::string scriptText(const command::DeleteEntries& command);
std::string scriptText(const command::DeleteAllEntries& command);
/// Adds at the playlist's end, in order, repeats included.
std::string scriptText(const command::DuplicateTracks& command);
std::string scriptText(const command::DeleteTracks& command);
std::string scriptText(const command::MovePlaylist& command);
/// The result of running it is the new playlist's persistent ID.
std::string scriptText(const command::CreatePlaylist& command);

/// A text as an expression of the language: `a"b` is `"a" & quote & "b"`. Backslashes are spelled
/// out as well, since the platform's own script runner takes them for more than characters.
std::string textExpression(std::string_view text);

/// Runs a text that is to mean `command` on the calling thread and waits for the answer. One that,
/// with a name or path in it, would be read as something else is an error and is not sent; one that
/// cannot be read at all is, since it does nothing but fail. Without a runner the answer is an
/// error, as of an application that is not there. Never throws.
ScriptResult send(ScriptRunner* scripts, std::string_view text, const Command& command);

}  // namespace kestrel::script
