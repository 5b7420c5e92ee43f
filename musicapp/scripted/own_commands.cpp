#include "musicapp/scripted/own_commands.h"

#include <algorithm>
#include <functional>
#include <vector>

#include "foundation/identifiers.h"

namespace kestrel::script {
namespace {

using TextSorter::decToHex;

/// In parentheses, so that it can be an operand.
std::string trackOf(const std::string& playlist, std::uint64_t track) {
  return "(get some track of " + playlist + " whose persistent ID is \"" + decToHex(track) + "\")";
}

std::string libraryTrack(std::uint64_t track) { return trackOf("library playlist 1", track); }

std::string playlistOfKind(std::string_view kind, std::uint64_t playlist) {
  return std::string("(get some ").append(kind) + " whose persistent ID is \"" +
         decToHex(playlist) + "\")";
}

std::string userPlaylist(std::uint64_t playlist) {
  return playlistOfKind("user playlist", playlist);
}

/// `lines` are whole lines.
std::string told(std::string_view target, std::string_view lines) {
  std::string text("tell ");
  text.reserve(target.size() + lines.size() + 16);
  return text.append(target).append("\n").append(lines).append("end tell");
}

std::string toldApplication(std::string_view lines) {
  return told("application id \"com.apple.Music\"", lines);
}

}  // namespace

std::string scriptText(const command::DeleteEntries& command) {
  std::vector<std::uint64_t> positions = command.positions;
  std::sort(positions.begin(), positions.end(), std::greater<>());
  positions.erase(std::unique(positions.begin(), positions.end()), positions.end());
  std::string lines;
  for (const std::uint64_t position : positions)
    lines.append("delete track ").append(decimalText(position)).append("\n");
  return toldApplication(told(userPlaylist(command.playlist), lines) + "\n");
}

std::string scriptText(const command::DeleteAllEntries& command) {
  return toldApplication("delete every track of " + userPlaylist(command.playlist) + "\n");
}

std::string scriptText(const command::DuplicateTracks& command) {
  const std::string target = " to " + userPlaylist(command.playlist) + "\n";
  std::string lines;
  for (const std::uint64_t track : command.tracks)
    lines.append("duplicate ").append(libraryTrack(track)).append(target);
  return toldApplication(lines);
}

std::string scriptText(const command::DeleteTracks& command) {
  std::string lines;
  for (const std::uint64_t track : command.tracks)
    lines.append("delete ").append(libraryTrack(track)).append("\n");
  return toldApplication(lines);
}

std::string scriptText(const command::MovePlaylist& command) {
  return toldApplication("move " + userPlaylist(command.playlist) + " to " +
                         playlistOfKind("folder playlist", command.folder) + "\n");
}

std::string scriptText(const command::CreatePlaylist& command) {
  return toldApplication(
      "return (get persistent ID of (make new user playlist with properties {name:" +
      textExpression(command.name) + "}))\n");
}

std::string textExpression(std::string_view text) {
  std::string expression("\"");
  for (const char c : text) {
    if (c == '"')
      expression += "\" & quote & \"";
    else if (c == '\\')
      expression += "\" & (character id 92) & \"";
    else
      expression += c;
  }
  return expression += '"';
}

}  // namespace kestrel::script
