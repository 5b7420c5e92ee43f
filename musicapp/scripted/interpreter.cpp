#include "musicapp/scripted/interpreter.h"

#include <algorithm>
#include <utility>
#include <variant>
#include <vector>

#include "foundation/identifiers.h"
#include "musicapp/scripted/script_language.h"

namespace kestrel::script {
namespace {

CommandResult resultOf(const Statement& statement, MusicApplication& application) {
  if (!statement.unknownID) return application.run(statement.command);
  return {{},
          {},
          CommandFailure{
              Message::tr("There is nothing with the persistent ID %1").arg(*statement.unknownID),
              CommandFailure::noSuchObject}};
}

ScriptResult carryOut(const std::vector<Statement>& statements, MusicApplication& application) {
  CommandResult last;
  for (std::size_t i = 0; i < statements.size(); ++i) {
    last = resultOf(statements[i], application);
    if (!last.failed()) continue;
    if (!statements[i].errorsIgnored) return {std::nullopt, ScriptError{*last.failure, {}}};
    last = {};
    while (i + 1 < statements.size() && statements[i + 1].errorsIgnored) ++i;
  }
  const bool isMade = !statements.empty() &&
                      std::holds_alternative<command::CreatePlaylist>(statements.back().command);
  if (isMade && last.playlist) return {TextSorter::decToHex(*last.playlist), {}};
  return {std::move(last.text), {}};
}

}  // namespace

ScriptResult interpret(std::string_view script, MusicApplication& application,
                       const Batch::Record& record) {
  const auto parsed = parse(script);
  if (const auto* error = std::get_if<ScriptError>(&parsed)) return {std::nullopt, *error};
  const auto& statements = std::get<std::vector<Statement>>(parsed);
  if (std::none_of(statements.begin(), statements.end(),
                   [](const Statement& statement) { return changesLibrary(statement.command); }))
    return carryOut(statements, application);
  try {
    const auto batch = application.beginBatch();
    ScriptResult result = carryOut(statements, application);
    if (!result.failed()) batch->commit(record);
    return result;
  } catch (const std::exception& error) {
    return {std::nullopt, ScriptError{{messageOf(error), CommandFailure::failed}, {}}};
  }
}

}  // namespace kestrel::script
