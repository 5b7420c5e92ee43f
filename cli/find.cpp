// find: the duplicates of a library, and which copy of each to keep.

#include <iostream>
#include <memory>

#include "cli/find_output.h"
#include "cli/search.h"
#include "cli/session.h"
#include "musicapp/media_library.h"

namespace kestrel {

void addFindCommand(CLI::App& app, Action& chosen) {
  struct Options {
    SearchOptions search;
    bool json = false;
    bool csv = false;
  };
  auto options = std::make_shared<Options>();
  CLI::App* command = app.add_subcommand("find", "Find duplicates and choose which copy to keep");
  addSearchOptions(*command, options->search);
  auto* json = command->add_flag("--json", options->json, "Write JSON");
  command->add_flag("--csv", options->csv, "Write CSV, one line per track")->excludes(json);
  command->callback([options, &chosen] {
    chosen = [options](Session& session) {
      checkSearchOptions(options->search);
      const auto library = session.open(options->search.library);
      const SearchResult result = search(session, *library, options->search);
      if (session.interrupted()) return session.stopped();
      (options->json  ? writeJson
       : options->csv ? writeCsv
                      : writeText)(std::cout, result, [&session] { return session.interrupted(); });
      return session.interrupted() ? session.stopped() : 0;
    };
  });
}

}  // namespace kestrel
