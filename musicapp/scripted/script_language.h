/// The small part of the music application's scripting language that Kestrel's commands use.
///
/// A text that goes beyond it, or is malformed, is an error of the language with its place: an
/// unescaped quotation mark in a name is the known case. Within quotation marks every other
/// character stands for itself, backslashes and line breaks included.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "musicapp/music_application.h"
#include "musicapp/scripted/script_runner.h"

namespace kestrel::script {

struct Statement {
  Command command;
  bool errorsIgnored = false;  ///< it stands in a `try` block, which ends at its first error
  /// The start of a text that names a track or playlist and is no persistent ID: looking it up, and
  /// so the statement, fails.
  std::optional<std::string> unknownID = {};
  friend bool operator==(const Statement&, const Statement&) = default;
};

/// The statements of a script in the order of running, or the first error with line and column.
/// `delay` statements are accepted and left out: an application here has finished when it answers.
std::variant<std::vector<Statement>, ScriptError> parse(std::string_view text);

/// Carries a script out, as one batch: an error that stands in no `try` block leaves the library as
/// it was. The result is the last statement's; of a new playlist its persistent ID in hexadecimal.
/// Never throws. `record` is that of Batch::commit.
ScriptResult interpret(std::string_view script, MusicApplication& application,
                       const Batch::Record& record = {});

}  // namespace kestrel::script
