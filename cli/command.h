/// What the subcommands have in common.
///
/// A subcommand registers its options and, when it is the one chosen, leaves what is to be done.
/// Each has a file of its own; a new one is a file and its name in the two lists here.
#pragma once

#include <CLI/CLI.hpp>
#include <functional>
#include <stdexcept>
#include <string>

namespace kestrel {

class Session;

/// Does the work and returns the exit status. Throws LibraryError or UsageError.
using Action = std::function<int(Session&)>;

/// Options that are well formed but make no sense for this library: exit status 2.
struct UsageError : std::runtime_error {
  using std::runtime_error::runtime_error;
};

/// Adds a subcommand with its options; its callback sets `chosen`.
using AddCommand = void(CLI::App& app, Action& chosen);
AddCommand addLibrariesCommand, addFindCommand, addTracksCommand, addPlaylistsCommand,
    addInfoCommand, addReplaylistCommand, addCleanupCommand, addTrashCommand, addRemoveCommand,
    addPlanCommand, addApplyCommand, addHistoryCommand, addUndoCommand, addScriptCommand,
    addCompareRulesCommand, addIgnoreCommand, addDecisionsCommand, addCompletionsCommand;

/// In the order of the help.
inline constexpr AddCommand* commands[] = {
    addLibrariesCommand, addFindCommand,        addTracksCommand,       addPlaylistsCommand,
    addInfoCommand,      addReplaylistCommand,  addCleanupCommand,      addTrashCommand,
    addRemoveCommand,    addPlanCommand,        addApplyCommand,        addHistoryCommand,
    addUndoCommand,      addScriptCommand,      addCompareRulesCommand, addIgnoreCommand,
    addDecisionsCommand, addCompletionsCommand,
};

/// Leaves `action` to be done when this is the subcommand that is chosen. To be called when the
/// command has its options.
void setAction(CLI::App& command, Action& chosen, Action action);

/// The argument LIBRARY, and where its files are.
void addLibraryOption(CLI::App& command, std::string& library);
/// --map and --without-files, which `setAction` takes account of.
void addFilesOptions(CLI::App& command);

/// What a subcommand takes that only reads a library.
struct ReadingOptions {
  std::string library;
  bool json = false;
};
/// Adds one with LIBRARY and --json, which `read` does.
void addReadingCommand(CLI::App& app, Action& chosen, const char* name, const char* help,
                       const char* jsonHelp, int (*read)(Session&, const ReadingOptions&));

}  // namespace kestrel
