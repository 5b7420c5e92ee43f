#include "scripting/send.h"

#include "platform/log.h"

namespace kestrel::script {

ScriptResult run(ScriptRunner* scripts, std::string_view text) {
  if (scripts) return scripts->run(text);
  return {std::nullopt,
          ScriptError{Message::tr("There is no music application to send this to."), 0, {}}};
}

void Sender::addFileToMusic(std::string_view path) const {
  sendLoggingError("Error while adding: ", Template::AddFileToMusic, {path});
}

void Sender::importPlaylistFile(std::string_view path, ImportPass pass) const {
  sendLoggingError(pass == ImportPass::first ? "Error while adding 1: " : "Error while adding 2: ",
                   Template::ImportPlaylistFile, {path});
}

void Sender::deleteSameNamedPlaylists(std::string_view name, std::string_view except) const {
  sendLoggingError("Error while deleting: ", Template::DeleteSameNamedPlaylists, {name, except});
}

void Sender::deletePlaylistByPid(std::string_view playlist) const {
  sendLoggingError("Error while deleting: ", Template::DeletePlaylistByPid, {playlist});
}

std::optional<std::string> Sender::trackCloudStatus(std::string_view track) const {
  return send(Template::TrackCloudStatus, {track}).text;
}

std::optional<std::string> Sender::trackLocation(std::string_view track) const {
  return send(Template::TrackLocation, {track}).text;
}

void Sender::revealTrackInPlaylist(std::string_view playlist, std::string_view track) const {
  sendLoggingResult(Template::RevealTrackInPlaylist, {playlist, track});
}

void Sender::revealTrack(std::string_view track) const {
  sendLoggingResult(Template::RevealTrack, {track});
}

void Sender::revealPlaylist(std::string_view playlist) const {
  sendLoggingResult(Template::RevealPlaylist, {playlist});
}

ScriptResult Sender::send(Template command, Arguments arguments) const {
  return run(scripts_, scriptText(command, arguments));
}

void Sender::sendLoggingError(std::string_view failure, Template command,
                              Arguments arguments) const {
  const ScriptResult result = send(command, arguments);
  if (result.failed()) log_.line(std::string(failure) + result.error->description());
}

void Sender::sendLoggingResult(Template command, Arguments arguments) const {
  log_.line(send(command, arguments).text.value_or("(null)"));
}

}  // namespace kestrel::script
