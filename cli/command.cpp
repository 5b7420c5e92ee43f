#include "cli/command.h"

#include <memory>
#include <utility>

namespace kestrel {

void setAction(CLI::App& command, Action& chosen, Action action) {
  command.callback([&chosen, action = std::move(action)] { chosen = action; });
}

void addLibraryOption(CLI::App& command, std::string& library) {
  command
      .add_option("LIBRARY", library,
                  "The library: a document, a folder of audio files, or an address")
      ->required();
}

void addReadingCommand(CLI::App& app, Action& chosen, const char* name, const char* help,
                       const char* jsonHelp, int (*read)(Session&, const ReadingOptions&)) {
  auto options = std::make_shared<ReadingOptions>();
  CLI::App* command = app.add_subcommand(name, help);
  addLibraryOption(*command, options->library);
  command->add_flag("--json", options->json, jsonHelp);
  setAction(*command, chosen,
            [options, read](Session& session) { return read(session, *options); });
}

}  // namespace kestrel
