#include "musicapp/requests.h"

#include "foundation/identifiers.h"
#include "musicapp/music_application.h"
#include "platform/log.h"

namespace kestrel::request {
namespace {

CommandResult run(MusicApplication* application, const Command& command) {
  if (application) return application->run(command);
  return CommandResult::failing(Message::tr("There is no music application to send this to."), 0);
}

template <typename TrackCommand>
std::optional<std::string> ask(MusicApplication* application, std::string_view track) {
  const auto id = numberFromHex(track);
  return id ? run(application, TrackCommand{*id}).text : std::nullopt;
}

void reveal(MusicApplication* application, Log& log, const Command& command) {
  log.line(run(application, command).text.value_or("(null)"));
}

}  // namespace

std::optional<std::string> trackCloudStatus(MusicApplication* application, std::string_view track) {
  return ask<command::TrackCloudStatus>(application, track);
}

std::optional<std::string> trackLocation(MusicApplication* application, std::string_view track) {
  return ask<command::TrackLocation>(application, track);
}

void addFile(MusicApplication* application, Log& log, std::string_view path) {
  const CommandResult result = run(application, command::AddFile{std::string(path)});
  if (result.failed()) log.line("Error while adding: " + lineOf(result.failure->whole()));
}

// An ID that is none is one that no library has.

void revealTrackInPlaylist(MusicApplication* application, Log& log, std::string_view playlist,
                           std::string_view track) {
  reveal(
      application, log,
      command::RevealTrack{numberFromHex(track).value_or(0), numberFromHex(playlist).value_or(0)});
}

void revealTrack(MusicApplication* application, Log& log, std::string_view track) {
  reveal(application, log, command::RevealTrack{numberFromHex(track).value_or(0), {}});
}

void revealPlaylist(MusicApplication* application, Log& log, std::string_view playlist) {
  reveal(application, log, command::RevealPlaylist{numberFromHex(playlist).value_or(0)});
}

}  // namespace kestrel::request
