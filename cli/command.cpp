#include "cli/command.h"

#include <memory>

namespace kestrel {

void addLibraryOption(CLI::App& command, std::string& library) {
  command.add_option("LIBRARY", library, "The library: a document, a folder of audio files, or an address")->required();
}

void addReadingCommand(CLI::App& app, Action& chosen, const char* name, const char* help,
                       const char* jsonHelp, int (*read)(Session&, const ReadingOptions&)) {
  auto options = std::make_shared<ReadingOptions>();
  CLI::App* command = app.add_subcommand(name, help);
  addLibraryOption(*command, options->library);
  command->add_flag("--json", options->json, jsonHelp);
  command->callback([options, read, &chosen] {
    chosen = [options, read](Session& session) { return read(session, *options); };
  });
}

}  // namespace kestrel
