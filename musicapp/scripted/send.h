/// Sending script texts, and what becomes of their results.
///
/// Each operation has its text run on the calling thread and waits for the answer. Nothing throws.
#pragma once

#include <cstdint>
#include <string_view>

#include "musicapp/command.h"
#include "musicapp/scripted/script_runner.h"

namespace kestrel {

class Log;

namespace script {

/// Runs a text that is to mean `command`. One that, with a name or path in it, would be read as
/// something else is an error and is not sent; one that cannot be read at all is, since it does
/// nothing but fail. Without a runner the answer is an error, as of an application that is not
/// there.
ScriptResult send(ScriptRunner* scripts, std::string_view text, const Command& command);

/// The two imports of a replaced playlist, as the log tells them apart.
enum class ImportPass : std::uint8_t { first, second };

/// The steps of the import-and-replace sequence. A failure is logged, "Error while adding 1: ..."
/// or
/// "... 2: ..." by the pass or "Error while deleting: ...", and stops nothing. IDs are hexadecimal.
/// Holds references only: make one where it is needed.
class Sender {
 public:
  /// `scripts` may be nullptr: there is no application.
  Sender(ScriptRunner* scripts, Log& log) : scripts_(scripts), log_(log) {}

  void importPlaylistFile(std::string_view path, ImportPass pass) const;
  void deleteSameNamedPlaylists(std::string_view name, std::string_view except) const;
  void deletePlaylistByPid(std::string_view playlist) const;

 private:
  void sendLoggingError(std::string_view failure, std::string_view text,
                        const Command& command) const;

  ScriptRunner* scripts_;
  Log& log_;
};

}  // namespace script
}  // namespace kestrel
