/// What the subcommands have in common.
///
/// A subcommand registers its options and, when it is the one chosen, leaves what is to be done.
/// Each has a file of its own; a new one is a file, a line here and a line in main.
#pragma once

#include <CLI/CLI.hpp>
#include <functional>
#include <stdexcept>

namespace kestrel {

class Session;

/// Does the work and returns the exit status. Throws LibraryError or UsageError.
using Action = std::function<int(Session&)>;

/// Options that are well formed but make no sense for this library: exit status 2.
struct UsageError : std::runtime_error {
  using std::runtime_error::runtime_error;
};

void addFindCommand(CLI::App& app, Action& chosen);
void addTracksCommand(CLI::App& app, Action& chosen);
void addPlaylistsCommand(CLI::App& app, Action& chosen);
void addInfoCommand(CLI::App& app, Action& chosen);
void addReplaylistCommand(CLI::App& app, Action& chosen);
void addCleanupCommand(CLI::App& app, Action& chosen);
void addRemoveCommand(CLI::App& app, Action& chosen);
void addTrashCommand(CLI::App& app, Action& chosen);
void addPlanCommand(CLI::App& app, Action& chosen);
void addApplyCommand(CLI::App& app, Action& chosen);
void addHistoryCommand(CLI::App& app, Action& chosen);
void addUndoCommand(CLI::App& app, Action& chosen);
void addScriptCommand(CLI::App& app, Action& chosen);

}  // namespace kestrel
