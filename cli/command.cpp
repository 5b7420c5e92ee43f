#include "cli/command.h"

#include <filesystem>
#include <memory>
#include <utility>
#include <vector>

#include "cli/session.h"

namespace kestrel {

namespace {

/// Empty when the text is OLD=NEW; else what is wrong with it.
std::string faultOfMap(const std::string& text) {
  const std::size_t equals = text.find('=');
  return equals == std::string::npos || equals == 0 || equals + 1 == text.size()
             ? "has to be OLD=NEW, such as C:/Users/anna/Music=/home/anna/Music"
             : "";
}

PathMaps mapsOf(const std::vector<std::string>& texts) {
  std::vector<PathMaps::Map> maps;
  for (const std::string& text : texts) {
    const std::size_t equals = text.find('=');
    maps.push_back({text.substr(0, equals),
                    std::filesystem::absolute(text.substr(equals + 1)).lexically_normal()});
  }
  return PathMaps(std::move(maps));
}

}  // namespace

void setAction(CLI::App& command, Action& chosen, Action action) {
  const CLI::Option* maps = command.get_option_no_throw("--map");
  command.callback([&command, &chosen, maps, action = std::move(action)] {
    chosen = [&command, maps, action](Session& session) {
      if (maps) {
        session.maps = mapsOf(maps->results());
        session.withoutFiles = command.count("--without-files") > 0;
      }
      return action(session);
    };
  });
}

void addLibraryOption(CLI::App& command, std::string& library) {
  command
      .add_option("LIBRARY", library,
                  "The library: a document, a folder of audio files, or an address")
      ->required();
  addFilesOptions(command);
}

void addFilesOptions(CLI::App& command) {
  command
      .add_option_function<std::vector<std::string>>(
          "--map", [](const std::vector<std::string>&) {},
          "Of a library from another machine: files whose location begins with\n"
          "the folder OLD are here in NEW; may be given several times")
      ->allow_extra_args(false)
      ->check(CLI::Validator(faultOfMap, ""))
      ->option_text("OLD=NEW");
  command.add_flag_callback(
      "--without-files", [] {}, "Compare as if all files were where the library says");
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
