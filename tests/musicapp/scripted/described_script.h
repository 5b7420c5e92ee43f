/// What a script says, as one text a statement, so that readings can be compared and shown.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "foundation/identifiers.h"
#include "musicapp/scripted/script_language.h"

namespace kestrel::testing {

struct StatementDescriber {
  static std::string hex(std::uint64_t id) { return " " + TextSorter::decToHex(id); }
  static std::string list(const std::vector<std::uint64_t>& numbers) {
    std::string text;
    for (const std::uint64_t number : numbers) text += hex(number);
    return text;
  }

  std::string operator()(const command::AddFile& c) const { return "add " + c.path; }
  std::string operator()(const command::TrackCloudStatus& c) const {
    return "cloud" + hex(c.track);
  }
  std::string operator()(const command::TrackLocation& c) const { return "where" + hex(c.track); }
  std::string operator()(const command::RevealTrack& c) const {
    return "reveal track" + hex(c.track) + (c.playlist ? " in" + hex(*c.playlist) : "");
  }
  std::string operator()(const command::RevealPlaylist& c) const {
    return "reveal playlist" + hex(c.playlist);
  }
  std::string operator()(const command::DeleteSameNamedPlaylists& c) const {
    return std::string(c.caseSensitive ? "delete named " : "delete NAMED ") + c.name + " but" +
           (c.except ? hex(*c.except) : " none");
  }
  std::string operator()(const command::DeletePlaylist& c) const {
    return "delete playlist" + hex(c.playlist);
  }
  std::string operator()(const command::DeleteEntries& c) const {
    return "delete of" + hex(c.playlist) + ":" + list(c.positions);
  }
  std::string operator()(const command::DeleteAllEntries& c) const {
    return "empty" + hex(c.playlist);
  }
  std::string operator()(const command::DuplicateTracks& c) const {
    return "duplicate to" + hex(c.playlist) + ":" + list(c.tracks);
  }
  std::string operator()(const command::DeleteTracks& c) const {
    return "delete tracks" + list(c.tracks);
  }
  std::string operator()(const command::MovePlaylist& c) const {
    return "move" + hex(c.playlist) + " to" + hex(c.folder);
  }
  std::string operator()(const command::CreatePlaylist& c) const { return "create " + c.name; }
  /// What no script says.
  template <typename Other>
  std::string operator()(const Other&) const {
    return "another command";
  }
};

/// The statements, those whose errors are ignored with a question mark at the end, or the error.
inline std::vector<std::string> described(std::string_view text) {
  const auto parsed = script::parse(text);
  if (const auto* error = std::get_if<ScriptError>(&parsed)) return {error->description()};
  std::vector<std::string> lines;
  for (const auto& [command, ignored, unknownID] : std::get<0>(parsed))
    lines.push_back(
        (unknownID ? "nothing has " + *unknownID : std::visit(StatementDescriber(), command)) +
        (ignored ? "?" : ""));
  return lines;
}

}  // namespace kestrel::testing
