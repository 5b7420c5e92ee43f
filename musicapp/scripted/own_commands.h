/// The texts of the commands that have no fixed template.
///
/// Each is the text of a command value: parsing it gives the value back. Unlike the templates these
/// texts carry any name: what must not stand within quotation marks is spelled out beside them.
/// Length and time are linear in the number of tracks. Stateless; callable from any thread.
#pragma once

#include <string>
#include <string_view>

#include "musicapp/command.h"

namespace kestrel::script {

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

}  // namespace kestrel::script
