#include "musicapp/scripted/script_texts.h"

#include <algorithm>
#include <array>
#include <functional>
#include <stdexcept>
#include <variant>
#include <vector>

#include "foundation/identifiers.h"
#include "musicapp/scripted/script_language.h"

namespace kestrel::script {
namespace {

using TextSorter::decToHex;

constexpr std::string_view placeholder = "%@";

/// In the order of the enumeration.
constexpr std::array<std::string_view, 9> templates = {
    "tell application \"Music\"\nadd ((POSIX file \"%@\") as alias)\ndelay 0.1\nend tell",

    "tell application \"Music\"\ntry\ntell (get some track of library playlist 1 whose persistent "
    "ID is \"%@\") to return ((get its cloud status) as text)\nend try\nend tell",

    "tell application \"Music\"\ntry\ntell (get some track of library playlist 1 whose persistent "
    "ID is \"%@\") to return (POSIX path of ((get its location) as text))\nend try\nend tell",

    "tell application id \"com.apple.Music\"\ntry\nreveal (get some track of (get some playlist "
    "whose persistent ID is \"%@\") whose persistent ID is \"%@\")\nend try\nend tell",

    "tell application id \"com.apple.Music\"\ntry\nreveal (get some track of library playlist 1 "
    "whose persistent ID is \"%@\")\nend try\nend tell",

    "tell application id \"com.apple.Music\"\ntry\nreveal (get some playlist whose persistent ID "
    "is \"%@\")\nend try\nend tell",

    "tell application \"iTunes\" to add (\"%@\" as POSIX file as alias)",

    "tell application \"iTunes\"\ntry\nconsidering case\ndelete every user playlist whose name is "
    "\"%@\" and persistent ID is not \"%@\" and smart is false\nend considering\nend try\nend tell",

    "tell application \"iTunes\"\ntry\ndelete some playlist whose persistent ID is \"%@\"\nend "
    "try\nend tell",
};

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

/// Whether a text says `command` and nothing else, or cannot be read by any reader: quotation marks
/// in pairs may close and open a text where a reader that knows more than this one goes on.
bool isSafe(std::string_view text, const Command& command) {
  const auto parsed = parse(text);
  if (const auto* statements = std::get_if<std::vector<Statement>>(&parsed))
    return statements->size() == 1 && statements->front().command == command;
  return std::count(text.begin(), text.end(), '"') % 2 != 0 &&
         text.find('\\') == std::string_view::npos;
}

}  // namespace

std::string scriptText(Template command, std::initializer_list<std::string_view> arguments) {
  std::string_view rest = templates.at(static_cast<std::size_t>(command));
  std::string script;
  for (const std::string_view argument : arguments) {
    const std::size_t place = rest.find(placeholder);
    if (place == std::string_view::npos) throw std::invalid_argument("too many script arguments");
    script.append(rest.substr(0, place)).append(argument);
    rest.remove_prefix(place + placeholder.size());
  }
  if (rest.find(placeholder) != std::string_view::npos)
    throw std::invalid_argument("too few script arguments");
  return script.append(rest);
}

std::string scriptText(const command::AddFile& command) {
  return scriptText(Template::AddFileToMusic, {command.path});
}

std::string scriptText(const command::TrackCloudStatus& command) {
  return scriptText(Template::TrackCloudStatus, {decToHex(command.track)});
}

std::string scriptText(const command::TrackLocation& command) {
  return scriptText(Template::TrackLocation, {decToHex(command.track)});
}

std::string scriptText(const command::RevealTrack& command) {
  const std::string track = decToHex(command.track);
  if (!command.playlist) return scriptText(Template::RevealTrack, {track});
  return scriptText(Template::RevealTrackInPlaylist, {decToHex(*command.playlist), track});
}

std::string scriptText(const command::RevealPlaylist& command) {
  return scriptText(Template::RevealPlaylist, {decToHex(command.playlist)});
}

std::string scriptText(const command::DeleteSameNamedPlaylists& command) {
  return scriptText(Template::DeleteSameNamedPlaylists,
                    {command.name, decToHex(command.except.value_or(0))});
}

std::string scriptText(const command::DeletePlaylist& command) {
  return scriptText(Template::DeletePlaylistByPid, {decToHex(command.playlist)});
}

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

ScriptResult send(ScriptRunner* scripts, std::string_view text, const Command& command) {
  if (scripts && isSafe(text, command)) return scripts->run(text);
  const Message why =
      scripts
          ? Message::tr("A quotation mark in a name or path would make another command of this.")
          : Message::tr("There is no music application to send this to.");
  return {std::nullopt, ScriptError{{why, 0}, {}}};
}

}  // namespace kestrel::script
