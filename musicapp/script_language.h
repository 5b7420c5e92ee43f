/// The small part of the music application's scripting language that Kestrel's commands use.
///
/// A text that goes beyond it, or is malformed, is an error of the language with its place: an
/// unescaped quotation mark in a name is the known case. Within quotation marks every other
/// character stands for itself, backslashes and line breaks included.
#pragma once

#include <string_view>
#include <variant>
#include <vector>

#include "musicapp/script_command.h"
#include "musicapp/script_runner.h"

namespace kestrel::script {

/// The statements of a script in the order of running, or the first error with line and column.
/// `delay` statements are accepted and left out: an application here has finished when it answers.
std::variant<std::vector<Statement>, ScriptError> parse(std::string_view text);

/// Whether carrying it out may change the library.
bool changesLibrary(const Command& command) noexcept;

}  // namespace kestrel::script
