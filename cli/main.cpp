// kestrel-cli: every operation without windows, for scripts and servers.

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
#include "foundation/utf8.h"

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

int run(int argc, char** argv) {
  using namespace kestrel;
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

int main(int argc, char** argv) {
  std::ios::sync_with_stdio(false);
  const kestrel::FilteredStream output(std::cout), errors(std::cerr);
  try {
    return run(argc, argv);
  } catch (const std::bad_alloc&) {
    std::cerr << "kestrel-cli: out of memory\n";  // without making a text
  } catch (const std::exception& error) {
    kestrel::complain(error.what());
  }
  return failure;
}
