#include "musicapp/scripted/script_runner.h"

#include <charconv>

#include "platform/file_error.h"
#include "platform/programs.h"

namespace kestrel {
namespace {

std::string_view withoutLastLineEnd(std::string_view text) {
  if (text.ends_with('\n')) text.remove_suffix(1);
  if (text.ends_with('\r')) text.remove_suffix(1);
  return text;
}

/// Takes a number in parentheses off the end of a message; 0 when there is none.
int takeNumber(std::string_view& message) {
  const std::size_t open = message.rfind('(');
  if (open == std::string_view::npos || !message.ends_with(')')) return 0;
  int number = 0;
  const char* end = message.data() + message.size() - 1;
  const auto [stop, error] = std::from_chars(message.data() + open + 1, end, number);
  if (error != std::errc() || stop != end) return 0;
  message = message.substr(0, message.find_last_not_of(" \n(", open) + 1);
  return number;
}

ScriptError errorOf(const ProgramResult& result, const std::string& helper) {
  ScriptError error;
  std::string_view message = result.errors;
  message = message.substr(0, message.find_last_not_of(" \t\r\n") + 1);
  error.number = takeNumber(message);
  error.message =
      message.empty()
          ? Message::tr("%1 ended with status %2.").arg(helper).arg(std::to_string(result.status))
          : Message::verbatim(std::string(message));
  return error;
}

}  // namespace

Message ScriptError::whole() const {
  Message text = message;
  if (place.line != 0)
    text = Message::tr("Line %1, column %2: %3")
               .arg(place.line)
               .arg(place.column)
               .arg(std::move(text));
  return CommandFailure{std::move(text), number}.whole();
}

std::string ScriptError::description() const { return lineOf(whole()); }

ScriptResult HelperProgramRunner::run(std::string_view script) {
  try {
    const ProgramResult result = programs_.run({helper_, {"-"}, std::string(script), false, {}});
    if (result.status != 0) return {std::nullopt, errorOf(result, helper_)};
    if (result.output.empty()) return {};
    return {std::string(withoutLastLineEnd(result.output)), std::nullopt};
  } catch (const FileError& error) {
    return {std::nullopt, ScriptError{{error.message, 0}, {}}};
  }
}

}  // namespace kestrel
