/// Sending the fixed templates, and what becomes of their results.
///
/// Each operation makes its text, has it run and waits for the answer, on the calling thread. No
/// failure is shown or stops the caller: some are written to the log, the others are no result.
/// Nothing throws. IDs are persistent IDs in hexadecimal form.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>

#include "musicapp/script_runner.h"
#include "scripting/templates.h"

namespace kestrel {

class Log;

namespace script {

/// The two imports of a replaced playlist, as the log tells them apart.
enum class ImportPass : std::uint8_t { first, second };

/// Runs a text. Without a runner the answer is an error, as of an application that is not there.
ScriptResult run(ScriptRunner* scripts, std::string_view text);

/// Holds references only: make one where it is needed.
class Sender {
 public:
  /// `scripts` may be nullptr: there is no application.
  Sender(ScriptRunner* scripts, Log& log) : scripts_(scripts), log_(log) {}

  /// These log "Error while adding: ...", "Error while adding 1: ..." or "... 2: ..." by the pass,
  /// and "Error while deleting: ..." when they fail.
  void addFileToMusic(std::string_view path) const;
  void importPlaylistFile(std::string_view path, ImportPass pass) const;
  void deleteSameNamedPlaylists(std::string_view name, std::string_view except) const;
  void deletePlaylistByPid(std::string_view playlist) const;

  /// The answer as the application gives it; nothing for tracks that it does not know.
  [[nodiscard]] std::optional<std::string> trackCloudStatus(std::string_view track) const;
  [[nodiscard]] std::optional<std::string> trackLocation(std::string_view track) const;

  /// These log their result, and "(null)" when there is none.
  void revealTrackInPlaylist(std::string_view playlist, std::string_view track) const;
  void revealTrack(std::string_view track) const;
  void revealPlaylist(std::string_view playlist) const;

 private:
  using Arguments = std::initializer_list<std::string_view>;

  [[nodiscard]] ScriptResult send(Template command, Arguments arguments) const;
  void sendLoggingError(std::string_view failure, Template command, Arguments arguments) const;
  void sendLoggingResult(Template command, Arguments arguments) const;

  ScriptRunner* scripts_;
  Log& log_;
};

}  // namespace script
}  // namespace kestrel
