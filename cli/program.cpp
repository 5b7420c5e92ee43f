#include "cli/program.h"

#include <algorithm>
#include <cstdint>
#include <exception>
#include <iostream>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "cli/command.h"
#include "cli/filtered_output.h"
#include "cli/session.h"
#include "foundation/edit_distance.h"
#include "foundation/utf8.h"

namespace kestrel {
namespace {

constexpr int done = 0, failure = 1, usage = 2;

/// The arguments, last one first. "--name=" is given as two, name and empty value: the parser would
/// take what follows for the value.
std::vector<std::string> argumentsOf(int argc, char** argv) {
  std::vector<std::string> arguments;
  for (int i = argc - 1; i > 0; --i) {
    const std::string_view text = argv[i];
    const bool isEmptyValue = text.starts_with("--") && text.find('=') == text.size() - 1;
    if (isEmptyValue) arguments.emplace_back();
    arguments.emplace_back(text.substr(0, text.size() - (isEmptyValue ? 1 : 0)));
  }
  return arguments;
}

/// What is wrong with the command that the arguments begin with; empty when nothing is.
std::string faultOfCommand(const CLI::App& app, int argc, char** argv) {
  const auto isOption = [](std::string_view text) { return text.starts_with('-'); };
  int first = 1;
  while (first < argc && isOption(argv[first])) ++first;
  if (first >= argc) return {};
  std::string nearest;
  std::size_t least = SIZE_MAX;
  for (const CLI::App* command : app.get_subcommands([](const CLI::App*) { return true; })) {
    if (command->get_name() == argv[first]) return {};
    const std::size_t distance = editDistance(argv[first], command->get_name());
    if (distance < least) nearest = command->get_name();
    least = std::min(least, distance);
  }
  return "there is no command \"" + printable(argv[first]) + "\"; the nearest is " + nearest +
         ", and --help lists all";
}

int parseAndRun(int argc, char** argv) {
  CLI::App app{"Finds the duplicate songs of a music library and explains which copy to keep."};
  app.name("kestrel-cli");
  app.set_version_flag("--version", KESTREL_VERSION);
  app.require_subcommand(1);
  app.footer("Exit status: 0 done, 1 failure, 2 usage.");
  app.failure_message([](const CLI::App* command, const CLI::Error& error) {
    return CLI::FailureMessage::simple(
        command, CLI::Error(error.get_name(), printable(error.what()), error.get_exit_code()));
  });
  bool verbose = false;
  app.add_flag("-v,--verbose", verbose, "Write the log to standard error");
  Action chosen;
  for (AddCommand* add : commands) add(app, chosen);
  if (const std::string fault = faultOfCommand(app, argc, argv); !fault.empty()) {
    complain(fault);
    return usage;
  }
  try {
    app.parse(argumentsOf(argc, argv));
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == done ? done : usage;
  }

  try {
    Session session(verbose);
    const int status = chosen(session);
    std::cout.flush();
    if (!std::cout) {
      complain("the output could not be written completely; is the disk full?");
      return failure;
    }
    return status;
  } catch (const UsageError& error) {
    complain(error.what());
    return usage;
  } catch (const std::exception& error) {  // LibraryError, HistoryError, FileError: each says all
    complain(error.what());
    return failure;
  }
}

}  // namespace

int runCommandLine(int argc, char** argv) {
  const FilteredStream output(std::cout), errors(std::cerr);
  try {
    return parseAndRun(argc, argv);
  } catch (const std::bad_alloc&) {
    std::cerr << "kestrel-cli: out of memory\n";  // without making a text
  } catch (const std::exception& error) {
    complain(error.what());
  }
  return failure;
}

}  // namespace kestrel
