// script: sends one script text to the library and prints its result.

#include <iostream>
#include <memory>

#include "cli/application.h"
#include "cli/command.h"
#include "musicapp/scripted/interpreter.h"

namespace kestrel {

void addScriptCommand(CLI::App& app, Action& chosen) {
  struct Options {
    std::string library;
    std::string text;
  };
  auto options = std::make_shared<Options>();
  CLI::App* command = app.add_subcommand("script", "Run one script text on a library");
  command->add_option("LIBRARY", options->library, "The library document, as XML")->required();
  command->add_option("TEXT", options->text, "The script")->required();
  command->callback([options, &chosen] {
    chosen = [options](Session& session) {
      OpenedApplication opened(session, options->library);
      const ScriptResult result = script::interpret(options->text, opened.application);
      if (result.failed()) {
        std::cerr << "kestrel-cli: " << result.error->description() << '\n';
        return 1;
      }
      if (result.text) std::cout << *result.text << '\n';
      return 0;
    };
  });
}

}  // namespace kestrel
