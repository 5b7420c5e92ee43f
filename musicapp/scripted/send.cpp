#include "musicapp/scripted/send.h"

#include <algorithm>
#include <variant>
#include <vector>

#include "foundation/identifiers.h"
#include "musicapp/scripted/script_language.h"
#include "musicapp/scripted/templates.h"
#include "platform/log.h"

namespace kestrel::script {
namespace {

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

ScriptResult send(ScriptRunner* scripts, std::string_view text, const Command& command) {
  if (!scripts)
    return {std::nullopt,
            ScriptError{{Message::tr("There is no music application to send this to."), 0}, {}}};
  if (!isSafe(text, command))
    return {std::nullopt,
            ScriptError{{Message::tr("A quotation mark in a name or path would make another "
                                     "command of this."),
                         0},
                        {}}};
  return scripts->run(text);
}

void Sender::importPlaylistFile(std::string_view path, ImportPass pass) const {
  sendLoggingError(pass == ImportPass::first ? "Error while adding 1: " : "Error while adding 2: ",
                   scriptText(Template::ImportPlaylistFile, {path}),
                   command::AddFile{std::string(path)});
}

void Sender::deleteSameNamedPlaylists(std::string_view name, std::string_view except) const {
  sendLoggingError(
      "Error while deleting: ", scriptText(Template::DeleteSameNamedPlaylists, {name, except}),
      command::DeleteSameNamedPlaylists{std::string(name), numberFromHex(except), true});
}

void Sender::deletePlaylistByPid(std::string_view playlist) const {
  sendLoggingError("Error while deleting: ", scriptText(Template::DeletePlaylistByPid, {playlist}),
                   command::DeletePlaylist{numberFromHex(playlist).value_or(0)});
}

void Sender::sendLoggingError(std::string_view failure, std::string_view text,
                              const Command& command) const {
  const ScriptResult result = send(scripts_, text, command);
  if (result.failed()) log_.line(std::string(failure) + result.error->description());
}

}  // namespace kestrel::script
