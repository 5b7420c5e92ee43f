// script: sends one script text to the library and prints its result.

#include <algorithm>
#include <iostream>
#include <memory>

#include "cli/acting.h"
#include "cli/command.h"
#include "cli/filtered_output.h"
#include "musicapp/scripted/script_language.h"

namespace kestrel {
namespace {

/// A text that is no script does nothing at all.
bool changesLibrary(const std::string& text) {
  const auto parsed = script::parse(text);
  const auto* statements = std::get_if<std::vector<script::Statement>>(&parsed);
  return statements && std::any_of(statements->begin(), statements->end(),
                                   [](const script::Statement& statement) {
                                     return !statement.unknownID &&
                                            kestrel::changesLibrary(statement.command);
                                   });
}

}  // namespace

void addScriptCommand(CLI::App& app, Action& chosen) {
  struct Options {
    std::string library;
    std::string text;
    bool unrecorded = false;
  };
  auto options = std::make_shared<Options>();
  CLI::App* command = app.add_subcommand("script", "Run one script text on a library");
  addLibraryOption(*command, options->library);
  command->add_option("TEXT", options->text, "The script")->required();
  command->add_flag("--unrecorded", options->unrecorded,
                    "Run it even if it changes the library, which undo cannot take back");
  setAction(*command, chosen, [options](Session& session) {
    if (!options->unrecorded && changesLibrary(options->text))
      throw UsageError(
          "script: this would change the library without a record in the history, so that it "
          "could not be undone; --unrecorded runs it all the same");
    OpenedApplication opened(session, options->library);
    const ScriptResult result = script::interpret(options->text, opened.application);
    if (result.failed()) {
      complain(result.error->description());
      return 1;
    }
    if (result.text) writeLines(std::cout, {*result.text});
    return 0;
  });
}

}  // namespace kestrel
